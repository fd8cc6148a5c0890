#ifndef ZEL_CMS_PEM_H_
#define ZEL_CMS_PEM_H_

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

}  // namespace zel::cms

#endif  // ZEL_CMS_PEM_H_
