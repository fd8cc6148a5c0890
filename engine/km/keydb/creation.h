#ifndef ZEL_KM_KEYDB_CREATION_H_
#define ZEL_KM_KEYDB_CREATION_H_

#include <cstdint>
#include <functional>
#include <memory>

#include "engine/km/store/store.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * How a key database file comes into the world: as a draft under a name of its own, which gets its
 * final name once it is whole.
 */

namespace zel::km {

/** What a new key database is to be. */
struct NewDatabase {
  std::int64_t lifetime = 0; /**< of its password, in seconds; 0 for ever */
  bool approvedOnly = false;
  /** Puts the first entries into it; when it fails there is no file. */
  std::function<sys::Status(Store&)> fill = {};
};

/**
 * Makes a file, readable by its owner alone, and opens it.
 *  - ZELKM_ERR_DATABASE_ALREADY_EXISTS (9): the file, or the journal of one that is gone.
 *  - ZELKM_ERR_DATABASE_CREATE (8), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90)
 *  - the codes of password_rules.h for the password and its lifetime
 */
sys::Result<std::unique_ptr<Store>> createKeyDatabase(const sys::FileName& name,
                                                      const sys::Password& password,
                                                      const NewDatabase& settings);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_CREATION_H_
