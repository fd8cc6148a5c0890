#ifndef ZEL_KM_KEYDB_SHARING_H_
#define ZEL_KM_KEYDB_SHARING_H_

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "engine/km/keydb/database_file.h"
#include "engine/km/keydb/opening.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/bytes.h"
#include "engine/sys/mutex.h"
#include "engine/sys/result.h"

/**
 * @file
 * What the handles on one file have in common: the registry of the files that are open, so that
 * each has its keys and its connections once, however often it is opened.
 */

namespace zel::km {

/** OpenFiles knows the files that somebody has open; it does not keep them open itself. */
class OpenFiles {
 public:
  static OpenFiles& instance();

  /**
   * The one DatabaseFile of all who opened the file under the same password, which takes in the
   * connection. ZELKM_ERR_DATABASE_CORRUPTION (18) when the file is damaged: that is found out now
   * rather than by the first operation.
   */
  sys::Result<std::shared_ptr<const DatabaseFile>> share(UnlockedFile unlocked);

 private:
  /** Path, identity and salt, the last of which changes with the password. */
  using Key = std::tuple<std::string, FileIdentity, sys::Bytes>;

  sys::Result<std::shared_ptr<const DatabaseFile>> fileOf(const UnlockedFile& unlocked);

  sys::Mutex mutex_;
  std::map<Key, std::weak_ptr<const DatabaseFile>> files_ ZEL_GUARDED_BY(mutex_);
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_SHARING_H_
