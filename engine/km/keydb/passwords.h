#ifndef ZEL_KM_KEYDB_PASSWORDS_H_
#define ZEL_KM_KEYDB_PASSWORDS_H_

#include <cstdint>

#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/opening.h"
#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * The password of a key database: set, changed, stashed, asked for. Codes that are not said here
 * are those of opening.h.
 */

namespace zel::km {

/**
 * Sets those parameters that depend on the password, with new salts and today's number of
 * iterations; all others are set before. Answers the password key.
 */
sys::Result<sys::SecretBytes> setPassword(Parameters& parameters, const sys::Password& password,
                                          sys::ByteView masterKey);

/**
 * Works with a password whose lifetime has passed. The new one's lifetime is in seconds, 0 for
 * ever; password_rules.h tells the codes of both. ZELKM_ERR_DATABASE_WRITE (13).
 */
sys::Status changeDatabasePassword(const sys::FileName& name, const PasswordOrStash& oldPassword,
                                   const sys::Password& newPassword, std::int64_t lifetime);

/**
 * Writes the stash file of a database that the password opens.
 * ZELKM_ERR_PASSWORD_EXPIRATION_TIME (70) when its lifetime has passed.
 */
sys::Status stashDatabasePassword(const sys::FileName& name, const sys::Password& password);

/** False when a stash file stands beside the database that opens it. */
sys::Result<bool> needsPassword(const sys::FileName& name);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_PASSWORDS_H_
