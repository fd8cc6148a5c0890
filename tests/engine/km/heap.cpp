#include "tests/engine/km/heap.h"

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

// How many allocations of this thread succeed before one fails; negative when none is to fail.
thread_local int untilFailure = -1;
thread_local std::int64_t inUse = 0;
thread_local std::int64_t peak = 0;

}  // namespace

void* operator new(std::size_t size) {
  if (untilFailure == 0) {
    untilFailure = -1;
    throw std::bad_alloc();
  }
  if (untilFailure > 0) --untilFailure;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  inUse += static_cast<std::int64_t>(malloc_usable_size(block));
  peak = std::max(peak, inUse);
  return block;
}

// A sanitizer would serve these by itself, and find fault with what frees them.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* block) noexcept {
  inUse -= static_cast<std::int64_t>(malloc_usable_size(block));
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { operator delete(block); }

namespace zel::km::heap {

int failEachAllocationOf(const std::function<void()>& body) {
  for (int successes = 0;; ++successes) {
    untilFailure = successes;
    try {
      body();
    } catch (const std::bad_alloc&) {
    }
    const bool failed = untilFailure < 0;
    untilFailure = -1;
    if (!failed) return successes;
  }
}

void failNext(bool fails) { untilFailure = fails ? 0 : -1; }

std::size_t peakOf(const std::function<void()>& body) {
  const std::int64_t before = inUse;
  peak = inUse;
  body();
  return static_cast<std::size_t>(peak - before);
}

}  // namespace zel::km::heap
