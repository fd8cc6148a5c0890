#ifndef ZEL_KM_STORE_FILE_STATE_H_
#define ZEL_KM_STORE_FILE_STATE_H_

#include <cstdint>
#include <string>
#include <tuple>

#include "engine/sys/result.h"

/**
 * @file
 * What the file system tells of a database file without opening it: which file it is, and whether
 * anybody has written to it since.
 */

namespace zel::km {

/** The same file has the same identity under any name. */
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  bool operator==(const FileIdentity&) const = default;
  bool operator<(const FileIdentity& other) const {
    return std::tie(device, inode) < std::tie(other.device, other.inode);
  }
};

/** A FileState changes with every write, but for writes within one tick of the system's clock. */
struct FileState {
  FileIdentity identity;
  std::int64_t size = 0;
  std::int64_t modified = 0; /**< nanoseconds since 1970 */
  std::int64_t changed = 0;  /**< nanoseconds since 1970, which nobody can set */

  bool operator==(const FileState&) const = default;

  /** False while another write could still leave the state as it is. */
  bool settled() const;
};

/**
 * ZELKM_ERR_KEYDB_NOT_EXIST (101) when there is no such file, ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90)
 * when its folder may not be looked into, ZELKM_ERR_DATABASE_INVALID_FILE_TYPE (17) when it is no
 * regular file.
 */
sys::Result<FileState> stateOf(const std::string& path);

}  // namespace zel::km

#endif  // ZEL_KM_STORE_FILE_STATE_H_
