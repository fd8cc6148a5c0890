#include "tests/engine/km/many_entries.h"

#include <gtest/gtest.h>

#include "engine/km/keydb/creation.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/km/heap.h"
#include "tests/engine/km/key_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

// A label of up to 31 bytes: its string object, its block, and the room that a growing vector
// leaves while it moves.
constexpr std::size_t kMostBytesPerLabel = 3 * sizeof(std::string) + 64;

class ManyEntriesTest : public testing::Test {
 protected:
  /** The most memory that a listing of so many entries needs at a time. */
  std::size_t listingOf(int count) {
    const std::string file = folder_.path(std::to_string(count) + ".kdb");
    const auto store = createKeyDatabase(fileName(file), password(kPassword), {}).value();
    EXPECT_TRUE(insertEntries(*store, count));
    EXPECT_EQ(store->keyLabels().value().size(), static_cast<std::size_t>(count));
    return heap::peakOf([&] { (void)store->keyLabels(); });
  }
  /** How far a listing grows per entry from the first count to the second. */
  std::size_t growthPerEntry(int few, int many) {
    return (listingOf(many) - listingOf(few)) / static_cast<std::size_t>(many - few);
  }

  cms::TemporaryFolder folder_;
};

TEST_F(ManyEntriesTest, AreListedWithMemoryForTheirLabelsAlone) {
  EXPECT_LE(growthPerEntry(100, 1500), kMostBytesPerLabel);
}

// Takes a minute; script/soak runs it.
TEST_F(ManyEntriesTest, DISABLED_AreListedWithMemoryForTheirLabelsAloneAtAHundredThousand) {
  EXPECT_LE(growthPerEntry(1000, 100'000), kMostBytesPerLabel);
}

}  // namespace
}  // namespace zel::km
