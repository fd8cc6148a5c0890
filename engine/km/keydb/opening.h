#ifndef ZEL_KM_KEYDB_OPENING_H_
#define ZEL_KM_KEYDB_OPENING_H_

#include <memory>
#include <optional>
#include <string>

#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/sqlite.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * The two states of a key database file that is opened. A LockedFile is what anybody learns who may
 * read the file; it becomes an UnlockedFile by the right password, and by nothing else:
 *
 *     Result<UnlockedFile> file = UnlockedFile::open(name, password);
 *     if (!file) return file.failure();
 *
 * Whatever reads a file may answer:
 *  - ZELKM_ERR_KEYDB_NOT_EXIST (101), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90)
 *  - ZELKM_ERR_DATABASE_INVALID_FILE_TYPE (17): no key database
 *  - ZELKM_ERR_DATABASE_INVALID_VERSION (15): of a version that is not known here
 *  - ZELKM_ERR_DATABASE_CORRUPTION (18), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION (19): damaged
 *  - ZELKM_ERR_DATABASE_READ (12)
 */

namespace zel::km {

/** A password, or none for that of the stash file. */
using PasswordOrStash = std::optional<sys::Password>;

class UnlockedFile;

/** A file whose parameters have been read; nothing in it is unlocked. */
class LockedFile {
 public:
  static sys::Result<LockedFile> read(const sys::FileName& name);

  /** Absolute, so that a change of directory does not lose it. */
  const std::string& path() const { return path_; }
  FileIdentity identity() const { return identity_; }
  const Parameters& parameters() const { return parameters_; }

  /** The password in the stash file beside it; stash.h tells the codes. */
  sys::Result<sys::Password> stashedPassword() const;

  /** ZELKM_ERR_DATABASE_INVALID_PASSWORD (16), after a whole derivation. */
  sys::Result<UnlockedFile> unlock(sys::Password password) &&;
  /** The same for who has derived the password's key already. */
  sys::Result<UnlockedFile> unlock(sys::Password password, sys::ByteView passwordKey) &&;

 private:
  friend class UnlockedFile;

  LockedFile(sys::FileName name, FileIdentity identity);

  sys::FileName name_; /**< as it was given: the stash file stands beside it */
  std::string path_;
  FileIdentity identity_;
  std::unique_ptr<Connection> connection_;
  Parameters parameters_;
};

/** A file whose password was right. */
class UnlockedFile {
 public:
  /** Opens with the password, or with that of the stash file, whether or not it has expired. */
  static sys::Result<UnlockedFile> open(const sys::FileName& name, const PasswordOrStash& password);

  const std::string& path() const { return file_.path(); }
  FileIdentity identity() const { return file_.identity(); }
  const Parameters& parameters() const { return file_.parameters(); }
  sys::ByteView password() const { return password_.bytes(); }
  sys::ByteView masterKey() const { return masterKey_; }

  /** The connection that the file was read through; once only. */
  std::unique_ptr<Connection> takeConnection() { return std::move(file_.connection_); }

 private:
  friend class LockedFile;

  UnlockedFile(LockedFile file, sys::Password password, sys::SecretBytes masterKey);

  LockedFile file_;
  sys::Password password_;
  sys::SecretBytes masterKey_;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_OPENING_H_
