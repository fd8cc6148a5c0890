#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

/** A test of writing where a key database stands. */
class OutputFilesTest : public DatabaseTest {
 protected:
  OutputFilesTest() { EXPECT_EQ(selfSign("key"), ZELKM_OK); }

  /** Another key database, which nobody has open. */
  std::string closedDatabase(const char* name) {
    int handle = 0;
    EXPECT_EQ(ZELKM_CreateNewKeyDb(path(name).c_str(), kPassword, 0, &handle), ZELKM_OK);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    return path(name);
  }
  int exportCertificateTo(const std::string& file) {
    return ZELKM_ExportCert(handle(), "key", file.c_str(), 1);
  }
};

TEST_F(OutputFilesTest, TakeThePlaceOfOrdinaryFiles) {
  const std::string file = folder().write("old.pem", cms::text("what stood there"));
  EXPECT_EQ(exportCertificateTo(file), ZELKM_OK);
  EXPECT_EQ(exportCertificateTo(file), ZELKM_OK);
}

TEST_F(OutputFilesTest, NeverTakeThePlaceOfTheDatabaseInUse) {
  EXPECT_EQ(exportCertificateTo(databasePath()), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(
      ZELKM_ExportKeys(handle(), 1, databasePath().c_str(), kPassword, Labels({"key"}).head()),
      ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(ZELKM_StartTrace("tag", databasePath().c_str(), 0, 0),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(codeOfItem("key"), ZELKM_OK);
}

TEST_F(OutputFilesTest, NeverTakeThePlaceOfAnotherDatabase) {
  const std::string other = closedDatabase("other.kdb");
  const sys::Bytes before = folder().read("other.kdb");
  EXPECT_EQ(exportCertificateTo(other), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 1, other.c_str(), kPassword, Labels({"key"}).head()),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(folder().read("other.kdb"), before);
}

TEST_F(OutputFilesTest, NeverTakeThePlaceOfADatabaseUnderAnotherName) {
  const std::string link = path("link.pem");
  ASSERT_EQ(::symlink(closedDatabase("other.kdb").c_str(), link.c_str()), 0);
  EXPECT_EQ(exportCertificateTo(link), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
}

TEST_F(OutputFilesTest, NeverTakeThePlaceOfALockedDatabase) {
  const std::string other = closedDatabase("other.kdb");
  sqlite3* writer = nullptr;
  ASSERT_EQ(sqlite3_open(other.c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(exportCertificateTo(other), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  sqlite3_close(writer);
}

TEST_F(OutputFilesTest, AStashFileNeverTakesThePlaceOfADatabase) {
  closedDatabase("name.sth");
  EXPECT_EQ(ZELKM_StashKeyDbPwd(closedDatabase("name.kdb").c_str(), kPassword),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
}

}  // namespace
}  // namespace zel::km
