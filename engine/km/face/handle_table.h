#ifndef ZEL_KM_FACE_HANDLE_TABLE_H_
#define ZEL_KM_FACE_HANDLE_TABLE_H_

#include <memory>
#include <mutex>
#include <unordered_map>

#include "engine/km/store/store.h"
#include "engine/sys/mutex.h"
#include "engine/sys/result.h"

/**
 * @file
 * The numbers that name open stores over the C interface. A handle is positive, works on any
 * thread, and is not given out again until all other positive numbers have been.
 *
 *     Result<OpenStore> open = HandleTable::instance().borrow(handle);
 *     if (!open) return open.failure();
 *     open.value().store().removeKey(label);
 */

namespace zel::km {

/** An OpenStore is a store on loan: nobody else uses it, and it outlives its handle if need be. */
class OpenStore {
 public:
  struct Entry {
    explicit Entry(std::unique_ptr<Store> opened) : store(std::move(opened)) {}
    std::mutex mutex;
    std::unique_ptr<Store> store;
  };

  explicit OpenStore(std::shared_ptr<Entry> entry)
      : entry_(std::move(entry)), lock_(entry_->mutex) {}

  Store& store() { return *entry_->store; }

 private:
  std::shared_ptr<Entry> entry_;
  std::unique_lock<std::mutex> lock_;
};

class HandleTable {
 public:
  static HandleTable& instance();

  /** A new handle for the store. */
  int add(std::unique_ptr<Store> store);

  /** ZELKM_ERR_INVALID_DB_HANDLE (100) when the handle names no open store. */
  sys::Result<OpenStore> borrow(int handle);

  /** Closes the store once nobody has it on loan any more. */
  sys::Status close(int handle);

  void closeAll();

 private:
  sys::Mutex mutex_;
  std::unordered_map<int, std::shared_ptr<OpenStore::Entry>> entries_ ZEL_GUARDED_BY(mutex_);
  int last_ ZEL_GUARDED_BY(mutex_) = 0;
};

}  // namespace zel::km

#endif  // ZEL_KM_FACE_HANDLE_TABLE_H_
