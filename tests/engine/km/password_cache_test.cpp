#include "engine/km/keydb/password_cache.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "engine/cms/pbe.h"
#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

/** Parameters that cost little to derive a key of. */
Parameters cheap(std::uint8_t salt) {
  return {.iterations = 1000, .salt = sys::Bytes(cms::kPbeSaltLength, salt)};
}

/** What is made of a key that is right. */
sys::Result<sys::SecretBytes> opens(sys::ByteView key) {
  return sys::SecretBytes(key.begin(), key.end());
}

class PasswordCacheTest : public KeyDatabaseTest {
 protected:
  /** How many derivations the body costs. */
  template <typename Body>
  static std::uint64_t costOf(Body&& body) {
    const std::uint64_t before = PasswordCache::instance().derivations();
    body();
    return PasswordCache::instance().derivations() - before;
  }
  std::uint64_t costOfOpening(const char* password, int code = ZELKM_OK) {
    return costOf([&] { EXPECT_EQ(openAndClose(password), code); });
  }
  static bool locksMemory() { return sys::SecretBlock(32).locked(); }

  void SetUp() override {
    if (!locksMemory()) GTEST_SKIP() << "this process may not lock memory";
  }
};

TEST_F(PasswordCacheTest, OpensWithoutDerivingAgain) {
  EXPECT_EQ(costOfOpening(kPassword), 0U);
  EXPECT_EQ(costOfOpening(kPassword), 0U);
}

TEST_F(PasswordCacheTest, MakesAWrongPasswordPayEachTime) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(costOfOpening("a wrong one", ZELKM_ERR_DATABASE_INVALID_PASSWORD), 1U);
  }
  EXPECT_EQ(costOfOpening(kPassword), 0U);
}

TEST_F(PasswordCacheTest, ForgetsAtCleanUp) {
  EXPECT_EQ(ZELKM_CleanAll(), ZELKM_OK);
  EXPECT_EQ(costOfOpening(kPassword), 1U);
  EXPECT_EQ(costOfOpening(kPassword), 0U);
}

TEST_F(PasswordCacheTest, ForgetsAnOldPassword) {
  ASSERT_EQ(ZELKM_ChangeKeyDbPwd(file_.c_str(), kPassword, kOtherPassword, 0), ZELKM_OK);
  EXPECT_EQ(costOfOpening(kOtherPassword), 0U);
  EXPECT_EQ(costOfOpening(kPassword, ZELKM_ERR_DATABASE_INVALID_PASSWORD), 1U);
}

TEST_F(PasswordCacheTest, KnowsAFileByItsIdentityNotByItsName) {
  std::filesystem::create_hard_link(file_, path("link.kdb"));
  std::filesystem::copy_file(file_, path("copy.kdb"));
  const auto open = [&](const char* name) {
    int handle = 0;
    EXPECT_EQ(ZELKM_OpenKeyDb(path(name).c_str(), kPassword, &handle), ZELKM_OK);
    ZELKM_CloseKeyDb(handle);
  };
  EXPECT_EQ(costOf([&] { open("link.kdb"); }), 0U);
  EXPECT_EQ(costOf([&] { open("copy.kdb"); }), 1U);
}

TEST_F(PasswordCacheTest, KeepsALimitedNumberTheLeastUsedGoingFirst) {
  const auto open = [](std::uint64_t file, std::uint8_t salt) {
    const sys::ByteView password = sys::bytesOf("password");
    EXPECT_TRUE(
        PasswordCache::instance().open(FileIdentity{1, file}, cheap(salt), password, opens));
  };
  for (std::uint64_t file = 0; file < 64; ++file) open(file, 1);
  EXPECT_EQ(costOf([&] { open(0, 1); }), 0U);
  open(64, 1);
  EXPECT_EQ(costOf([&] { open(0, 1); }), 0U);
  EXPECT_EQ(costOf([&] { open(1, 1); }), 1U);
  EXPECT_EQ(costOf([&] { open(0, 9); }), 1U);
}

/** The test of a cache that nobody else uses. */
class OwnPasswordCacheTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!sys::SecretBlock(32).locked()) GTEST_SKIP() << "this process may not lock memory";
  }
  sys::Result<sys::SecretBytes> open(const char* password) {
    return cache_.open(file_, parameters_, sys::bytesOf(password), opens);
  }

  PasswordCache cache_;
  const FileIdentity file_{1, 2};
  const Parameters parameters_ = cheap(1);
};

TEST_F(OwnPasswordCacheTest, TriesTheSameKeyWhetherDerivedOrKept) {
  const sys::SecretBytes key =
      cms::derivePbeKey(sys::bytesOf(kPassword), parameters_.salt, parameters_.iterations)
          .value()
          .key;
  EXPECT_EQ(open(kPassword).value(), key);
  EXPECT_EQ(open(kPassword).value(), key);
  EXPECT_EQ(cache_.derivations(), 1U);
}

TEST_F(OwnPasswordCacheTest, KeepsNoKeyThatOpensNothing) {
  const auto fails = [](sys::ByteView) -> sys::Status {
    return sys::Failure{ZELKM_ERR_DATABASE_INVALID_PASSWORD};
  };
  for (std::uint64_t round = 1; round <= 3; ++round) {
    EXPECT_EQ(cache_.open(file_, parameters_, sys::bytesOf(kPassword), fails).code(),
              ZELKM_ERR_DATABASE_INVALID_PASSWORD);
    EXPECT_EQ(cache_.derivations(), round);
  }
}

TEST_F(OwnPasswordCacheTest, AnswersWhatTheTrialOfAKeptKeyAnswers) {
  ASSERT_TRUE(open(kPassword));
  const auto fails = [](sys::ByteView) -> sys::Result<int> {
    return sys::Failure{ZELKM_ERR_CRYPTO};
  };
  EXPECT_EQ(cache_.open(file_, parameters_, sys::bytesOf(kPassword), fails).code(),
            ZELKM_ERR_CRYPTO);
  EXPECT_EQ(cache_.derivations(), 1U);
}

TEST_F(OwnPasswordCacheTest, KeepsTheKeysOfTwoPasswordsApart) {
  const sys::SecretBytes first = open(kPassword).value();
  EXPECT_NE(open(kOtherPassword).value(), first);
  EXPECT_EQ(open(kPassword).value(), first);
  EXPECT_EQ(cache_.derivations(), 2U);
}

TEST_F(OwnPasswordCacheTest, KnowsAReplacedPasswordAndNoneBeforeIt) {
  ASSERT_TRUE(open(kPassword));
  const sys::Bytes key(kKeyLength, 7);
  cache_.replace(file_, parameters_, sys::bytesOf(kOtherPassword), key);
  EXPECT_EQ(open(kOtherPassword).value(), sys::SecretBytes(key.begin(), key.end()));
  EXPECT_EQ(cache_.derivations(), 1U);
  EXPECT_TRUE(open(kPassword));
  EXPECT_EQ(cache_.derivations(), 2U);
}

TEST_F(OwnPasswordCacheTest, LeavesOtherFilesAloneWhenAPasswordIsReplaced) {
  ASSERT_TRUE(open(kPassword));
  cache_.replace(FileIdentity{1, 3}, parameters_, sys::bytesOf(kOtherPassword),
                 sys::Bytes(kKeyLength, 7));
  ASSERT_TRUE(open(kPassword));
  EXPECT_EQ(cache_.derivations(), 1U);
}

TEST_F(OwnPasswordCacheTest, ForgetsEverything) {
  ASSERT_TRUE(open(kPassword));
  cache_.forgetAll();
  ASSERT_TRUE(open(kPassword));
  EXPECT_EQ(cache_.derivations(), 2U);
}

TEST_F(OwnPasswordCacheTest, KeepsNothingInMemoryThatIsNotLocked) {
  std::vector<sys::SecretBlock> all;
  while (all.empty() || all.back().locked()) all.emplace_back(32);
  for (std::uint64_t round = 1; round <= 2; ++round) {
    EXPECT_TRUE(open(kPassword));
    EXPECT_EQ(cache_.derivations(), round);
  }
}

}  // namespace
}  // namespace zel::km
