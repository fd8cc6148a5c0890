#include "engine/cms/certificates.h"

#include <openssl/sha.h>

#include <ctime>

#include "engine/cms/algorithm_names.h"
#include "engine/cms/der.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/hexadecimal.h"

namespace zel::cms {

namespace {

sys::Result<X509Ptr> decode(sys::ByteView der) {
  X509Ptr certificate = decodeDer<X509Ptr>(d2i_X509, der);
  if (!certificate) return cryptoFailure(ZELKM_ERR_ASN, "read a certificate");
  return certificate;
}

sys::Result<std::int64_t> secondsSinceEpoch(const ASN1_TIME* time) {
  std::tm utc{};
  if (ASN1_TIME_to_tm(time, &utc) != 1) {
    return cryptoFailure(ZELKM_ERR_ASN, "read the time of a certificate");
  }
  return static_cast<std::int64_t>(timegm(&utc));
}

sys::Bytes bytesOf(const ASN1_STRING* string) {
  const unsigned char* data = ASN1_STRING_get0_data(string);
  return {data, data + ASN1_STRING_length(string)};
}

sys::Status readNames(const X509& certificate, CertificateFields& fields) {
  fields.subjectDer = encodeDer(i2d_X509_NAME, X509_get_subject_name(&certificate));
  fields.issuerDer = encodeDer(i2d_X509_NAME, X509_get_issuer_name(&certificate));
  sys::Result<NameFields> subject = decodeName(fields.subjectDer);
  if (!subject) return subject.failure();
  sys::Result<NameFields> issuer = decodeName(fields.issuerDer);
  if (!issuer) return issuer.failure();
  fields.subject = std::move(subject).value();
  fields.issuer = std::move(issuer).value();
  return sys::success();
}

sys::Status readValidity(const X509& certificate, CertificateFields& fields) {
  const sys::Result<std::int64_t> notBefore = secondsSinceEpoch(X509_get0_notBefore(&certificate));
  if (!notBefore) return notBefore.failure();
  const sys::Result<std::int64_t> notAfter = secondsSinceEpoch(X509_get0_notAfter(&certificate));
  if (!notAfter) return notAfter.failure();
  fields.notBefore = notBefore.value();
  fields.notAfter = notAfter.value();
  return sys::success();
}

sys::Status readPublicKey(const X509& certificate, CertificateFields& fields) {
  fields.publicKeyInfo = encodeDer(i2d_X509_PUBKEY, X509_get_X509_PUBKEY(&certificate));
  const sys::Result<KeyTraits> key = describePublicKey(fields.publicKeyInfo);
  if (!key) return key.failure();
  fields.key = key.value();
  return sys::success();
}

void readSignature(const X509& certificate, CertificateFields& fields) {
  const ASN1_BIT_STRING* signature = nullptr;
  const X509_ALGOR* algorithm = nullptr;
  X509_get0_signature(&signature, &algorithm, &certificate);
  const ASN1_OBJECT* identifier = nullptr;
  X509_ALGOR_get0(&identifier, nullptr, nullptr, algorithm);

  fields.signature = bytesOf(signature);
  fields.signatureAlgorithm = encodeDer(i2d_X509_ALGOR, algorithm);
  fields.signatureOid = dottedDecimal(identifier);
  fields.signatureName = usualName(identifier);
}

}  // namespace

sys::Result<CertificateFields> readCertificate(sys::ByteView der) {
  const sys::Result<X509Ptr> decoded = decode(der);
  if (!decoded) return decoded.failure();
  const X509& certificate = *decoded.value();

  CertificateFields fields;
  fields.version = static_cast<int>(X509_get_version(&certificate)) + 1;
  sys::Status status = readNames(certificate, fields);
  if (status) status = readValidity(certificate, fields);
  if (status) status = readPublicKey(certificate, fields);
  if (!status) return status.failure();
  readSignature(certificate, fields);
  return fields;
}

sys::Result<CertificateKeys> readCertificateKeys(sys::ByteView der) {
  const sys::Result<X509Ptr> decoded = decode(der);
  if (!decoded) return decoded.failure();
  const X509* certificate = decoded.value().get();

  sys::Result<sys::Bytes> subject =
      canonicalName(encodeDer(i2d_X509_NAME, X509_get_subject_name(certificate)));
  if (!subject) return subject.failure();
  sys::Result<sys::Bytes> issuer =
      canonicalName(encodeDer(i2d_X509_NAME, X509_get_issuer_name(certificate)));
  if (!issuer) return issuer.failure();
  return CertificateKeys{std::move(subject).value(), std::move(issuer).value(),
                         bytesOf(X509_get0_serialNumber(certificate)),
                         encodeDer(i2d_X509_PUBKEY, X509_get_X509_PUBKEY(certificate))};
}

std::string thumbprint(sys::ByteView der) {
  std::uint8_t digest[SHA_DIGEST_LENGTH];
  EVP_Digest(der.data(), der.size(), &digest[0], nullptr, EVP_sha1(), nullptr);
  return sys::hexadecimal(digest);
}

sys::Result<sys::Bytes> unsignedPart(sys::ByteView der) {
  const sys::Result<X509Ptr> decoded = decode(der);
  if (!decoded) return decoded.failure();
  return toBeSigned(der);
}

}  // namespace zel::cms
