#ifndef ZEL_TESTS_ENGINE_SYS_BOUND_BY_MODES_H_
#define ZEL_TESTS_ENGINE_SYS_BOUND_BY_MODES_H_

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace zel::test {

/**
 * BoundByModes holds the thread to what the modes of files let their owner do. Root may pass them
 * over; this takes that right away from it, here and for as long as it lives. For others it does
 * nothing.
 *
 *     ::chmod(file, 0);
 *     const BoundByModes bound;
 *     ::open(file, O_RDONLY);  // EACCES, for root too
 */
class BoundByModes {
 public:
  BoundByModes() {
    call(SYS_capget, before_);
    Rights rights = before_;
    rights.sets[0].effective &= ~(bit(CAP_DAC_OVERRIDE) | bit(CAP_DAC_READ_SEARCH));
    call(SYS_capset, rights);
  }
  ~BoundByModes() { call(SYS_capset, before_); }
  BoundByModes(const BoundByModes&) = delete;
  BoundByModes& operator=(const BoundByModes&) = delete;

 private:
  struct Rights {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct sets[_LINUX_CAPABILITY_U32S_3]{};
  };

  static constexpr __u32 bit(int capability) { return 1U << capability; }

  static void call(long number, Rights& rights) {
    if (::syscall(number, &rights.header, rights.sets) != 0) std::abort();
  }

  Rights before_;
};

}  // namespace zel::test

#endif  // ZEL_TESTS_ENGINE_SYS_BOUND_BY_MODES_H_
