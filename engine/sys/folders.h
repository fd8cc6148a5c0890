#ifndef ZEL_SYS_FOLDERS_H_
#define ZEL_SYS_FOLDERS_H_

#include <sys/types.h>

#include <string>
#include <vector>

#include "engine/sys/api.h"
#include "engine/sys/descriptor.h"
#include "engine/sys/result.h"

/**
 * @file
 * Folders that hold one user's files, which other processes of the user work on too:
 *
 *     if (Status safe = requireOwnFolder(name, S_IWGRP | S_IWOTH); !safe) return safe;
 *     Result<FolderLock> lock = FolderLock::take(name);
 *
 * Names are real UTF-8. ZELKM_ERR_FILE_OPEN_NOT_EXIST (89) is said of a folder that is not there,
 * ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90) of one that is not to be used.
 */

namespace zel::sys {

/**
 * homeFolder answers the user's home folder: HOME when it is an absolute name, else what the user
 * database has. ZELKM_ERR_FILE_OPEN_NOT_EXIST (89) when neither tells.
 */
ZEL_SYS_API Result<std::string> homeFolder();

/**
 * requireOwnFolder refuses a folder that belongs to another user than this one and root, and one
 * that may be written by those whose mode bits are barred (S_IWGRP, S_IWOTH). Behind a symbolic
 * link, the folder that it leads to is judged.
 */
ZEL_SYS_API Status requireOwnFolder(const std::string& name, mode_t barred);

/** makeOwnFolder makes a folder for its owner alone (0700). One that is there stays as it is. */
ZEL_SYS_API Status makeOwnFolder(const std::string& name);

/** The names of what is in a folder, in no order. */
ZEL_SYS_API Result<std::vector<std::string>> namesIn(const std::string& folder);

/**
 * A FolderLock keeps all others out who take one on the same folder, in this process and in others,
 * until it goes. Whoever does not ask for one is not kept out.
 */
class ZEL_SYS_API FolderLock {
 public:
  /**
   * Waits up to 5 s; then ZELKM_ERR_DATABASE_WRITE (13). Where the file system has no locks for
   * folders, as NFS has not, nobody is kept out.
   */
  static Result<FolderLock> take(const std::string& folder);

 private:
  explicit FolderLock(Descriptor folder) : folder_(std::move(folder)) {}

  Descriptor folder_;
};

}  // namespace zel::sys

#endif  // ZEL_SYS_FOLDERS_H_
