#include "engine/km/keydb/lookup_keys.h"

#include <utility>

#include "engine/cms/certificates.h"
#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"

namespace zel::km {

namespace {

sys::Result<Subject> subjectOf(sys::Bytes publicKey, sys::ByteView canonicalSubject) {
  sys::Result<Digest> publicKeyHash = digest(publicKey);
  if (!publicKeyHash) return publicKeyHash.failure();
  sys::Result<Digest> subjectHash = digest(canonicalSubject);
  if (!subjectHash) return subjectHash.failure();
  return Subject{{publicKeyHash.value(), subjectHash.value()}, std::move(publicKey)};
}

}  // namespace

sys::Result<Subject> subjectOfCertificate(sys::ByteView certificate) {
  sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate);
  if (!keys) return keys.failure();
  return subjectOf(std::move(keys.value().publicKeyInfo), keys.value().subject);
}

sys::Result<Subject> subjectOfRequest(sys::ByteView request) {
  const auto parsed = cms::decodeDer<cms::RequestPtr>(d2i_X509_REQ, request);
  if (!parsed) return cms::cryptoFailure(ZELKM_ERR_ASN, "read a PKCS #10 request");
  sys::Result<sys::Bytes> subject =
      cms::canonicalName(cms::encodeDer(i2d_X509_NAME, X509_REQ_get_subject_name(parsed.get())));
  if (!subject) return subject.failure();
  return subjectOf(cms::encodeDer(i2d_X509_PUBKEY, X509_REQ_get_X509_PUBKEY(parsed.get())),
                   subject.value());
}

}  // namespace zel::km
