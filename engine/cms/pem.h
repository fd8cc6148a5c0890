#ifndef ZEL_CMS_PEM_H_
#define ZEL_CMS_PEM_H_

#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Base64 in armour (RFC 7468), the form in which certificates and requests travel as text.
 */

namespace zel::cms {

/** The usual armour labels. */
inline constexpr char kCertificateArmour[] = "CERTIFICATE";
inline constexpr char kRequestArmour[] = "CERTIFICATE REQUEST";

/** encodePem answers the armoured Base64 of the bytes, in lines of 64 characters. */
ZEL_CMS_API sys::Result<sys::Bytes> encodePem(const char* armour, sys::ByteView der);

/** Whether the text has an armour line. */
ZEL_CMS_API bool isPem(sys::ByteView text);

/**
 * decodePem answers what a text encodes: the content of its first armour, or all of it as Base64
 * when it has none. Text before and after the armour, any line ends, spaces, and headers inside the
 * armour are passed over.
 *
 *  - ZELKM_ERR_BASE64_INVALID_MSGTYPE: an armour that does not end, or not as it began.
 *  - ZELKM_ERR_BASE64_INVALID_DATA: nothing, or characters that are not Base64.
 *  - ZELKM_ERR_BASE64_DECODING: Base64 that is cut off or wrongly padded.
 */
ZEL_CMS_API sys::Result<sys::Bytes> decodePem(sys::ByteView text);

/** decodePemBlocks is decodePem for every armour of the text. */
ZEL_CMS_API sys::Result<std::vector<sys::Bytes>> decodePemBlocks(sys::ByteView text);

}  // namespace zel::cms

#endif  // ZEL_CMS_PEM_H_
