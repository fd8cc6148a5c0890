#include "engine/sys/secrets.h"

#include <sys/mman.h>

#include <bitset>
#include <utility>

#include "engine/sys/mutex.h"
#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

constexpr std::size_t kSlotSize = 32;
constexpr std::size_t kSlots = 2048;

/** The process's locked memory: one small region, cut into slots. */
class LockedMemory {
 public:
  static LockedMemory& instance() {
    // Never destroyed: a secret may be released while the process exits.
    static auto* memory = new LockedMemory;
    return *memory;
  }

  /** Null when there is no room for so much. */
  std::uint8_t* take(std::size_t size) {
    const std::size_t wanted = slotsOf(size);
    const Lock lock(mutex_);
    if (region_ == nullptr) return nullptr;
    std::size_t free = 0;
    for (std::size_t slot = 0; slot < kSlots; ++slot) {
      free = taken_[slot] ? 0 : free + 1;
      if (free < wanted) continue;
      const std::size_t first = slot + 1 - wanted;
      for (std::size_t each = first; each <= slot; ++each) taken_[each] = true;
      return region_ + first * kSlotSize;
    }
    return nullptr;
  }

  void giveBack(std::uint8_t* block, std::size_t size) {
    const Lock lock(mutex_);
    const auto first = static_cast<std::size_t>(block - region_) / kSlotSize;
    for (std::size_t each = 0; each < slotsOf(size); ++each) taken_[first + each] = false;
  }

 private:
  LockedMemory() {
    constexpr std::size_t kBytes = kSlotSize * kSlots;
    void* region =
        mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (region == MAP_FAILED) return;
    if (mlock(region, kBytes) != 0) {
      munmap(region, kBytes);
      traceLine("memory cannot be locked, no derived key will be kept");
      return;
    }
    madvise(region, kBytes, MADV_DONTDUMP);
    region_ = static_cast<std::uint8_t*>(region);
  }

  static std::size_t slotsOf(std::size_t size) { return (size + kSlotSize - 1) / kSlotSize; }

  std::uint8_t* region_ = nullptr; /**< as the constructor leaves it */
  Mutex mutex_;
  std::bitset<kSlots> taken_ ZEL_GUARDED_BY(mutex_);
};

}  // namespace

SecretBlock::SecretBlock(std::size_t size) : size_(size) {
  if (size == 0) return;
  data_ = LockedMemory::instance().take(size);
  locked_ = data_ != nullptr;
  // Blocks are zero when they are given back, and the region is when it is new.
  if (!locked_) data_ = new std::uint8_t[size]();
}

SecretBlock::~SecretBlock() { release(); }

SecretBlock::SecretBlock(SecretBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      locked_(std::exchange(other.locked_, false)) {}

SecretBlock& SecretBlock::operator=(SecretBlock&& other) noexcept {
  if (this == &other) return *this;
  release();
  data_ = std::exchange(other.data_, nullptr);
  size_ = std::exchange(other.size_, 0);
  locked_ = std::exchange(other.locked_, false);
  return *this;
}

void SecretBlock::release() {
  if (data_ == nullptr) return;
  OPENSSL_cleanse(data_, size_);
  if (locked_) {
    LockedMemory::instance().giveBack(data_, size_);
  } else {
    delete[] data_;
  }
  data_ = nullptr;
}

}  // namespace zel::sys
