#ifndef ZEL_CMS_DER_H_
#define ZEL_CMS_DER_H_

#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * The frame that certificates and requests share: SIGNED (RFC 5280, 4.1.1), a sequence of the part
 * to be signed, the signature's AlgorithmIdentifier and the signature's bits.
 */

namespace zel::cms {

/** elementsOf answers the elements of a sequence, header included; none when there is no sequence.
 */
std::vector<sys::ByteView> elementsOf(sys::ByteView sequence);

/** toBeSigned answers the first element of a SIGNED, byte for byte. ZELKM_ERR_ASN when there is
 * none. */
ZEL_CMS_API sys::Result<sys::Bytes> toBeSigned(sys::ByteView der);

/** assembleSigned puts a SIGNED together. */
ZEL_CMS_API sys::Bytes assembleSigned(sys::ByteView toBeSigned, sys::ByteView algorithm,
                                      sys::ByteView signature);

}  // namespace zel::cms

#endif  // ZEL_CMS_DER_H_
