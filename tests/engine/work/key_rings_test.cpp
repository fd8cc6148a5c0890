#include "engine/km/work/key_rings.h"

#include <gmock/gmock.h>

#include "engine/km/keydb/key_database.h"
#include "tests/engine/km/filled_database.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

// On a database with two keys and a request of its own, since databases are what goes in and out.
class KeyRingFilesTest : public FilledDatabaseTest {
 protected:
  sys::FileName file(const char* name) const { return fileName(path(name)); }
  KeyRingFile ring(const char* name = "keys.kyr", const char* secret = "ring secret") const {
    return {file(name), password(secret)};
  }
  sys::Status toRing(const KeyRingFile& ring) const {
    return toKeyRing(fileName(file_), password(kPassword), ring);
  }
};

TEST_F(KeyRingFilesTest, CarryAWholeDatabaseThereAndBack) {
  ASSERT_TRUE(toRing(ring()));
  ASSERT_TRUE(fromKeyRing(ring(), file("again.kdb"), password(kOtherPassword)));
  const std::unique_ptr<Store> again =
      KeyDatabase::open(file("again.kdb"), password(kOtherPassword)).value();
  EXPECT_EQ(contentOf(*again), contentOf(*store_));
}

TEST_F(KeyRingFilesTest, NeverTakeThePlaceOfAFile) {
  ASSERT_TRUE(toRing(ring()));
  EXPECT_EQ(toRing(ring()).code(), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(fromKeyRing(ring(), fileName(file_), password(kPassword)).code(),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
}

TEST_F(KeyRingFilesTest, AreNoKeyDatabases) {
  const KeyRingFile database{fileName(file_), password(kPassword)};
  EXPECT_EQ(fromKeyRing(database, file("again.kdb"), password(kPassword)).code(),
            ZELKM_ERR_INVALID_PKCS12_DATA);
}

TEST_F(KeyRingFilesTest, LeaveNoFileBehindWhenTheyCannotBeRead) {
  ASSERT_TRUE(toRing(ring()));
  EXPECT_EQ(fromKeyRing(ring("keys.kyr", "other"), file("again.kdb"), password(kPassword)).code(),
            ZELKM_ERR_PKCS12_PWD_CORRUPTION);
  EXPECT_EQ(KeyDatabase::open(file("again.kdb"), password(kPassword)).code(),
            ZELKM_ERR_KEYDB_NOT_EXIST);
}

}  // namespace
}  // namespace zel::km
