#ifndef ZEL_CMS_CERTIFICATES_H_
#define ZEL_CMS_CERTIFICATES_H_

#include <cstdint>
#include <string>

#include "engine/cms/api.h"
#include "engine/cms/keys.h"
#include "engine/cms/names.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Reading X.509 certificates (RFC 5280). Making them is issuing.h, chains are chains.h.
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
ZEL_CMS_API sys::Result<CertificateFields> readCertificate(sys::ByteView der);

/** CertificateKeys is what a store looks a certificate up by, all DER. */
struct CertificateKeys {
  sys::Bytes subject;      /**< as canonicalName has it */
  sys::Bytes issuer;       /**< as canonicalName has it */
  sys::Bytes serialNumber; /**< the content bytes of the INTEGER */
  sys::Bytes publicKeyInfo;
};

/** readCertificateKeys reads only what an index wants. ZELKM_ERR_ASN when there is no certificate.
 */
ZEL_CMS_API sys::Result<CertificateKeys> readCertificateKeys(sys::ByteView der);

/** thumbprint answers the SHA-1 of the bytes in capital hexadecimal digits, as stores name files.
 */
ZEL_CMS_API std::string thumbprint(sys::ByteView der);

/** unsignedPart answers the to-be-signed part, byte for byte. ZELKM_ERR_ASN as above. */
ZEL_CMS_API sys::Result<sys::Bytes> unsignedPart(sys::ByteView der);

}  // namespace zel::cms

#endif  // ZEL_CMS_CERTIFICATES_H_
