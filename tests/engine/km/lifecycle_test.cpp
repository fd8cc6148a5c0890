#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

namespace fs = std::filesystem;

class LifecycleTest : public KeyDatabaseTest {
 protected:
  int create(const std::string& file, const char* password = kPassword) {
    int handle = 0;
    const int code = ZELKM_CreateNewKeyDb(file.c_str(), password, 0, &handle);
    if (code == ZELKM_OK) {
      EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    } else {
      EXPECT_EQ(handle, 0);
    }
    return code;
  }
  int open(const std::string& file, const char* password = kPassword) {
    int handle = 0;
    const int code = ZELKM_OpenKeyDb(file.c_str(), password, &handle);
    if (code == ZELKM_OK) {
      EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    } else {
      EXPECT_EQ(handle, 0);
    }
    return code;
  }
  std::size_t filesThere() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path("")), {}));
  }
};

TEST_F(LifecycleTest, CreatesAFileForItsOwnerAlone) {
  struct stat status {};
  ASSERT_EQ(::stat(file_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(LifecycleTest, OpensWhatItCreated) {
  EXPECT_TRUE(keyLabelsOf(handle_).empty());
  EXPECT_EQ(open(file_), ZELKM_OK);
}

TEST_F(LifecycleTest, ListsNoRequestsInANewDatabase) {
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetReqKeyDbLabelList(handle_, &list), ZELKM_OK);
  EXPECT_EQ(list, nullptr);
}

TEST_F(LifecycleTest, DoesNotCreateOverAnythingThatExists) {
  const sys::Bytes before = bytesOf(file_);
  EXPECT_EQ(create(file_), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(bytesOf(file_), before);
  folder_.write("text", sys::bytesOf("text"));
  EXPECT_EQ(create(path("text")), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(bytesOf(path("text")).size(), 4U);
  fs::create_symlink(path("nowhere"), path("link"));
  EXPECT_EQ(create(path("link")), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(filesThere(), 3U);
}

TEST_F(LifecycleTest, DoesNotCreateBesideTheJournalOfADatabaseThatIsGone) {
  for (const char* suffix : {"-journal", "-wal"}) {
    const std::string name = std::string("new.kdb") + suffix;
    folder_.write(name, sys::bytesOf("left"));
    EXPECT_EQ(create(path("new.kdb")), ZELKM_ERR_DATABASE_ALREADY_EXISTS) << suffix;
    EXPECT_FALSE(fs::exists(path("new.kdb"))) << suffix;
    EXPECT_EQ(bytesOf(path(name)).size(), 4U) << suffix;
    fs::remove(path(name));
  }
  EXPECT_EQ(create(path("new.kdb")), ZELKM_OK);
}

TEST_F(LifecycleTest, LeavesNothingBehindWhenItCannotCreate) {
  EXPECT_EQ(create(path("none/new.kdb")), ZELKM_ERR_DATABASE_CREATE);
  EXPECT_EQ(create(path("new.kdb"), "short"), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(create(path("new.kdb"), nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(create(""), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_CreateNewKeyDb(nullptr, kPassword, 0, &handle_), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_CreateNewKeyDb(file_.c_str(), kPassword, 0, nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(LifecycleTest, TellsAWrongPasswordAndLeavesTheFileAlone) {
  const sys::Bytes before = bytesOf(file_);
  EXPECT_EQ(open(file_, "a wrong one"), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(bytesOf(file_), before);
}

TEST_F(LifecycleTest, TellsAMissingFile) {
  EXPECT_EQ(open(path("none.kdb")), ZELKM_ERR_KEYDB_NOT_EXIST);
  EXPECT_EQ(open(path("none/none.kdb")), ZELKM_ERR_KEYDB_NOT_EXIST);
  EXPECT_FALSE(fs::exists(path("none.kdb")));
}

TEST_F(LifecycleTest, TellsAFileThatIsNoKeyDatabase) {
  const sys::Bytes text(5000, 'x');
  folder_.write("text", text);
  folder_.write("empty", {});
  EXPECT_EQ(open(path("text")), ZELKM_ERR_DATABASE_INVALID_FILE_TYPE);
  EXPECT_EQ(open(path("empty")), ZELKM_ERR_DATABASE_INVALID_FILE_TYPE);
  EXPECT_EQ(open(path("")), ZELKM_ERR_DATABASE_INVALID_FILE_TYPE);
  EXPECT_EQ(bytesOf(path("text")), text);
  EXPECT_TRUE(bytesOf(path("empty")).empty());
}

TEST_F(LifecycleTest, TellsSomebodyElsesSqliteFile) {
  ASSERT_EQ(cms::run("python3 -c 'import sqlite3; c = sqlite3.connect(\"" + path("other") +
                     "\"); c.execute(\"create table keys (label)\"); c.commit()'")
                .exitCode,
            0);
  EXPECT_EQ(open(path("other")), ZELKM_ERR_DATABASE_INVALID_FILE_TYPE);
}

TEST_F(LifecycleTest, TellsAFileThatTheUserMayNotOpen) {
  ASSERT_EQ(ZELKM_CloseKeyDb(handle_), ZELKM_OK);
  ASSERT_EQ(::chmod(file_.c_str(), 0), 0);
  ASSERT_EQ(::chmod(path("").c_str(), 0755), 0) << "the file alone is to be closed to others";
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    // Root may open anything, so it becomes somebody else.
    if (::geteuid() == 0 && ::setresuid(kNobody, kNobody, kNobody) != 0) ::_exit(0);
    int handle = 0;
    ::_exit(ZELKM_OpenKeyDb(file_.c_str(), kPassword, &handle));
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(LifecycleTest, GivesNoSpecialMeaningToNames) {
  const fs::path before = fs::current_path();
  fs::current_path(path(""));
  for (const char* name : {":memory:", "file:x?mode=memory", "-journal", "no extension"}) {
    EXPECT_EQ(create(name), ZELKM_OK) << name;
    EXPECT_TRUE(fs::exists(path(name))) << name;
    EXPECT_EQ(open(name), ZELKM_OK) << name;
  }
  fs::current_path(before);
}

TEST_F(LifecycleTest, KeepsAHandleThroughAChangeOfDirectory) {
  const fs::path before = fs::current_path();
  fs::current_path(path(""));
  int handle = 0;
  ASSERT_EQ(ZELKM_OpenKeyDb("test.kdb", kPassword, &handle), ZELKM_OK);
  fs::current_path(before);
  ASSERT_EQ(ZELKM_CloseKeyDb(handle_), ZELKM_OK);
  EXPECT_TRUE(keyLabelsOf(handle).empty());
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
}

TEST_F(LifecycleTest, TakesNamesBeyondTheBasicPlane) {
  // A key, in Java's modified UTF-8 and in the file system's UTF-8.
  const std::string modified = path("\xED\xA0\xBD\xED\xB4\x91.kdb");
  EXPECT_EQ(create(modified), ZELKM_OK);
  EXPECT_TRUE(fs::exists(path("\xF0\x9F\x94\x91.kdb")));
  EXPECT_EQ(open(modified), ZELKM_OK);
}

TEST_F(LifecycleTest, RefusesNamesWithANulInsteadOfCuttingThem) {
  EXPECT_EQ(create(path("cut\xC0\x80.kdb")), ZELKM_ERR_PARAMETER);
  EXPECT_FALSE(fs::exists(path("cut")));
  EXPECT_EQ(open(file_ + "\xC0\x80.kdb"), ZELKM_ERR_PARAMETER);
}

TEST_F(LifecycleTest, GivesHandlesThatAreNotReusedSoon) {
  int last = handle_;
  for (int round = 0; round < 100; ++round) {
    int handle = 0;
    ASSERT_EQ(ZELKM_OpenKeyDb(file_.c_str(), kPassword, &handle), ZELKM_OK);
    EXPECT_GT(handle, last);
    last = handle;
    ASSERT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_ERR_INVALID_DB_HANDLE);
  }
}

TEST_F(LifecycleTest, RefusesHandlesThatItNeverGave) {
  ZELKMLabelList* list = nullptr;
  for (const int handle : {0, -1, 1'000'000'000}) {
    EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle, &list), ZELKM_ERR_INVALID_DB_HANDLE);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_ERR_INVALID_DB_HANDLE);
  }
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle_, nullptr), ZELKM_ERR_NULL_PARAMETER);
}

TEST_F(LifecycleTest, TellsAFileThatWentAwayUnderAHandle) {
  fs::remove(file_);
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle_, &list), ZELKM_ERR_KEYDB_NOT_EXIST);
}

TEST_F(LifecycleTest, TellsAnotherFileThatTookThePlaceUnderAHandle) {
  ASSERT_EQ(create(path("other.kdb"), kOtherPassword), ZELKM_OK);
  fs::rename(path("other.kdb"), file_);
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle_, &list), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(LifecycleTest, OpensThroughALocator) {
  KeyDbLocator locator{};
  locator.type = KEYDB_LOCATOR_KEY_DATABASE;
  locator.fileName = file_.c_str();
  locator.password = kPassword;
  int handle = 0;
  ASSERT_EQ(ZELKM_OpenKeyDbX(&locator, &handle), ZELKM_OK);
  EXPECT_TRUE(keyLabelsOf(handle).empty());
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
  locator.password = "a wrong one";
  EXPECT_EQ(ZELKM_OpenKeyDbX(&locator, &handle), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  locator.type = 5;
  EXPECT_EQ(ZELKM_OpenKeyDbX(&locator, &handle), ZELKM_ERR_INVALID_DATABASE_TYPE);
  EXPECT_EQ(ZELKM_OpenKeyDbX(nullptr, &handle), ZELKM_ERR_NULL_PARAMETER);
}

}  // namespace
}  // namespace zel::km
