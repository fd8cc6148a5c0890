#include "engine/sys/draft.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "tests/engine/cms/tools.h"

namespace zel::sys {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
}

class DraftTest : public testing::Test {
 protected:
  std::string path(const char* name) const { return folder_.path(name); }
  Bytes read(const char* name) const { return folder_.read(name); }
  std::size_t filesThere() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path("")), {}));
  }
  /** A draft of a byte. */
  static void fill(Draft& draft) {
    Result<Descriptor> file = draft.create(FileAccess::ownerOnly);
    ASSERT_TRUE(file);
    ASSERT_EQ(::write(file.value().number(), "x", 1), 1);
  }

  cms::TemporaryFolder folder_;
  const Bytes bytes_{1, 2, 3};
};

TEST_F(DraftTest, HasANameOfItsOwnUntilItTakesItsFinalOne) {
  Draft draft(path("file"));
  fill(draft);
  EXPECT_TRUE(fs::exists(draft.name()));
  EXPECT_FALSE(fs::exists(path("file")));
  ASSERT_TRUE(draft.takeNewName());
  EXPECT_FALSE(fs::exists(draft.name()));
  EXPECT_EQ(read("file"), Bytes{'x'});
  EXPECT_EQ(modeOf(path("file")), 0600U);
}

TEST_F(DraftTest, IsThereForGoodOnceItHasItsName) {
  {
    Draft draft(path("file"));
    fill(draft);
    ASSERT_TRUE(draft.takeNewName());
  }
  EXPECT_EQ(read("file"), Bytes{'x'});
}

TEST_F(DraftTest, IsRemovedWhenItGetsNoName) {
  {
    Draft draft(path("file"));
    fill(draft);
  }
  EXPECT_EQ(filesThere(), 0U);
}

TEST_F(DraftTest, TakesNoNameThatIsTaken) {
  folder_.write("file", bytes_);
  {
    Draft draft(path("file"));
    fill(draft);
    EXPECT_EQ(draft.takeNewName().code(), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  }
  EXPECT_EQ(read("file"), bytes_);
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(DraftTest, TakesThePlaceOfAnotherWhenToldTo) {
  folder_.write("file", bytes_);
  Draft draft(path("file"));
  fill(draft);
  ASSERT_TRUE(draft.takeName());
  EXPECT_EQ(read("file"), Bytes{'x'});
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(DraftTest, IsStillADraftWhenItCannotTakeThePlaceOfAnother) {
  fs::create_directory(path("folder"));
  {
    Draft draft(path("folder"));
    fill(draft);
    EXPECT_EQ(draft.takeName().code(), ZELKM_ERR_FILE_WRITE);
  }
  EXPECT_EQ(filesThere(), 1U);
}

TEST_F(DraftTest, CannotBeWhereThereIsNoFolder) {
  Draft draft(path("none/file"));
  EXPECT_EQ(draft.create(FileAccess::ownerOnly).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

TEST_F(DraftTest, RemovesNothingThatItHasNotMade) {
  std::string name;
  {
    const Draft draft(path("file"));
    name = draft.name();
    ASSERT_TRUE(createFile(name, FileAccess::ownerOnly));
  }
  EXPECT_TRUE(fs::exists(name));
}

TEST_F(DraftTest, CreatesNoFileThatExists) {
  ASSERT_TRUE(createFile(path("file"), FileAccess::ownerOnly));
  EXPECT_EQ(modeOf(path("file")), 0600U);
  EXPECT_EQ(createFile(path("file"), FileAccess::ownerOnly).code(),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
}

TEST_F(DraftTest, MovesToANewNameOnly) {
  folder_.write("draft", bytes_);
  folder_.write("taken", Bytes{9});
  EXPECT_EQ(moveToNewName(path("draft"), path("taken")).code(), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(read("taken"), Bytes{9});
  ASSERT_TRUE(moveToNewName(path("draft"), path("final")));
  EXPECT_EQ(read("final"), bytes_);
  EXPECT_FALSE(fs::exists(path("draft")));
}

TEST_F(DraftTest, GivesTemporaryNamesThatDiffer) {
  const std::string name = temporaryName(path("file"));
  EXPECT_TRUE(name.starts_with(path("file.new-")));
  EXPECT_NE(name, temporaryName(path("file")));
}

}  // namespace
}  // namespace zel::sys
