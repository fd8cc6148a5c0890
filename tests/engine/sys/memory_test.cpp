#include "engine/sys/memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace zel::sys {
namespace {

TEST(MemoryTest, HandsOutTextWithItsTerminator) {
  char* text = handOutText("label");
  EXPECT_STREQ(text, "label");
  std::free(text);
}

TEST(MemoryTest, HandsOutEmptyTextAsText) {
  char* text = handOutText("");
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text, "");
  std::free(text);
}

TEST(MemoryTest, HandsOutBytesThatFreeReleases) {
  const Bytes bytes{1, 0, 2};
  unsigned char* copy = handOutBytes(bytes);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), copy));
  std::free(copy);
}

TEST(MemoryTest, HandsOutNullForNoBytes) { EXPECT_EQ(handOutBytes({}), nullptr); }

TEST(MemoryTest, HandsOutRecordsFilledWithZeros) {
  struct Record {
    char* text;
    int numbers[16];
  };
  auto* record = handOutRecord<Record>();
  EXPECT_EQ(record->text, nullptr);
  EXPECT_TRUE(std::all_of(std::begin(record->numbers), std::end(record->numbers),
                          [](int number) { return number == 0; }));
  std::free(record);
}

}  // namespace
}  // namespace zel::sys
