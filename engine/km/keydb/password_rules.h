#ifndef ZEL_KM_KEYDB_PASSWORD_RULES_H_
#define ZEL_KM_KEYDB_PASSWORD_RULES_H_

#include <cstdint>

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What a key database asks of a new password, and for how long it takes it.
 */

namespace zel::km {

/**
 * checkNewPassword takes a password in UTF-8.
 *  - ZELKM_ERR_PWD_TOO_SHORT (130): fewer than 6 characters, or 14 for approved algorithms only.
 *  - ZELKM_ERR_PWD_NO_NUMBER (131), ZELKM_ERR_PWD_NO_CONTROL_KEY (132): for approved algorithms
 *    only, a digit and a character that is neither a letter nor a digit have to be in it.
 */
sys::Status checkNewPassword(sys::ByteView password, bool approvedOnly);

/**
 * expiryOf answers when a password of so many seconds expires, in seconds since 1970; 0, for never,
 * when it has no lifetime. ZELKM_ERR_PARAMETER (65) for a negative lifetime.
 */
sys::Result<std::int64_t> expiryOf(std::int64_t lifetime);

/** ZELKM_ERR_PASSWORD_EXPIRATION_TIME (70) from the given moment on; 0 is never. */
sys::Status checkNotExpired(std::int64_t expiresAt);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_PASSWORD_RULES_H_
