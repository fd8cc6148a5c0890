#include "engine/km/token/token_objects.h"

#include <optional>

#include "engine/cms/certificates.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/call_turn.h"
#include "engine/km/token/certificate_objects.h"
#include "engine/km/token/public_keys.h"

namespace zel::km::token {

namespace {

sys::Bytes copyOf(sys::ByteView bytes) { return {bytes.begin(), bytes.end()}; }

/** Reads all objects of a class; an object that `make` answers nothing for is left out. */
template <typename Object, typename Make>
sys::Result<std::vector<Object>> readClass(const Session& session, const Handles& doomed,
                                           CK_OBJECT_CLASS objectClass,
                                           std::span<const CK_ATTRIBUTE_TYPE> types, Make make) {
  Template wanted;
  wanted.addNumber(CKA_CLASS, objectClass).addFlag(CKA_TOKEN, true);
  sys::Result<std::vector<CK_OBJECT_HANDLE>> handles = session.find(wanted);
  if (!handles) return handles.failure();
  std::vector<Object> objects;
  for (const CK_OBJECT_HANDLE handle : handles.value()) {
    if (doomed.contains(handle)) continue;
    sys::Result<Attributes> attributes = session.read(handle, types);
    // Another process may have destroyed it since it was found.
    if (attributes.code() == ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED) continue;
    if (!attributes) return attributes.failure();
    std::optional<Object> object = make(attributes.value());
    if (!object) continue;
    object->handle = handle;
    objects.push_back(*std::move(object));
  }
  return objects;
}

std::optional<CertificateObject> certificateFrom(const Attributes& attributes) {
  CertificateObject certificate{.label = std::string(attributes.text(CKA_LABEL)),
                                .id = copyOf(attributes.bytes(CKA_ID)),
                                .der = copyOf(attributes.bytes(CKA_VALUE)),
                                .publicKey = {},
                                .subject = {}};
  if (attributes.number(CKA_CERTIFICATE_TYPE, CKC_X_509) != CKC_X_509) return std::nullopt;
  if (certificate.der.empty()) return std::nullopt;
  certificate.trusted =
      attributes.flag(CKA_TRUSTED) || attributes.number(CKA_CERTIFICATE_CATEGORY, 0) == kAuthority;
  sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate.der);
  if (keys) {
    certificate.publicKey = std::move(keys.value().publicKeyInfo);
    certificate.subject = std::move(keys.value().subject);
  }
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

}  // namespace

sys::Result<TokenObjects> readTokenObjects(const Session& session, const Handles& doomed) {
  const CallTurn turn =
      session.takeTurn();  // one for all, since every change of turns takes its time
  static constexpr CK_ATTRIBUTE_TYPE kOfCertificates[] = {
      CKA_LABEL, CKA_ID, CKA_CERTIFICATE_TYPE, CKA_VALUE, CKA_TRUSTED, CKA_CERTIFICATE_CATEGORY};
  static constexpr CK_ATTRIBUTE_TYPE kOfKeys[] = {CKA_LABEL,     CKA_ID,      CKA_KEY_TYPE,
                                                  CKA_SUBJECT,   CKA_MODULUS, CKA_PUBLIC_EXPONENT,
                                                  CKA_EC_PARAMS, CKA_EC_POINT};
  static constexpr CK_ATTRIBUTE_TYPE kOfData[] = {CKA_LABEL, CKA_VALUE};

  auto certificates = readClass<CertificateObject>(session, doomed, CKO_CERTIFICATE,
                                                   kOfCertificates, certificateFrom);
  if (!certificates) return certificates.failure();
  auto privateKeys =
      readClass<PrivateKeyObject>(session, doomed, CKO_PRIVATE_KEY, kOfKeys, privateKeyFrom);
  if (!privateKeys) return privateKeys.failure();
  auto publicKeys =
      readClass<PublicKeyObject>(session, doomed, CKO_PUBLIC_KEY, kOfKeys, publicKeyFrom);
  if (!publicKeys) return publicKeys.failure();
  auto requests = readClass<RequestObject>(session, doomed, CKO_DATA, kOfData, requestFrom);
  if (!requests) return requests.failure();
  return TokenObjects{.certificates = std::move(certificates).value(),
                      .privateKeys = std::move(privateKeys).value(),
                      .publicKeys = std::move(publicKeys).value(),
                      .requests = std::move(requests).value()};
}

}  // namespace zel::km::token
