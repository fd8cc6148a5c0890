#include "engine/km/face/handle_table.h"

#include <limits>
#include <utility>

namespace zel::km {

HandleTable& HandleTable::instance() {
  // Never destroyed: a thread may still use its handle while the process exits.
  static auto* table = new HandleTable;
  return *table;
}

int HandleTable::add(std::unique_ptr<Store> store) {
  auto entry = std::make_shared<OpenStore::Entry>(std::move(store));
  const sys::Lock lock(mutex_);
  do {
    last_ = last_ == std::numeric_limits<int>::max() ? 1 : last_ + 1;
  } while (entries_.contains(last_));
  entries_.emplace(last_, std::move(entry));
  return last_;
}

sys::Result<OpenStore> HandleTable::borrow(int handle) {
  std::shared_ptr<OpenStore::Entry> entry;
  {
    const sys::Lock lock(mutex_);
    auto found = entries_.find(handle);
    if (found == entries_.end()) return sys::Failure{ZELKM_ERR_INVALID_DB_HANDLE};
    entry = found->second;
  }
  return OpenStore(std::move(entry));
}

sys::Status HandleTable::close(int handle) {
  std::shared_ptr<OpenStore::Entry> closed;
  const sys::Lock lock(mutex_);
  auto found = entries_.find(handle);
  if (found == entries_.end()) return sys::Failure{ZELKM_ERR_INVALID_DB_HANDLE};
  closed = std::move(found->second);
  entries_.erase(found);
  return sys::success();
}

void HandleTable::closeAll() {
  std::unordered_map<int, std::shared_ptr<OpenStore::Entry>> closed;
  const sys::Lock lock(mutex_);
  closed.swap(entries_);
}

}  // namespace zel::km
