#ifndef ZEL_KM_KEYDB_DATABASE_LIFECYCLE_H_
#define ZEL_KM_KEYDB_DATABASE_LIFECYCLE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "engine/km/store/store.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * Key database files: made, opened, given new passwords. A missing password means that of the stash
 * file (stash.h tells its codes).
 *
 * Whatever reads a file may answer:
 *  - ZELKM_ERR_KEYDB_NOT_EXIST (101), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90)
 *  - ZELKM_ERR_DATABASE_INVALID_FILE_TYPE (17): no key database
 *  - ZELKM_ERR_DATABASE_INVALID_VERSION (15): of a version that is not known here
 *  - ZELKM_ERR_DATABASE_CORRUPTION (18), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION (19): damaged
 *  - ZELKM_ERR_DATABASE_INVALID_PASSWORD (16)
 *  - ZELKM_ERR_DATABASE_READ (12), ZELKM_ERR_DATABASE_WRITE (13)
 */

namespace zel::km {

/** A password, or none for that of the stash file. */
using PasswordOrStash = std::optional<sys::Password>;

/** What a new key database is to be. */
struct NewDatabase {
  std::int64_t lifetime = 0; /**< of its password, in seconds; 0 for ever */
  bool approvedOnly = false;
  /** Puts the first entries into it; when it fails there is no file. */
  std::function<sys::Status(Store&)> fill = {};
};

/**
 * Makes a file, readable by its owner alone, and opens it. It has its name only once it is whole.
 *  - ZELKM_ERR_DATABASE_ALREADY_EXISTS (9): the file, or the journal of one that is gone.
 *  - ZELKM_ERR_DATABASE_CREATE (8)
 */
sys::Result<std::unique_ptr<Store>> createKeyDatabase(const sys::FileName& name,
                                                      const sys::Password& password,
                                                      const NewDatabase& settings);

/** ZELKM_ERR_PASSWORD_EXPIRATION_TIME (70) when the right password's lifetime has passed. */
sys::Result<std::unique_ptr<Store>> openKeyDatabase(const sys::FileName& name,
                                                    const PasswordOrStash& password);

/** Works with a password whose lifetime has passed. */
sys::Status changeDatabasePassword(const sys::FileName& name, const PasswordOrStash& oldPassword,
                                   const sys::Password& newPassword, std::int64_t lifetime);

/** Writes the stash file of a database that the password opens. */
sys::Status stashDatabasePassword(const sys::FileName& name, const sys::Password& password);

/** False when a stash file stands beside the database that opens it. */
sys::Result<bool> needsPassword(const sys::FileName& name);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_DATABASE_LIFECYCLE_H_
