#include "engine/km/token/token_reading.h"

#include <optional>
#include <span>
#include <utility>

#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/public_keys.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

sys::Bytes copyOf(sys::ByteView bytes) { return {bytes.begin(), bytes.end()}; }

std::optional<CertificateObject> certificateFrom(const Attributes& attributes) {
  if (attributes.number(CKA_CERTIFICATE_TYPE, CKC_X_509) != CKC_X_509) return std::nullopt;
  if (attributes.bytes(CKA_VALUE).empty()) return std::nullopt;
  CertificateObject certificate = certificateObject(attributes.bytes(CKA_VALUE));
  certificate.label = attributes.text(CKA_LABEL);
  certificate.id = copyOf(attributes.bytes(CKA_ID));
  certificate.category = attributes.number(CKA_CERTIFICATE_CATEGORY, kUnspecified);
  certificate.vouchedFor = attributes.flag(CKA_TRUSTED);
  return certificate;
}

std::optional<PrivateKeyObject> privateKeyFrom(const Attributes& attributes) {
  return PrivateKeyObject{
      .type = attributes.number(CKA_KEY_TYPE, CK_UNAVAILABLE_INFORMATION),
      .label = std::string(attributes.text(CKA_LABEL)),
      .id = copyOf(attributes.bytes(CKA_ID)),
      .subject = copyOf(attributes.bytes(CKA_SUBJECT)),
      .publicKey = publicKeyInfoOf(attributes),
  };
}

std::optional<PublicKeyObject> publicKeyFrom(const Attributes& attributes) {
  return PublicKeyObject{
      .type = attributes.number(CKA_KEY_TYPE, CK_UNAVAILABLE_INFORMATION),
      .label = std::string(attributes.text(CKA_LABEL)),
      .id = copyOf(attributes.bytes(CKA_ID)),
      .publicKey = publicKeyInfoOf(attributes),
  };
}

/** Data objects hold all sorts of things; those that hold a request are ours to list. */
std::optional<RequestObject> requestFrom(const Attributes& attributes) {
  const sys::ByteView der = attributes.bytes(CKA_VALUE);
  const cms::RequestPtr request = cms::decodeDer<cms::RequestPtr>(d2i_X509_REQ, der);
  if (!request) {
    ERR_clear_error();
    return std::nullopt;
  }
  return RequestObject{
      .label = std::string(attributes.text(CKA_LABEL)),
      .der = copyOf(der),
      .publicKey = cms::encodeDer(i2d_X509_PUBKEY, X509_REQ_get_X509_PUBKEY(request.get())),
  };
}

/** How objects of one class are read; those that `make` answers nothing for are left out. */
template <typename Object>
struct ObjectClass {
  CK_OBJECT_CLASS number;
  std::span<const CK_ATTRIBUTE_TYPE> types;
  std::optional<Object> (*make)(const Attributes&);
};

constexpr CK_ATTRIBUTE_TYPE kOfCertificates[] = {CKA_LABEL, CKA_ID,      CKA_CERTIFICATE_TYPE,
                                                 CKA_VALUE, CKA_TRUSTED, CKA_CERTIFICATE_CATEGORY};
constexpr CK_ATTRIBUTE_TYPE kOfPrivateKeys[] = {CKA_LABEL,     CKA_ID,      CKA_KEY_TYPE,
                                                CKA_SUBJECT,   CKA_MODULUS, CKA_PUBLIC_EXPONENT,
                                                CKA_EC_PARAMS, CKA_EC_POINT};
constexpr CK_ATTRIBUTE_TYPE kOfPublicKeys[] = {
    CKA_LABEL, CKA_ID, CKA_KEY_TYPE, CKA_MODULUS, CKA_PUBLIC_EXPONENT, CKA_EC_PARAMS, CKA_EC_POINT};
constexpr CK_ATTRIBUTE_TYPE kOfData[] = {CKA_LABEL, CKA_VALUE};

constexpr ObjectClass<CertificateObject> kCertificates{CKO_CERTIFICATE, kOfCertificates,
                                                       certificateFrom};
constexpr ObjectClass<PrivateKeyObject> kPrivateKeys{CKO_PRIVATE_KEY, kOfPrivateKeys,
                                                     privateKeyFrom};
constexpr ObjectClass<PublicKeyObject> kPublicKeys{CKO_PUBLIC_KEY, kOfPublicKeys, publicKeyFrom};
constexpr ObjectClass<RequestObject> kRequests{CKO_DATA, kOfData, requestFrom};

template <typename Object>
sys::Result<std::optional<Object>> readObject(const Session& session, CK_OBJECT_HANDLE handle,
                                              const ObjectClass<Object>& objectClass) {
  sys::Result<Attributes> attributes = session.read(handle, objectClass.types);
  if (!attributes) return attributes.failure();
  std::optional<Object> object = objectClass.make(attributes.value());
  if (object) object->handle = handle;
  return object;
}

template <typename Object>
sys::Status readClass(const Session& session, const ObjectClass<Object>& objectClass,
                      std::vector<std::shared_ptr<const Object>>& objects) {
  Template wanted;
  wanted.addNumber(CKA_CLASS, objectClass.number).addFlag(CKA_TOKEN, true);
  sys::Result<std::vector<CK_OBJECT_HANDLE>> handles = session.find(wanted);
  if (!handles) return handles.failure();
  for (const CK_OBJECT_HANDLE handle : handles.value()) {
    sys::Result<std::optional<Object>> object = readObject(session, handle, objectClass);
    // Another program may have destroyed it since it was found.
    if (object.code() == ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED) continue;
    if (!object) return object.failure();
    if (object.value()) {
      objects.push_back(std::make_shared<const Object>(*std::move(object.value())));
    }
  }
  return sys::success();
}

}  // namespace

sys::Result<TokenView> readToken(const Session& session, Handles newKeys) {
  const CallTurn turn = session.takeTurn();  // one for all, since every change of turns takes time
  TokenObjects objects;
  sys::Status read = readClass(session, kCertificates, objects.certificates);
  if (read) read = readClass(session, kPrivateKeys, objects.privateKeys);
  if (read) read = readClass(session, kPublicKeys, objects.publicKeys);
  if (read) read = readClass(session, kRequests, objects.requests);
  if (!read) return read.failure();
  return TokenView(std::move(objects), std::move(newKeys));
}

sys::Result<KeyPairObjects> readKeyPair(const Session& session, const KeyPairHandles& handles) {
  auto publicKey = readObject(session, handles.publicKey, kPublicKeys);
  if (!publicKey) return publicKey.failure();
  auto privateKey = readObject(session, handles.privateKey, kPrivateKeys);
  if (!privateKey) return privateKey.failure();
  KeyPairObjects pair{.publicKey = *std::move(publicKey.value()),
                      .privateKey = *std::move(privateKey.value())};
  if (pair.publicKey.publicKey.empty()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED,
                     "the token does not tell the public key that it made");
  }
  // A private key need not tell its public part, as those on a curve do not.
  pair.privateKey.publicKey = pair.publicKey.publicKey;
  return pair;
}

}  // namespace zel::km::token
