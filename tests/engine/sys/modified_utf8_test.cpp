#include "engine/sys/modified_utf8.h"

#include <gtest/gtest.h>

namespace zel::sys {
namespace {

using std::string_literals::operator""s;

constexpr char kKeyModified[] = "\xED\xA0\xBD\xED\xB4\x91";  // U+1F511 as two surrogates
constexpr char kKeyUtf8[] = "\xF0\x9F\x94\x91";

TEST(ModifiedUtf8, LeavesTheBasicPlaneAsItIs) {
  EXPECT_EQ(toUtf8("Größe €").value(), "Größe €");
  EXPECT_EQ(toModifiedUtf8("Größe €"), "Größe €");
}

TEST(ModifiedUtf8, JoinsSurrogatesToOneCharacter) {
  EXPECT_EQ(toUtf8(kKeyModified).value(), kKeyUtf8);
  EXPECT_EQ(toModifiedUtf8(kKeyUtf8), kKeyModified);
}

TEST(ModifiedUtf8, CarriesTheNulCharacterInTwoBytes) {
  EXPECT_EQ(toUtf8("a\xC0\x80z").value(), "a\0z"s);
  EXPECT_EQ(toModifiedUtf8("a\0z"s), "a\xC0\x80z");
}

TEST(ModifiedUtf8, TakesRealUtf8Too) { EXPECT_EQ(toUtf8(kKeyUtf8).value(), kKeyUtf8); }

TEST(ModifiedUtf8, RefusesWhatIsNoText) {
  for (const char* broken : {"\x80", "\xC3", "\xC1\x81", "\xE0\x80\x80", "\xED\xA0\xBD",
                             "\xED\xB4\x91", "\xED\xA0\xBD\xED\xA0\xBD",
                             "\xED\xA0\xBD"
                             "a",
                             "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xE2\x82"}) {
    EXPECT_EQ(toUtf8(broken).code(), ZELKM_ERR_PARAMETER) << broken;
    EXPECT_EQ(secretToUtf8(broken).code(), ZELKM_ERR_PARAMETER) << broken;
  }
}

TEST(ModifiedUtf8, ShowsBrokenBytesAsQuestionMarks) {
  EXPECT_EQ(toModifiedUtf8("a\xFFz"), "a?z");
  EXPECT_EQ(toModifiedUtf8("a\xC1\xBFz"), "a??z");
}

TEST(ModifiedUtf8, ReadsNoFurtherThanTheEndOfWhatIsBroken) {
  EXPECT_EQ(toModifiedUtf8("x\xC1\xBF"), "x??");
  EXPECT_EQ(toModifiedUtf8("\xF4\x90\x80\x80"), "????");
  EXPECT_EQ(toModifiedUtf8("\xF8\x88\x80\x80"), "????");
  EXPECT_EQ(toModifiedUtf8("\xE2\x82"), "??");
}

}  // namespace
}  // namespace zel::sys
