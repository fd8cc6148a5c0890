#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/engine/km/filled_database.h"
#include "tests/engine/km/heap.h"

namespace zel::km {
namespace {

using OutOfMemoryTest = FilledDatabaseTest;

TEST_F(OutOfMemoryTest, EndsNoProcessThatReads) {
  // A file that has settled is examined once; from then on each run allocates as much as the last.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  ASSERT_TRUE(store_->findKey("one"));
  EXPECT_GT(heap::failEachAllocationOf([&] { (void)store_->findKey("one"); }), 10);
  EXPECT_TRUE(store_->findKey("one"));
}

TEST_F(OutOfMemoryTest, EndsNoProcessThatWrites) {
  EXPECT_GT(heap::failEachAllocationOf([&] { (void)store_->setTrusted("one", true); }), 10);
  EXPECT_TRUE(store_->findKey("one").value().trusted);
}

TEST_F(OutOfMemoryTest, EndsNoProcessThatTakesItsWritesBack) {
  const auto refused = [] { return sys::Failure{ZELKM_ERR_PARAMETER}; };
  EXPECT_GT(heap::failEachAllocationOf([&] {
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
