#include "engine/cms/requests.h"

#include "engine/cms/algorithm_names.h"
#include "engine/cms/der.h"
#include "engine/cms/extensions.h"
#include "engine/cms/openssl_ptr.h"

namespace zel::cms {

namespace {

sys::Result<RequestPtr> decode(sys::ByteView der) {
  RequestPtr request = decodeDer<RequestPtr>(d2i_X509_REQ, der);
  if (!request) return cryptoFailure(ZELKM_ERR_ASN, "read a certification request");
  return request;
}

/** Signs the part to be signed and puts the request together. */
sys::Result<sys::Bytes> sign(sys::ByteView info, const KeyTraits& key, SignatureSelector selector,
                             const Signer& signer) {
  const sys::Result<SigningDigest> digest = chooseDigest(key, selector);
  if (!digest) return digest.failure();
  const sys::Result<sys::Bytes> algorithm = signatureAlgorithm(key.algorithm, digest.value());
  if (!algorithm) return algorithm.failure();
  const sys::Result<sys::Bytes> signature = signer(digest.value(), info);
  if (!signature) return signature.failure();
  return assembleSigned(info, algorithm.value(), signature.value());
}

/** The [0] IMPLICIT of the request's own encoding becomes the SET OF that it stands for. */
sys::Bytes attributesOf(sys::ByteView info) {
  constexpr std::size_t kAttributesAt = 3;
  constexpr std::uint8_t kSet = 0x31;
  const std::vector<sys::ByteView> elements = elementsOf(info);
  if (elements.size() <= kAttributesAt) return {};
  sys::Bytes attributes(elements[kAttributesAt].begin(), elements[kAttributesAt].end());
  constexpr std::size_t kEmptyLength = 2;
  if (attributes.size() <= kEmptyLength) return {};
  attributes[0] = kSet;
  return attributes;
}

void readSignature(const X509_REQ& request, RequestFields& fields) {
  const ASN1_BIT_STRING* signature = nullptr;
  const X509_ALGOR* algorithm = nullptr;
  X509_REQ_get0_signature(&request, &signature, &algorithm);
  const ASN1_OBJECT* identifier = nullptr;
  X509_ALGOR_get0(&identifier, nullptr, nullptr, algorithm);

  const unsigned char* bits = ASN1_STRING_get0_data(signature);
  fields.signature.assign(bits, bits + ASN1_STRING_length(signature));
  fields.signatureAlgorithm = encodeDer(i2d_X509_ALGOR, algorithm);
  fields.signatureOid = dottedDecimal(identifier);
  fields.signatureName = usualName(identifier);
}

}  // namespace

sys::Result<sys::Bytes> buildRequest(const RequestPlan& plan, const KeyTraits& key,
                                     SignatureSelector selector, const Signer& signer) {
  const sys::Result<ExtensionsPtr> extensions = readExtensions(plan.extensions);
  if (!extensions) return extensions.failure();
  const NamePtr subject = decodeDer<NamePtr>(d2i_X509_NAME, plan.subject);
  const PublicKeyPtr info = decodeDer<PublicKeyPtr>(d2i_X509_PUBKEY, plan.publicKeyInfo);
  EVP_PKEY* publicKey = info ? X509_PUBKEY_get0(info.get()) : nullptr;
  if (!subject || publicKey == nullptr) {
    return cryptoFailure(ZELKM_ERR_ASN, "read the name or the key of a request");
  }

  const RequestPtr request(X509_REQ_new());
  if (!request || X509_REQ_set_version(request.get(), X509_REQ_VERSION_1) != 1 ||
      X509_REQ_set_subject_name(request.get(), subject.get()) != 1 ||
      X509_REQ_set_pubkey(request.get(), publicKey) != 1 ||
      (extensions.value() &&
       X509_REQ_add_extensions(request.get(), extensions.value().get()) != 1)) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "build a request");
  }
  const sys::Bytes toBeSigned = encodeDer(
      [](const X509_REQ* r, unsigned char** out) {
        return i2d_re_X509_REQ_tbs(const_cast<X509_REQ*>(r), out);
      },
      request.get());
  if (toBeSigned.empty()) return cryptoFailure(ZELKM_ERR_ASN, "encode a request");
  return sign(toBeSigned, key, selector, signer);
}

sys::Result<sys::Bytes> signRequestAgain(sys::ByteView request, SignatureSelector selector,
                                         const Signer& signer) {
  const sys::Result<RequestFields> fields = readRequest(request);
  if (!fields) return fields.failure();
  return sign(fields.value().info, fields.value().key, selector, signer);
}

sys::Result<RequestFields> readRequest(sys::ByteView der) {
  const sys::Result<RequestPtr> decoded = decode(der);
  if (!decoded) return decoded.failure();
  X509_REQ* request = decoded.value().get();

  RequestFields fields;
  sys::Result<sys::Bytes> info = toBeSigned(der);
  if (!info) return info.failure();
  fields.info = std::move(info).value();
  fields.attributes = attributesOf(fields.info);
  const ExtensionsPtr extensions(X509_REQ_get_extensions(request));
  fields.extensions = encodeExtensions(extensions.get());
  ERR_clear_error();

  fields.subjectDer = encodeDer(i2d_X509_NAME, X509_REQ_get_subject_name(request));
  sys::Result<NameFields> subject = decodeName(fields.subjectDer);
  if (!subject) return subject.failure();
  fields.subject = std::move(subject).value();

  fields.publicKeyInfo = encodeDer(i2d_X509_PUBKEY, X509_REQ_get_X509_PUBKEY(request));
  const sys::Result<KeyTraits> key = describePublicKey(fields.publicKeyInfo);
  if (!key) return key.failure();
  fields.key = key.value();
  readSignature(*request, fields);
  return fields;
}

sys::Status verifyRequest(sys::ByteView der) {
  const sys::Result<RequestPtr> request = decode(der);
  if (!request) return request.failure();
  EVP_PKEY* key = X509_REQ_get0_pubkey(request.value().get());
  if (key == nullptr || X509_REQ_verify(request.value().get(), key) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_VERIFY, "verify the signature of a request");
  }
  return sys::success();
}

}  // namespace zel::cms
