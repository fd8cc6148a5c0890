#include "engine/sys/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/engine/cms/tools.h"
#include "tests/engine/sys/bound_by_modes.h"

namespace zel::sys {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
}

class FilesTest : public testing::Test {
 protected:
  std::string path(const char* name) const { return folder_.path(name); }
  Bytes read(const std::string& name) { return readFile(name, 1 << 20).value(); }
  std::size_t filesThere() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path("")), {}));
  }

  cms::TemporaryFolder folder_;
  const Bytes bytes_{1, 2, 3};
};

TEST_F(FilesTest, ReadsWhatItWrote) {
  ASSERT_TRUE(writeFile(path("file"), bytes_, FileAccess::everybody));
  EXPECT_EQ(read(path("file")), bytes_);
}

TEST_F(FilesTest, ReadsAFileOfManyPieces) {
  const Bytes large(100'000, 9);
  ASSERT_TRUE(writeFile(path("file"), large, FileAccess::everybody));
  EXPECT_EQ(read(path("file")), large);
}

TEST_F(FilesTest, ReadsNoMoreThanAllowed) {
  ASSERT_TRUE(writeFile(path("file"), Bytes(100, 1), FileAccess::everybody));
  EXPECT_TRUE(readFile(path("file"), 100));
  EXPECT_EQ(readFile(path("file"), 99).code(), ZELKM_ERR_IO);
  EXPECT_EQ(readFile("/dev/zero", 1000).code(), ZELKM_ERR_IO);
}

TEST_F(FilesTest, TellsAMissingFileFromAForbiddenOne) {
  EXPECT_EQ(readFile(path("none"), 10).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(readFile("", 10).code(), ZELKM_ERR_FILENAME_NULL);
  folder_.write("file", bytes_);
  ASSERT_EQ(::chmod(path("file").c_str(), 0), 0);
  const test::BoundByModes bound;
  EXPECT_EQ(readFile(path("file"), 10).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FilesTest, LetsOnlyTheOwnerReadSecrets) {
  ASSERT_TRUE(writeFile(path("secret"), bytes_, FileAccess::ownerOnly));
  EXPECT_EQ(modeOf(path("secret")), 0600U);
}

TEST_F(FilesTest, TakesOthersTheirRightsWhenASecretReplacesAFile) {
  folder_.write("file", bytes_);
  ASSERT_EQ(::chmod(path("file").c_str(), 0644), 0);
  ASSERT_TRUE(writeFile(path("file"), bytes_, FileAccess::ownerOnly));
  EXPECT_EQ(modeOf(path("file")), 0600U);
}

TEST_F(FilesTest, KeepsTheModeOfAFileThatIsReplaced) {
  folder_.write("file", bytes_);
  ASSERT_EQ(::chmod(path("file").c_str(), 0640), 0);
  ASSERT_TRUE(writeFile(path("file"), Bytes{9}, FileAccess::everybody));
  EXPECT_EQ(modeOf(path("file")), 0640U);
  EXPECT_EQ(read(path("file")), Bytes{9});
}

TEST_F(FilesTest, ReplacesWhatALinkPointsTo) {
  folder_.write("target", bytes_);
  fs::create_symlink(path("target"), path("link"));
  ASSERT_TRUE(writeFile(path("link"), Bytes{9}, FileAccess::everybody));
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(read(path("target")), Bytes{9});
}

TEST_F(FilesTest, LeavesNothingBehindWhenItCannotWrite) {
  EXPECT_EQ(writeFile(path("none/file"), bytes_, FileAccess::everybody).code(),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  fs::create_directory(path("folder"));
  EXPECT_EQ(writeFile(path("folder"), bytes_, FileAccess::everybody).code(),
            ZELKM_ERR_FILE_OPEN_TO_WRITE);
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(FilesTest, WritesIntoWhatIsNoFile) {
  EXPECT_TRUE(writeFile("/dev/null", bytes_, FileAccess::ownerOnly));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(FilesTest, RefusesASecretThatOthersCanRead) {
  ASSERT_TRUE(writeFile(path("secret"), bytes_, FileAccess::ownerOnly));
  EXPECT_TRUE(readOwnSecretFile(path("secret"), 10));
  for (const mode_t mode : {0640, 0604, 0620, 0601}) {
    ASSERT_EQ(::chmod(path("secret").c_str(), mode), 0);
    EXPECT_EQ(readOwnSecretFile(path("secret"), 10).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  }
}

TEST_F(FilesTest, RefusesASecretThatIsNoFile) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(readOwnSecretFile(path("pipe"), 10).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FilesTest, ReadsOwnFilesThatOnlyOthersMayNotWrite) {
  ASSERT_TRUE(writeFile(path("file"), bytes_, FileAccess::ownerOnly));
  for (const mode_t mode : {0600, 0644, 0664}) {
    ASSERT_EQ(::chmod(path("file").c_str(), mode), 0);
    EXPECT_TRUE(readOwnFile(path("file"), 10));
  }
  ASSERT_EQ(::chmod(path("file").c_str(), 0602), 0);
  EXPECT_EQ(readOwnFile(path("file"), 10).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FilesTest, ReadsNoOwnFileBehindALink) {
  ASSERT_TRUE(writeFile(path("file"), bytes_, FileAccess::ownerOnly));
  fs::create_symlink(path("file"), path("link"));
  EXPECT_EQ(readOwnFile(path("link"), 10).code(), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(FilesTest, WritesAWholeNewFile) {
  ASSERT_TRUE(writeNewFile(path("file"), bytes_, FileAccess::ownerOnly));
  EXPECT_EQ(read(path("file")), bytes_);
  EXPECT_EQ(modeOf(path("file")), 0600U);
}

TEST_F(FilesTest, WritesNoNewFileOverAnother) {
  folder_.write("file", bytes_);
  fs::create_symlink(path("nothing"), path("link"));
  for (const char* name : {"file", "link"}) {
    EXPECT_EQ(writeNewFile(path(name), Bytes{9}, FileAccess::ownerOnly).code(),
              ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  }
  EXPECT_EQ(read(path("file")), bytes_);
  EXPECT_EQ(filesThere(), 2U);
}

TEST_F(FilesTest, WritesANewFileWhole) {
  ASSERT_TRUE(writeNewFile(path("file"), bytes_, FileAccess::ownerOnly));
  EXPECT_EQ(read(path("file")), bytes_);
  EXPECT_EQ(modeOf(path("file")), 0600U);
  EXPECT_EQ(writeNewFile(path("file"), Bytes{9}, FileAccess::ownerOnly).code(),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(read(path("file")), bytes_);
  EXPECT_EQ(writeNewFile(path("none/file"), bytes_, FileAccess::ownerOnly).code(),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(writeNewFile("", bytes_, FileAccess::ownerOnly).code(), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(FilesTest, RemovesAFileOnce) {
  folder_.write("file", bytes_);
  EXPECT_TRUE(removeFile(path("file")));
  EXPECT_FALSE(fs::exists(path("file")));
  EXPECT_TRUE(removeFile(path("file")));
}

}  // namespace
}  // namespace zel::sys
