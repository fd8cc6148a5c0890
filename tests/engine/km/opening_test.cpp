#include "engine/km/keydb/opening.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <type_traits>
#include <utility>

#include "engine/cms/pbe.h"
#include "engine/km/keydb/passwords.h"
#include "tests/engine/km/filled_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

namespace fs = std::filesystem;

// Only the right password makes the one of the other.
static_assert(!std::is_default_constructible_v<UnlockedFile>);
static_assert(!std::is_constructible_v<UnlockedFile, LockedFile, sys::Password, sys::SecretBytes>);

class OpeningTest : public FilledDatabaseTest {
 protected:
  LockedFile locked() const { return std::move(LockedFile::read(fileName(file_)).value()); }
  int unlockingCode(const char* text) const { return locked().unlock(password(text)).code(); }
};

TEST_F(OpeningTest, ReadsWhatNeedsNoPassword) {
  const LockedFile file = locked();
  EXPECT_EQ(file.path(), fs::canonical(file_).string());
  EXPECT_EQ(file.identity(), stateOf(file_).value().identity);
  EXPECT_FALSE(file.parameters().approvedOnly);
  EXPECT_EQ(file.parameters().iterations, cms::kPbeIterations);
}

TEST_F(OpeningTest, KnowsTheFileBehindALinkAndAfterAChangeOfFolder) {
  fs::create_directory(path("folder"));
  fs::create_symlink(file_, path("folder/link.kdb"));
  const fs::path before = fs::current_path();
  fs::current_path(path("folder"));
  sys::Result<LockedFile> file = LockedFile::read(fileName("link.kdb"));
  fs::current_path(before);
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value().path(), fs::canonical(file_).string());
  EXPECT_EQ(file.value().identity(), locked().identity());
  EXPECT_TRUE(std::move(file.value()).unlock(password(kPassword)));
}

TEST_F(OpeningTest, TellsWhyAFileCannotBeRead) {
  EXPECT_EQ(LockedFile::read(fileName(path("none.kdb"))).code(), ZELKM_ERR_KEYDB_NOT_EXIST);
  folder_.write("text.kdb", sys::Bytes(2000, 'x'));
  EXPECT_EQ(LockedFile::read(fileName(path("text.kdb"))).code(),
            ZELKM_ERR_DATABASE_INVALID_FILE_TYPE);
  EXPECT_EQ(UnlockedFile::open(fileName(path("none.kdb")), password(kPassword)).code(),
            ZELKM_ERR_KEYDB_NOT_EXIST);
}

TEST_F(OpeningTest, UnlocksWithTheRightPasswordOnly) {
  EXPECT_EQ(unlockingCode(kOtherPassword), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(unlockingCode(""), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(unlockingCode(kPassword), ZELKM_OK);
}

TEST_F(OpeningTest, UnlocksWithTheRightPasswordKeyOnly) {
  const Parameters parameters = locked().parameters();
  const sys::SecretBytes key =
      cms::derivePbeKey(sys::bytesOf(kPassword), parameters.salt, parameters.iterations)
          .value()
          .key;
  EXPECT_TRUE(locked().unlock(password(kPassword), key));
  EXPECT_EQ(locked().unlock(password(kPassword), sys::SecretBytes(kKeyLength, 1)).code(),
            ZELKM_ERR_DATABASE_INVALID_PASSWORD);
}

TEST_F(OpeningTest, CarriesWhatWasFoundOutIntoTheUnlockedState) {
  const LockedFile before = locked();
  sys::Result<UnlockedFile> file = UnlockedFile::open(fileName(file_), password(kPassword));
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value().path(), before.path());
  EXPECT_EQ(file.value().identity(), before.identity());
  EXPECT_EQ(file.value().parameters().salt, before.parameters().salt);
  EXPECT_TRUE(std::ranges::equal(file.value().password(), sys::bytesOf(kPassword)));
  EXPECT_EQ(file.value().masterKey().size(), kKeyLength);
  EXPECT_NE(file.value().takeConnection(), nullptr);
}

TEST_F(OpeningTest, TakesThePasswordOfTheStashWhenNoneIsGiven) {
  EXPECT_EQ(UnlockedFile::open(fileName(file_), std::nullopt).code(), ZELKM_ERR_PWDFILE_NOT_EXIST);
  ASSERT_TRUE(stashDatabasePassword(fileName(file_), password(kPassword)));
  EXPECT_TRUE(
      std::ranges::equal(locked().stashedPassword().value().bytes(), sys::bytesOf(kPassword)));
  EXPECT_TRUE(UnlockedFile::open(fileName(file_), std::nullopt));
}

}  // namespace
}  // namespace zel::km
