#include <gtest/gtest.h>

#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

// The types that text of the C interface becomes where it comes in.

namespace zel::sys {

namespace {

std::string textOf(const Password& password) {
  return {password.bytes().begin(), password.bytes().end()};
}

TEST(FileNameTest, IsRealUtf8) {
  EXPECT_EQ(FileName::given("\xED\xA0\xBD\xED\xB4\x91.kdb").value().path(), "\xF0\x9F\x94\x91.kdb");
}

TEST(FileNameTest, MayNotBeMissing) {
  EXPECT_EQ(FileName::given(nullptr).code(), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(FileName::given("").code(), ZELKM_ERR_FILENAME_NULL);
}

TEST(FileNameTest, HoldsNoNulAndNoBrokenText) {
  EXPECT_EQ(FileName::given("keys\xC0\x80.kdb").code(), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(FileName::given("keys\xFF.kdb").code(), ZELKM_ERR_PARAMETER);
}

TEST(PasswordTest, IsRealUtf8) {
  EXPECT_EQ(textOf(Password::given("a\xED\xA0\xBD\xED\xB4\x91").value()), "a\xF0\x9F\x94\x91");
  EXPECT_EQ(Password::given("a\xFF").code(), ZELKM_ERR_PARAMETER);
}

TEST(PasswordTest, ThatIsMissingIsWhatTheOperationSays) {
  EXPECT_EQ(Password::given(nullptr).code(), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_TRUE(Password::given("").value().empty());
  EXPECT_TRUE(Password::givenOrEmpty(nullptr).value().empty());
  EXPECT_FALSE(Password::givenOrKept(nullptr).value().has_value());
  EXPECT_FALSE(Password::givenOrKept("").value().has_value());
  EXPECT_EQ(textOf(Password::givenOrKept("secret").value().value()), "secret");
  EXPECT_EQ(Password::givenOrKept("a\xFF").code(), ZELKM_ERR_PARAMETER);
}

}  // namespace

}  // namespace zel::sys
