#include "engine/km/keydb/password_cache.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

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
  PasswordCache& cache = PasswordCache::instance();
  const sys::Bytes salt(16, 1);
  const sys::Bytes key(kKeyLength, 2);
  const sys::ByteView password = sys::bytesOf("password");
  const auto identity = [](std::uint64_t number) { return FileIdentity{1, number}; };
  constexpr std::uint32_t kIterations = 1000;
  for (std::uint64_t file = 0; file < 64; ++file) cache.keep(identity(file), salt, password, key);
  EXPECT_EQ(costOf([&] { (void)cache.passwordKey(identity(0), salt, kIterations, password); }), 0U);
  cache.keep(identity(64), salt, password, key);
  EXPECT_EQ(costOf([&] { (void)cache.passwordKey(identity(0), salt, kIterations, password); }), 0U);
  EXPECT_EQ(costOf([&] { (void)cache.passwordKey(identity(1), salt, kIterations, password); }), 1U);
  const sys::Bytes otherSalt(16, 9);
  EXPECT_EQ(costOf([&] { (void)cache.passwordKey(identity(0), otherSalt, kIterations, password); }),
            1U);
}

}  // namespace
}  // namespace zel::km
