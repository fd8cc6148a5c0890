#ifndef ZEL_CMS_VALIDATION_H_
#define ZEL_CMS_VALIDATION_H_

#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::cms {

/**
 * validateChain validates the path from a certificate to one of the anchors (RFC 5280, 6) at the
 * present time, as OpenSSL does in strict mode. An anchor need not have signed itself. Neither
 * revocation nor a purpose is looked at. All certificates are DER.
 *
 *  - ZELKM_ERR_ASN: one of the certificates is none.
 *  - ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND: the path ends before it reaches an anchor.
 *  - ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED: it ends at a self-signed certificate that is
 *    no anchor.
 *  - ZELKM_ERR_VALIDATION_KEY_SIGNATURE, _VALIDITY, _VALIDITY_PERIOD, _BASIC_CONSTRAINTS,
 *    _AUTHORITY_KEY_IDENTIFIER, _UNKNOWN_CRITICAL_EXTENSION, _EXTENSIONS_REQUIRED,
 *    ZELKM_ERR_VALIDATION_KEY_USAGE, ZELKM_ERR_VALIDATION_SUBJECT_ALTERNATIVE_NAME: what is wrong
 *    with a certificate of the path.
 *  - ZELKM_ERR_INVALID_CERT_CHAIN: the path is too long.
 *  - ZELKM_ERR_VALIDATION: anything else, name constraints and policies among it.
 */
ZEL_CMS_API sys::Status validateChain(sys::ByteView certificate,
                                      const std::vector<sys::Bytes>& issuers,
                                      const std::vector<sys::Bytes>& anchors);

}  // namespace zel::cms

#endif  // ZEL_CMS_VALIDATION_H_
