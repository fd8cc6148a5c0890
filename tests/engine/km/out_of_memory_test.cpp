#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <new>
#include <thread>

#include "tests/engine/km/filled_database.h"

namespace {

// How many allocations of this thread succeed before one fails; negative when none is to fail.
thread_local int untilFailure = -1;

}  // namespace

// The library is linked into this program as objects, so its allocations come here too.
void* operator new(std::size_t size) {
  if (untilFailure == 0) {
    untilFailure = -1;
    throw std::bad_alloc();
  }
  if (untilFailure > 0) --untilFailure;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace zel::km {
namespace {

class OutOfMemoryTest : public FilledDatabaseTest {
 protected:
  /**
   * Runs the body with one allocation more that succeeds each time, until none fails, and answers
   * how many there are.
   */
  static int failEachAllocationOf(const std::function<void()>& body) {
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
};

TEST_F(OutOfMemoryTest, EndsNoProcessThatReads) {
  // A file that has settled is examined once; from then on each run allocates as much as the last.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  ASSERT_TRUE(store_->findKey("one"));
  EXPECT_GT(failEachAllocationOf([&] { (void)store_->findKey("one"); }), 10);
  EXPECT_TRUE(store_->findKey("one"));
}

TEST_F(OutOfMemoryTest, EndsNoProcessThatWrites) {
  EXPECT_GT(failEachAllocationOf([&] { (void)store_->setTrusted("one", true); }), 10);
  EXPECT_TRUE(store_->findKey("one").value().trusted);
}

TEST_F(OutOfMemoryTest, EndsNoProcessThatTakesItsWritesBack) {
  const auto refused = [] { return sys::Failure{ZELKM_ERR_PARAMETER}; };
  EXPECT_GT(failEachAllocationOf([&] {
              (void)store_->inTransaction([&]() -> sys::Status {
                sys::Status removed = store_->removeKey("two");
                return removed ? refused() : removed;
              });
            }),
            10);
  EXPECT_TRUE(store_->findKey("two"));
}

}  // namespace
}  // namespace zel::km
