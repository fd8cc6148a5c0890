#ifndef ZEL_CMS_BUNDLES_H_
#define ZEL_CMS_BUNDLES_H_

#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::cms {

/**
 * readBundle answers the certificates (DER) of one certificate, of a PKCS #7 or CMS message
 * (RFC 2315, 5652), or of PEM text with any number of both, in the order in which they stand.
 *
 *  - ZELKM_ERR_ASN: none of these.
 *  - ZELKM_ERR_KEYREC_CERTIFICATE_NULL: a message without certificates.
 *  - the codes of decodePem.
 */
ZEL_CMS_API sys::Result<std::vector<sys::Bytes>> readBundle(sys::ByteView bytes);

}  // namespace zel::cms

#endif  // ZEL_CMS_BUNDLES_H_
