#include "engine/km/keydb/sharing.h"

#include <utility>

#include "engine/km/keydb/key_hierarchy.h"

namespace zel::km {

OpenFiles& OpenFiles::instance() {
  // Never destroyed: a thread may still open a database while the process exits.
  static auto* files = new OpenFiles;
  return *files;
}

sys::Result<std::shared_ptr<const DatabaseFile>> OpenFiles::share(UnlockedFile unlocked) {
  sys::Result<std::shared_ptr<const DatabaseFile>> file = fileOf(unlocked);
  if (!file) return file;
  file.value()->adopt(unlocked.takeConnection());
  sys::Result<BorrowedConnection> sound = file.value()->borrow();
  if (!sound) return sound.failure();
  return file;
}

sys::Result<std::shared_ptr<const DatabaseFile>> OpenFiles::fileOf(const UnlockedFile& unlocked) {
  const Parameters& parameters = unlocked.parameters();
  const sys::Lock lock(mutex_);
  std::weak_ptr<const DatabaseFile>& known =
      files_[Key(unlocked.path(), unlocked.identity(), parameters.salt)];
  std::shared_ptr<const DatabaseFile> file = known.lock();
  if (!file) {
    sys::Result<DatabaseKeys> keys = DatabaseKeys::fromMaster(unlocked.masterKey());
    if (!keys) return keys.failure();
    file = std::make_shared<const DatabaseFile>(unlocked.path(), parameters.approvedOnly,
                                                std::move(keys.value()), unlocked.password());
    known = file;
  }
  std::erase_if(files_, [](const auto& each) { return each.second.expired(); });
  return file;
}

}  // namespace zel::km
