#ifndef ZEL_SYS_MUTEX_H_
#define ZEL_SYS_MUTEX_H_

#include <mutex>

/**
 * @file
 * Mutexes whose use clang checks at compile time (-Wthread-safety): each member says which one
 * guards it, and script/lint refuses a function that touches it without holding that one.
 *
 *     class Counter {
 *       void count() {
 *         const Lock lock(mutex_);
 *         ++counted_;
 *       }
 *       Mutex mutex_;
 *       int counted_ ZEL_GUARDED_BY(mutex_) = 0;
 *     };
 *
 * Other compilers read past the annotations.
 */

#if defined(__clang__)
#define ZEL_THREAD_ANNOTATION(annotation) __attribute__((annotation))
#else
#define ZEL_THREAD_ANNOTATION(annotation)
#endif

/** The member is read and written only while the mutex is held. */
#define ZEL_GUARDED_BY(mutex) ZEL_THREAD_ANNOTATION(guarded_by(mutex))

namespace zel::sys {

class ZEL_THREAD_ANNOTATION(capability("mutex")) Mutex {
 public:
  void lock() ZEL_THREAD_ANNOTATION(acquire_capability()) { mutex_.lock(); }
  void unlock() ZEL_THREAD_ANNOTATION(release_capability()) { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

/** A Lock holds a mutex for as long as it lives. */
class ZEL_THREAD_ANNOTATION(scoped_lockable) Lock {
 public:
  explicit Lock(Mutex& mutex) ZEL_THREAD_ANNOTATION(acquire_capability(mutex)) : mutex_(mutex) {
    mutex_.lock();
  }
  ~Lock() ZEL_THREAD_ANNOTATION(release_capability()) { mutex_.unlock(); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  Mutex& mutex_;
};

}  // namespace zel::sys

#endif  // ZEL_SYS_MUTEX_H_
