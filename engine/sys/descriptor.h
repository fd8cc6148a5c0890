#ifndef ZEL_SYS_DESCRIPTOR_H_
#define ZEL_SYS_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace zel::sys {

/** A Descriptor is a file descriptor that is closed when it goes; negative when there is none. */
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }
  /** Closes and says whether all was well: some file systems report a failed write only then. */
  bool close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

}  // namespace zel::sys

#endif  // ZEL_SYS_DESCRIPTOR_H_
