#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/engine/km/filled_database.h"
#include "tests/engine/km/heap.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

using OutOfMemoryTest = FilledDatabaseTest;

TEST_F(OutOfMemoryTest, EndsNoProcessThatReads) {
  // A file that has settled is examined once; from then on each run allocates as much as the last.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  ASSERT_TRUE(store_->findKey("one"_label));
  EXPECT_GT(heap::failEachAllocationOf([&] { (void)store_->findKey("one"_label); }), 10);
  EXPECT_TRUE(store_->findKey("one"_label));
}

TEST_F(OutOfMemoryTest, EndsNoProcessThatWrites) {
  EXPECT_GT(heap::failEachAllocationOf([&] { (void)store_->setTrusted("one"_label, true); }), 10);
  EXPECT_TRUE(store_->findKey("one"_label).value().trusted);
}

TEST_F(OutOfMemoryTest, EndsNoProcessThatTakesItsWritesBack) {
  const auto refused = [] { return sys::Failure{ZELKM_ERR_PARAMETER}; };
  EXPECT_GT(heap::failEachAllocationOf([&] {
              (void)inTransaction(*store_, [&]() -> sys::Status {
                sys::Status removed = store_->removeKey("two"_label);
                return removed ? refused() : removed;
              });
            }),
            10);
  EXPECT_TRUE(store_->findKey("two"_label));
}

}  // namespace
}  // namespace zel::km
