#include "engine/km/keydb/sharing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "engine/km/keydb/passwords.h"
#include "engine/km/keydb/records.h"
#include "tests/engine/km/filled_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

namespace fs = std::filesystem;

/** A registry that nobody else uses. */
class OpenFilesTest : public FilledDatabaseTest {
 protected:
  sys::Result<std::shared_ptr<const DatabaseFile>> share(const std::string& name,
                                                         const char* text = kPassword) {
    sys::Result<UnlockedFile> unlocked = UnlockedFile::open(fileName(name), password(text));
    if (!unlocked) return unlocked.failure();
    return files_.share(std::move(unlocked.value()));
  }
  std::shared_ptr<const DatabaseFile> shared(const std::string& name,
                                             const char* text = kPassword) {
    return share(name, text).value();
  }

  OpenFiles files_;
};

TEST_F(OpenFilesTest, GiveOneFileToAllWhoOpenIt) {
  fs::create_symlink(file_, path("link.kdb"));
  const auto first = shared(file_);
  EXPECT_EQ(shared(file_), first);
  EXPECT_EQ(shared(path("link.kdb")), first);
}

TEST_F(OpenFilesTest, KeepFilesApart) {
  fs::copy_file(file_, path("copy.kdb"));
  EXPECT_NE(shared(path("copy.kdb")), shared(file_));
}

TEST_F(OpenFilesTest, KeepAFileApartFromItsSuccessorUnderTheName) {
  const auto first = shared(file_);
  fs::copy_file(file_, path("copy.kdb"));
  fs::rename(path("copy.kdb"), file_);
  EXPECT_NE(shared(file_), first);
}

TEST_F(OpenFilesTest, KeepTheOwnersOfAnOldPasswordApart) {
  const auto old = shared(file_);
  ASSERT_TRUE(
      changeDatabasePassword(fileName(file_), password(kPassword), password(kOtherPassword), 0));
  const auto present = shared(file_, kOtherPassword);
  EXPECT_NE(present, old);
  EXPECT_TRUE(old->borrow()) << "who has it open goes on";
}

TEST_F(OpenFilesTest, KeepNoFileOpenThemselves) {
  const std::weak_ptr<const DatabaseFile> file = shared(file_);
  EXPECT_TRUE(file.expired());
  EXPECT_NE(shared(file_), nullptr);
}

TEST_F(OpenFilesTest, GiveAFileThatCanBeRead) {
  const auto file = shared(file_);
  EXPECT_TRUE(std::ranges::equal(file->password(), sys::bytesOf(kPassword)));
  sys::Result<BorrowedConnection> connection = file->borrow();
  ASSERT_TRUE(connection);
  Records records(*connection.value(), file->keys());
  EXPECT_EQ(records.labels(Table::keys).value(), (std::vector<std::string>{"one", "two"}));
}

TEST_F(OpenFilesTest, FindDamageOutAtOnce) {
  store_.reset();
  tamper("UPDATE directory SET sealed = zeroblob(length(sealed))");
  EXPECT_EQ(share(file_).code(), ZELKM_ERR_DATABASE_CORRUPTION);
}

}  // namespace
}  // namespace zel::km
