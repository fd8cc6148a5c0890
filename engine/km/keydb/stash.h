#ifndef ZEL_KM_KEYDB_STASH_H_
#define ZEL_KM_KEYDB_STASH_H_

#include <string>

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Stash files: the password of a key database in a file beside it, for programs that nobody is
 * there to type it for. What protects it is that its owner alone may read the file; it is sealed to
 * its database so that an old or damaged one is known for what it is.
 */

namespace zel::km {

/**
 * The stash file of a database: its name with the extension replaced by ".sth", or with a second
 * ".sth" when that is the extension already.
 */
std::string stashNameOf(const std::string& databaseName);

/** The salt is the database's present one, which changes with the password. */
sys::Status writeStash(const std::string& databaseName, sys::ByteView salt, sys::ByteView password);

/**
 * The password, in UTF-8.
 *  - ZELKM_ERR_PWDFILE_NOT_EXIST (103): there is none.
 *  - ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90): others may read it, or this user may not.
 *  - ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION (19): damaged, or not of the present password.
 */
sys::Result<sys::SecretBytes> readStash(const std::string& databaseName, sys::ByteView salt);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_STASH_H_
