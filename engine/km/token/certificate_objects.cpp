#include "engine/km/token/certificate_objects.h"

#include <cstring>

#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

CertificateCategory categoryOf(CertificateMarks marks) {
  if (marks.trusted) return kAuthority;
  return marks.hasPrivateKey ? kTokenUser : kOtherEntity;
}

Template certificateTemplate(const CertificateParts& parts, std::string_view label,
                             sys::ByteView id) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_CERTIFICATE)
      .addNumber(CKA_CERTIFICATE_TYPE, CKC_X_509)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, false)
      .addText(CKA_LABEL, label)
      .addBytes(CKA_ID, id)
      .addBytes(CKA_SUBJECT, parts.subject)
      .addBytes(CKA_ISSUER, parts.issuer)
      .addBytes(CKA_SERIAL_NUMBER, parts.serialNumber)
      .addBytes(CKA_VALUE, parts.der);
  return attributes;
}

}  // namespace

sys::Result<CertificateParts> readCertificateParts(sys::ByteView der) {
  const cms::X509Ptr certificate = cms::decodeDer<cms::X509Ptr>(d2i_X509, der);
  if (!certificate) return cms::cryptoFailure(ZELKM_ERR_ASN, "read a certificate");
  const X509* x509 = certificate.get();
  return CertificateParts{
      .der = {der.begin(), der.end()},
      .subject = cms::encodeDer(i2d_X509_NAME, X509_get_subject_name(x509)),
      .issuer = cms::encodeDer(i2d_X509_NAME, X509_get_issuer_name(x509)),
      .serialNumber = cms::encodeDer(i2d_ASN1_INTEGER, X509_get0_serialNumber(x509)),
      .publicKey = cms::encodeDer(i2d_X509_PUBKEY, X509_get_X509_PUBKEY(x509)),
  };
}

sys::Status createCertificateObject(Changes& changes, const CertificateParts& parts,
                                    std::string_view label, sys::ByteView id,
                                    CertificateMarks marks) {
  Template attributes = certificateTemplate(parts, label, id);
  attributes.addNumber(CKA_CERTIFICATE_CATEGORY, categoryOf(marks));
  CK_OBJECT_HANDLE made = CK_INVALID_HANDLE;
  CK_RV rv = changes.tryCreate(attributes, &made);
  if (rv == CKR_ATTRIBUTE_TYPE_INVALID) {
    sys::traceLine("the token does not know categories: the certificate stays unmarked");
    rv = changes.tryCreate(certificateTemplate(parts, label, id), &made);
  }
  if (rv != CKR_OK) return cryptokiFailure(rv, "take a certificate");
  return sys::success();
}

sys::Status changeMarks(Changes& changes, CK_OBJECT_HANDLE certificate, CertificateMarks marks) {
  const CK_ULONG category = categoryOf(marks);
  sys::Bytes value(sizeof category);
  std::memcpy(value.data(), &category, sizeof category);
  return changes.change(certificate, CKA_CERTIFICATE_CATEGORY, value);
}

}  // namespace zel::km::token
