#ifndef ZEL_CMS_SERIAL_NUMBERS_H_
#define ZEL_CMS_SERIAL_NUMBERS_H_

#include <string_view>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * The serial numbers of certificates (RFC 5280, 4.1.2.2) as people write them.
 */

namespace zel::cms {

/**
 * parseSerialNumber reads a number in decimal digits, or in hexadecimal ones after "0x"; its bytes
 * are answered as CertificatePlan takes them, most significant first.
 *
 *  - ZELKM_ERR_PARAMETER: no number, or 0.
 *  - ZELKM_ERR_NUMBER_SIZE: more than the 20 bytes that fit, the sign bit among them.
 */
ZEL_CMS_API sys::Result<sys::Bytes> parseSerialNumber(std::string_view text);

}  // namespace zel::cms

#endif  // ZEL_CMS_SERIAL_NUMBERS_H_
