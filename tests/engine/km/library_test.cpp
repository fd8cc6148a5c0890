#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

class LibraryTest : public KeyDatabaseTest {
 protected:
  static int setMode(bool approved, bool validated) {
    auto* info = static_cast<ZELKMCryptoInfo*>(ZELKM_Malloc(sizeof(ZELKMCryptoInfo)));
    info->firstFlag = approved ? 1 : 0;
    info->secondFlag = validated ? 1 : 0;
    return ZELKM_SetCryptoInfo(info);
  }
};

TEST_F(LibraryTest, StartsAgainAfterItWasCleaned) {
  EXPECT_EQ(ZELKM_Init(), ZELKM_OK);
  EXPECT_EQ(ZELKM_CleanAll(), ZELKM_OK);
  EXPECT_EQ(ZELKM_Init(), ZELKM_OK);
  EXPECT_EQ(openAndClose(kPassword), ZELKM_OK);
}

TEST_F(LibraryTest, ClosesEveryHandleWhenCleaned) {
  ASSERT_EQ(ZELKM_CleanAll(), ZELKM_OK);
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle_, &list), ZELKM_ERR_INVALID_DB_HANDLE);
}

TEST_F(LibraryTest, AllowsKeysOf16384Bits) { EXPECT_EQ(ZELKM_GetMaxCryptoKeySize(1), 16384U); }

TEST_F(LibraryTest, HandsOutMemoryThatFreeReleasesToo) {
  char* text = ZELKM_Strdup("text");
  EXPECT_STREQ(text, "text");
  std::free(text);
  EXPECT_EQ(ZELKM_Strdup(nullptr), nullptr);
  auto* block = static_cast<char*>(ZELKM_Malloc(4));
  block[3] = 'x';
  block = static_cast<char*>(ZELKM_Realloc(block, 4096));
  EXPECT_EQ(block[3], 'x');
  ZELKM_Free(block);
  ZELKM_Free(nullptr);
}

TEST_F(LibraryTest, KeepsToApprovedAlgorithmsWhenAsked) {
  EXPECT_EQ(setMode(true, false), ZELKM_OK);
  EXPECT_EQ(openAndClose(kPassword), ZELKM_OK);
  EXPECT_EQ(setMode(false, false), ZELKM_OK);
  EXPECT_EQ(ZELKM_SetCryptoInfo(nullptr), ZELKM_ERR_NULL_PARAMETER);
}

TEST_F(LibraryTest, SaysWhenThereIsNoValidatedModule) {
  if (cms::run("openssl list -provider fips -digest-algorithms").exitCode == 0) {
    GTEST_SKIP() << "this machine has OpenSSL's fips provider";
  }
  EXPECT_EQ(setMode(true, true), ZELKM_ERR_UNSUPPORTED_OPTION);
  EXPECT_EQ(setMode(false, true), ZELKM_ERR_UNSUPPORTED_OPTION);
  EXPECT_EQ(openAndClose(kPassword), ZELKM_OK);
}

TEST_F(LibraryTest, TracesWhyButNoPassword) {
  ASSERT_EQ(ZELKM_StartTrace("tag", path("trace").c_str(), 0, 0), ZELKM_OK);
  EXPECT_EQ(openAndClose("a wrong password"), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(openAndClose(kPassword), ZELKM_OK);
  const sys::Bytes trace = bytesOf(path("trace"));
  const std::string text(trace.begin(), trace.end());
  EXPECT_THAT(text, testing::HasSubstr("the password is wrong"));
  EXPECT_THAT(text, testing::HasSubstr("ZELKM_OpenKeyDb answers 16"));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("a wrong password")));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr(kPassword)));
  EXPECT_EQ(ZELKM_CleanAll(), ZELKM_OK);
}

}  // namespace
}  // namespace zel::km
