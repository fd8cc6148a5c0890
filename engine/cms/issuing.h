#ifndef ZEL_CMS_ISSUING_H_
#define ZEL_CMS_ISSUING_H_

#include "engine/cms/api.h"
#include "engine/cms/keys.h"
#include "engine/cms/signing.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Making X.509 certificates (RFC 5280):
 *
 *     CertificatePlan plan{.version = 3, .days = 365, .subject = name, .issuer = name,
 *                          .publicKeyInfo = spki, .extensions = authorityExtensions(spki).value()};
 *     Result<Bytes> certificate = issueCertificate(plan, signerTraits, kByKeyStrength, signer);
 */

namespace zel::cms {

/** CertificatePlan is what a certificate shall say. Names, key and extensions are DER. */
struct CertificatePlan {
  int version = 3;
  int days = 0; /**< of validity, from now on */
  sys::Bytes subject = {};
  sys::Bytes issuer = {};
  sys::Bytes publicKeyInfo = {};
  sys::Bytes extensions = {}; /**< `Extensions`; empty for none */
  sys::Bytes serialNumber =
      {}; /**< the number, most significant byte first; empty for a random one */
};

/**
 * checkPlan finds out what cannot be issued before a key is made for it, which takes long. Its
 * codes are those of issueCertificate that depend on version, days and extensions.
 */
ZEL_CMS_API sys::Status checkPlan(const CertificatePlan& plan);

/**
 * issueCertificate builds and signs a certificate; DER. A random serial number has 127 bits.
 *
 *  - ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION: the version is not 1 to 3, or below 3 with extensions.
 *  - ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD: less than one day.
 *  - ZELKM_ERR_EXPIRE_DAYS_TOO_LARGE: it would end after the year 9999, the last that fits.
 *  - ZELKM_ERR_ASN: the extensions are not `Extensions`.
 *  - ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS: one of them stands twice.
 *  - the codes of chooseDigest and of the signer.
 */
ZEL_CMS_API sys::Result<sys::Bytes> issueCertificate(const CertificatePlan& plan,
                                                     const KeyTraits& signingKey,
                                                     SignatureSelector selector,
                                                     const Signer& signer);

/**
 * authorityExtensions answers the `Extensions` of a self-signed certificate authority: CA true and
 * the key usages of one, both critical, and the subject and authority key identifiers.
 */
ZEL_CMS_API sys::Result<sys::Bytes> authorityExtensions(sys::ByteView publicKeyInfo);

}  // namespace zel::cms

#endif  // ZEL_CMS_ISSUING_H_
