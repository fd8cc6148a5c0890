#ifndef ZEL_CMS_ISSUED_EXTENSIONS_H_
#define ZEL_CMS_ISSUED_EXTENSIONS_H_

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What an authority grants of what a request asks for.
 */

namespace zel::cms {

/**
 * checkIssuer tells whether a certificate (DER) may issue others now.
 *
 *  - ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS: it is not an authority's.
 *  - ZELKM_ERR_VALIDATION_KEY_USAGE: its key may not sign certificates.
 *  - ZELKM_ERR_VALIDATION_KEY_VALIDITY: it has expired or is not valid yet.
 */
ZEL_CMS_API sys::Status checkIssuer(sys::ByteView issuerCertificate);

/**
 * issuedExtensions answers the `Extensions` of a certificate for the public key: the alternative
 * names and the key usages that the request asks for (its `Extensions`, which may be empty), basic
 * constraints, and the subject and authority key identifiers. Nothing else that is asked for is
 * granted. The rights of an authority are granted when they are asked for and the issuer's path
 * length allows another authority below it; without them the usages of an authority are dropped.
 *
 * ZELKM_ERR_ASN when the extensions asked for are malformed.
 */
ZEL_CMS_API sys::Result<sys::Bytes> issuedExtensions(sys::ByteView requestedExtensions,
                                                     sys::ByteView publicKeyInfo,
                                                     sys::ByteView issuerCertificate);

}  // namespace zel::cms

#endif  // ZEL_CMS_ISSUED_EXTENSIONS_H_
