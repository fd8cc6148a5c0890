#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>

#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

namespace fs = std::filesystem;

class PasswordsTest : public KeyDatabaseTest {
 protected:
  int change(const char* from, const char* to, std::int64_t lifetime = 0) {
    return ZELKM_ChangeKeyDbPwd(file_.c_str(), from, to, lifetime);
  }
  int createApproved(const char* password) {
    int handle = 0;
    const int code = ZELKM_CreateNewKeyDbFIPS(path("approved.kdb").c_str(), password, 0, &handle);
    if (code == ZELKM_OK) ZELKM_CloseKeyDb(handle);
    return code;
  }
  int isRequired(std::uint32_t type = KEYDB_LOCATOR_KEY_DATABASE) {
    KeyDbLocator locator{};
    locator.type = type;
    locator.fileName = file_.c_str();
    unsigned char required = 7;
    EXPECT_EQ(ZELKM_IsPasswordRequired(&locator, &required), ZELKM_OK);
    return required;
  }
  const std::string stash_ = path("test.sth");
};

TEST_F(PasswordsTest, ChangesThePassword) {
  ASSERT_EQ(change(kPassword, kOtherPassword), ZELKM_OK);
  EXPECT_EQ(openAndClose(kOtherPassword), ZELKM_OK);
  EXPECT_EQ(openAndClose(kPassword), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
}

TEST_F(PasswordsTest, LeavesOpenHandlesOpenWhenThePasswordChanges) {
  ASSERT_EQ(change(kPassword, kOtherPassword), ZELKM_OK);
  EXPECT_TRUE(keyLabelsOf(handle_).empty());
}

TEST_F(PasswordsTest, ChangesNothingWhenTheOldOneIsWrongOrTheNewOneBad) {
  const sys::Bytes before = bytesOf(file_);
  EXPECT_EQ(change("a wrong one", kOtherPassword), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(change(kPassword, "short"), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(change(kPassword, nullptr), ZELKM_ERR_NEW_PASSWORD);
  EXPECT_EQ(change(nullptr, kOtherPassword), ZELKM_ERR_PWDFILE_NOT_EXIST);
  EXPECT_EQ(change(kPassword, kOtherPassword, -1), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(bytesOf(file_), before);
}

TEST_F(PasswordsTest, ChangesThePasswordThroughALocator) {
  KeyDbLocator locator{};
  locator.type = KEYDB_LOCATOR_KEY_DATABASE;
  locator.fileName = file_.c_str();
  locator.password = kPassword;
  locator.newPassword = kOtherPassword;
  ASSERT_EQ(ZELKM_ChangeKeyDbPwdX(&locator), ZELKM_OK);
  EXPECT_EQ(openAndClose(kOtherPassword), ZELKM_OK);
  EXPECT_EQ(ZELKM_ChangeKeyDbPwdX(nullptr), ZELKM_ERR_NULL_PARAMETER);
}

TEST_F(PasswordsTest, CountsCharactersNotBytes) {
  EXPECT_EQ(change(kPassword, "\xC3\xA4\xC3\xB6\xC3\xBC"), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(change(kPassword, "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x84\xC3\x96\xC3\x9C"), ZELKM_OK);
}

TEST_F(PasswordsTest, AsksMoreOfAPasswordForApprovedAlgorithms) {
  EXPECT_EQ(createApproved("only13chars!!"), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(createApproved("fourteen-chars"), ZELKM_ERR_PWD_NO_NUMBER);
  EXPECT_EQ(createApproved("fourteenchars1"), ZELKM_ERR_PWD_NO_CONTROL_KEY);
  EXPECT_FALSE(fs::exists(path("approved.kdb")));
  EXPECT_EQ(createApproved("fourteen-char1"), ZELKM_OK);
  EXPECT_EQ(ZELKM_ChangeKeyDbPwd(path("approved.kdb").c_str(), "fourteen-char1", kPassword, 0),
            ZELKM_ERR_PWD_TOO_SHORT);
}

TEST_F(PasswordsTest, ExpireAndCanStillBeChanged) {
  ASSERT_EQ(change(kPassword, kOtherPassword, 1), ZELKM_OK);
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(openAndClose(kOtherPassword), ZELKM_ERR_PASSWORD_EXPIRATION_TIME);
  EXPECT_EQ(openAndClose("a wrong one"), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), kOtherPassword), ZELKM_ERR_PASSWORD_EXPIRATION_TIME);
  EXPECT_EQ(change(kOtherPassword, kPassword), ZELKM_OK);
  EXPECT_EQ(openAndClose(kPassword), ZELKM_OK);
}

TEST_F(PasswordsTest, LiveAsLongAsAsked) {
  ASSERT_EQ(change(kPassword, kOtherPassword, std::numeric_limits<std::int64_t>::max()), ZELKM_OK);
  EXPECT_EQ(openAndClose(kOtherPassword), ZELKM_OK);
}

TEST_F(PasswordsTest, OpenFromAStash) {
  EXPECT_EQ(openAndClose(nullptr), ZELKM_ERR_PWDFILE_NOT_EXIST);
  ASSERT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), kPassword), ZELKM_OK);
  EXPECT_EQ(openAndClose(nullptr), ZELKM_OK);
  EXPECT_EQ(openAndClose(""), ZELKM_OK) << "Java cannot pass null";
  struct stat status {};
  ASSERT_EQ(::stat(stash_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(PasswordsTest, StashNoWrongPassword) {
  EXPECT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), "a wrong one"), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_FALSE(fs::exists(stash_));
}

TEST_F(PasswordsTest, RefuseAStashThatOthersCanRead) {
  ASSERT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), kPassword), ZELKM_OK);
  ASSERT_EQ(::chmod(stash_.c_str(), 0640), 0);
  EXPECT_EQ(openAndClose(nullptr), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  EXPECT_EQ(isRequired(), 1);
}

TEST_F(PasswordsTest, RefuseAStashThatIsDamagedOrOld) {
  ASSERT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), kPassword), ZELKM_OK);
  const sys::Bytes good = folder_.read("test.sth");
  for (std::size_t at = 0; at < good.size(); ++at) {
    sys::Bytes bad = good;
    bad[at] ^= 0x10U;
    folder_.write("test.sth", bad);
    ASSERT_EQ(openAndClose(nullptr), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION) << at;
  }
  folder_.write("test.sth", {});
  EXPECT_EQ(openAndClose(nullptr), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION);
  folder_.write("test.sth", good);
  EXPECT_EQ(openAndClose(nullptr), ZELKM_OK);
  ASSERT_EQ(change(kPassword, kOtherPassword), ZELKM_OK);
  EXPECT_EQ(openAndClose(nullptr), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION);
  EXPECT_EQ(isRequired(), 1);
}

TEST_F(PasswordsTest, AreNotRequiredBesideAUsableStash) {
  EXPECT_EQ(isRequired(), 1);
  ASSERT_EQ(ZELKM_StashKeyDbPwd(file_.c_str(), kPassword), ZELKM_OK);
  EXPECT_EQ(isRequired(), 0);
  EXPECT_EQ(isRequired(KEYDB_LOCATOR_WEBDB), 0);
}

TEST_F(PasswordsTest, AreNotAskedForWithoutADatabase) {
  KeyDbLocator locator{};
  unsigned char required = 7;
  EXPECT_EQ(ZELKM_IsPasswordRequired(&locator, &required), ZELKM_ERR_INVALID_DATABASE_TYPE);
  locator.type = KEYDB_LOCATOR_KEY_DATABASE;
  EXPECT_EQ(ZELKM_IsPasswordRequired(&locator, &required), ZELKM_ERR_FILENAME_NULL);
  const std::string none = path("none.kdb");
  locator.fileName = none.c_str();
  EXPECT_EQ(ZELKM_IsPasswordRequired(&locator, &required), ZELKM_ERR_KEYDB_NOT_EXIST);
  EXPECT_EQ(ZELKM_IsPasswordRequired(&locator, nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(required, 7);
}

TEST_F(PasswordsTest, StandBesideTheDatabaseUnderItsNameWithoutExtension) {
  int handle = 0;
  fs::create_directory(path("dir.d"));
  for (const auto& [name, stash] : {std::pair{"a.b.kdb", "a.b.sth"},
                                    {"plain", "plain.sth"},
                                    {".hidden", ".hidden.sth"},
                                    {"own.sth", "own.sth.sth"},
                                    {"dir.d/plain", "dir.d/plain.sth"}}) {
    const std::string file = path(name);
    ASSERT_EQ(ZELKM_CreateNewKeyDb(file.c_str(), kPassword, 0, &handle), ZELKM_OK);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    ASSERT_EQ(ZELKM_StashKeyDbPwd(file.c_str(), kPassword), ZELKM_OK);
    EXPECT_TRUE(fs::exists(path(stash))) << stash;
    EXPECT_EQ(ZELKM_OpenKeyDb(file.c_str(), nullptr, &handle), ZELKM_OK) << name;
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
  }
}

}  // namespace
}  // namespace zel::km
