#include "engine/sys/secrets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace zel::sys {
namespace {

bool isZero(ByteView bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

TEST(SecretBlockTest, StartsAsZerosEvenWhereAnotherSecretStood) {
  for (int round = 0; round < 3; ++round) {
    SecretBlock block(100);
    EXPECT_TRUE(isZero(std::as_const(block).bytes()));
    std::ranges::fill(block.bytes(), std::uint8_t{0xA5});
  }
}

TEST(SecretBlockTest, KeepsItsBytesWhenMoved) {
  SecretBlock block(32);
  std::ranges::fill(block.bytes(), std::uint8_t{7});
  SecretBlock other(64);
  other = std::move(block);
  ASSERT_EQ(std::as_const(other).bytes().size(), 32U);
  EXPECT_EQ(other.bytes()[31], 7);
}

TEST(SecretBlockTest, IsWipedWhenItGoes) {
  std::uint8_t* stood = nullptr;
  {
    SecretBlock block(32);
    if (!block.locked()) GTEST_SKIP() << "this process may not lock memory";
    stood = block.bytes().data();
    std::ranges::fill(block.bytes(), std::uint8_t{7});
  }
  // The locked region stays mapped for good, so the place may still be read.
  EXPECT_TRUE(isZero({stood, 32}));
}

TEST(SecretBlockTest, HoldsMoreThanCanBeLocked) {
  std::vector<SecretBlock> blocks;
  for (int count = 0; count < 3000; ++count) {
    blocks.emplace_back(48);
    std::ranges::fill(blocks.back().bytes(), static_cast<std::uint8_t>(count));
  }
  EXPECT_FALSE(blocks.back().locked());
  for (int count = 0; count < 3000; ++count) {
    const auto at = static_cast<std::size_t>(count);
    ASSERT_EQ(blocks[at].bytes()[47], static_cast<std::uint8_t>(count));
  }
}

TEST(SecretBlockTest, GivesItsPlaceBack) {
  for (int round = 0; round < 5000; ++round) {
    SecretBlock block(96);
    if (round == 0 && !block.locked()) GTEST_SKIP() << "this process may not lock memory";
    ASSERT_TRUE(block.locked());
  }
}

}  // namespace
}  // namespace zel::sys
