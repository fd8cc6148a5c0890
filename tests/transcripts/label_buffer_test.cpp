#include "bridge/marshal/label_buffer.h"

#include <gtest/gtest.h>

#include <string>

namespace zel::bridge {
namespace {

std::string copied(const std::string& label) { return LabelBuffer().copy(label.c_str()); }

TEST(LabelBuffer, KeepsALabelThatFits) {
  EXPECT_EQ(copied(""), "");
  EXPECT_EQ(copied("my key"), "my key");
  EXPECT_EQ(copied(std::string(511, 'x')), std::string(511, 'x'));
}

TEST(LabelBuffer, CutsALongerOne) {
  EXPECT_EQ(copied(std::string(512, 'x')), std::string(511, 'x'));
  EXPECT_EQ(copied(std::string(5000, 'x')), std::string(511, 'x'));
}

TEST(LabelBuffer, CutsBetweenCharacters) {
  const std::string eAcute = "\xc3\xa9";
  const std::string euro = "\xe2\x82\xac";
  EXPECT_EQ(copied(std::string(510, 'x') + eAcute), std::string(510, 'x'));
  EXPECT_EQ(copied(std::string(509, 'x') + eAcute + "x"), std::string(509, 'x') + eAcute);
  EXPECT_EQ(copied(std::string(509, 'x') + euro), std::string(509, 'x'));
  EXPECT_EQ(copied(std::string(508, 'x') + euro + "x"), std::string(508, 'x') + euro);
}

TEST(LabelBuffer, KeepsNothingOfALabelWithoutAnyCharacter) {
  EXPECT_EQ(copied(std::string(512, '\x80')), "");
}

TEST(LabelBuffer, ForgetsTheLabelBefore) {
  LabelBuffer buffer;
  buffer.copy("a long label");
  EXPECT_STREQ(buffer.copy("short"), "short");
}

}  // namespace
}  // namespace zel::bridge
