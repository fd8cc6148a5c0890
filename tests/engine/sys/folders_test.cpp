#include "engine/sys/folders.h"

#include <gmock/gmock.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/engine/cms/tools.h"

namespace zel::sys {
namespace {

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

class FoldersTest : public testing::Test {
 protected:
  std::string path(const char* name) const { return folder_.path(name); }
  std::string make(const char* name, mode_t mode) const {
    EXPECT_TRUE(makeOwnFolder(path(name)));
    EXPECT_EQ(::chmod(path(name).c_str(), mode), 0);
    return path(name);
  }

  cms::TemporaryFolder folder_;
};

TEST_F(FoldersTest, TakeHomeFromTheEnvironment) {
  const cms::HomeVariable home("/home/somebody");
  EXPECT_EQ(homeFolder().value(), "/home/somebody");
}

TEST_F(FoldersTest, TakeHomeFromTheUserDatabaseWhenTheEnvironmentDoesNotTell) {
  const std::string known = ::getpwuid(::geteuid())->pw_dir;
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
    const cms::HomeVariable home(value);
    EXPECT_EQ(homeFolder().value(), known);
  }
}

TEST_F(FoldersTest, AreMadeForTheirOwnerAlone) {
  ASSERT_TRUE(makeOwnFolder(path("own")));
  struct stat status {};
  ASSERT_EQ(::stat(path("own").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(FoldersTest, StayAsTheyAreWhenTheyAreThere) {
  const std::string there = make("there", 0750);
  ASSERT_TRUE(makeOwnFolder(there));
  struct stat status {};
  ASSERT_EQ(::stat(there.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0750U);
}

TEST_F(FoldersTest, AreNotMadeInsideOfNothing) {
  EXPECT_EQ(makeOwnFolder(path("none/own")).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

TEST_F(FoldersTest, AreRefusedWhenTheBarredMayWrite) {
  EXPECT_TRUE(requireOwnFolder(make("own", 0755), S_IWGRP | S_IWOTH));
  EXPECT_TRUE(requireOwnFolder(make("group", 0770), S_IWOTH));
  EXPECT_EQ(requireOwnFolder(path("group"), S_IWGRP | S_IWOTH).code(),
            ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  EXPECT_EQ(requireOwnFolder(make("world", 01777), S_IWOTH).code(),
            ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FoldersTest, AreJudgedBehindLinks) {
  fs::create_directory_symlink(make("own", 0700), path("good"));
  fs::create_directory_symlink(make("world", 0777), path("bad"));
  EXPECT_TRUE(requireOwnFolder(path("good"), S_IWOTH));
  EXPECT_EQ(requireOwnFolder(path("bad"), S_IWOTH).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FoldersTest, AreToldFromFilesAndFromNothing) {
  folder_.write("file", Bytes{1});
  EXPECT_EQ(requireOwnFolder(path("file"), S_IWOTH).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  EXPECT_EQ(requireOwnFolder(path("none"), S_IWOTH).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

TEST_F(FoldersTest, OfOtherUsersAreRefused) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root makes folders for others";
  const std::string theirs = make("theirs", 0700);
  ASSERT_EQ(::chown(theirs.c_str(), 4711, 4711), 0);
  EXPECT_EQ(requireOwnFolder(theirs, S_IWOTH).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FoldersTest, TellWhatIsInThem) {
  make("folder", 0700);
  folder_.write("folder/b", Bytes{1});
  folder_.write("folder/a", Bytes{1});
  EXPECT_THAT(namesIn(path("folder")).value(), UnorderedElementsAre("a", "b"));
  EXPECT_EQ(namesIn(path("none")).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

TEST_F(FoldersTest, AreLockedByOneAtATime) {
  const std::string folder = make("folder", 0700);
  {
    const Result<FolderLock> first = FolderLock::take(folder);
    ASSERT_TRUE(first);
    EXPECT_NE(cms::run("flock -n " + folder + " true").exitCode, 0);
  }
  EXPECT_EQ(cms::run("flock -n " + folder + " true").exitCode, 0);
}

TEST_F(FoldersTest, DoNotKeepAWriterWaitingForEver) {
  const std::string folder = make("folder", 0700);
  const Result<FolderLock> first = FolderLock::take(folder);
  ASSERT_TRUE(first);
  EXPECT_EQ(FolderLock::take(folder).code(), ZELKM_ERR_DATABASE_WRITE);
}

}  // namespace
}  // namespace zel::sys
