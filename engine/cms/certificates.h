#ifndef ZEL_CMS_CERTIFICATES_H_
#define ZEL_CMS_CERTIFICATES_H_

#include <cstdint>
#include <string>

#include "engine/cms/keys.h"
#include "engine/cms/names.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Reading X.509 certificates (RFC 5280). Making them is self_signing.h, chains are chains.h.
 */

namespace zel::cms {

/** CertificateFields is one certificate taken apart; the parts are DER as they stand in it. */
struct CertificateFields {
  int version = 0; /**< 1 to 3 */
  KeyTraits key;
  NameFields subject;
  NameFields issuer;
  sys::Bytes subjectDer;
  sys::Bytes issuerDer;
  std::int64_t notBefore = 0; /**< seconds since 1970-01-01 UTC */
  std::int64_t notAfter = 0;
  sys::Bytes signature; /**< the bits, without the unused-bits octet */
  sys::Bytes signatureAlgorithm;
  std::string signatureOid;  /**< dotted decimal */
  std::string signatureName; /**< its usual name; the dotted decimal when it has none */
  sys::Bytes publicKeyInfo;
};

/** readCertificate takes a certificate apart. ZELKM_ERR_ASN when the bytes are none. */
sys::Result<CertificateFields> readCertificate(sys::ByteView der);

/** CertificateKeys is what a store indexes a certificate by, all DER. */
struct CertificateKeys {
  sys::Bytes subject;
  sys::Bytes issuer;
  sys::Bytes serialNumber; /**< the content bytes of the INTEGER */
  sys::Bytes publicKeyInfo;
};

/** readCertificateKeys reads only what an index wants. ZELKM_ERR_ASN when there is no certificate.
 */
sys::Result<CertificateKeys> readCertificateKeys(sys::ByteView der);

/** unsignedPart answers the to-be-signed part, byte for byte. ZELKM_ERR_ASN as above. */
sys::Result<sys::Bytes> unsignedPart(sys::ByteView der);

}  // namespace zel::cms

#endif  // ZEL_CMS_CERTIFICATES_H_
