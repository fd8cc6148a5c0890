#include <gtest/gtest.h>

#include <filesystem>

#include "tests/engine/km/filled_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

// Each test does to the file what somebody can do who may write to it but has no password.
class RecordsTamperingTest : public FilledDatabaseTest {};

TEST_F(RecordsTamperingTest, ListsWhatNobodyTouched) { EXPECT_EQ(listingCode(), ZELKM_OK); }

TEST_F(RecordsTamperingTest, NoticesARemovedRecord) {
  tamper("DELETE FROM keys WHERE label = 'two'");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesARemovedRequest) {
  tamper("DELETE FROM requests");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesACopiedRecord) {
  tamper(
      "INSERT INTO keys SELECT 9, 'three', trusted, public_key_hash, subject_hash, seal, content"
      " FROM keys WHERE label = 'two'");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesSwappedRecords) {
  tamper(
      "UPDATE keys SET label = 'three' WHERE label = 'one';"
      "UPDATE keys SET label = 'one' WHERE label = 'two';"
      "UPDATE keys SET label = 'two' WHERE label = 'three'");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesTrustThatNobodyGave) {
  tamper("UPDATE keys SET trusted = 1");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesARecordPutBackAsItOnceWas) {
  tamper("CREATE TABLE kept AS SELECT * FROM keys WHERE label = 'two'; ");
  // A table of another's is noticed for itself, so it goes to a file of its own.
  tamper("ATTACH '" + path("kept") +
         "' AS other; CREATE TABLE other.kept AS SELECT * FROM kept;"
         "DROP TABLE kept");
  ASSERT_TRUE(open()->setTrusted("two"_label, false));
  ASSERT_EQ(listingCode(), ZELKM_OK);
  tamper("ATTACH '" + path("kept") +
         "' AS other;"
         "REPLACE INTO main.keys SELECT * FROM other.kept");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesARemovedRecordPutBack) {
  tamper("ATTACH '" + path("kept") + "' AS other; CREATE TABLE other.kept AS SELECT * FROM keys");
  ASSERT_TRUE(open()->removeKey("two"_label));
  tamper("ATTACH '" + path("kept") +
         "' AS other;"
         "INSERT INTO main.keys SELECT * FROM other.kept WHERE label = 'two'");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesAnOlderDirectory) {
  tamper("ATTACH '" + path("kept") +
         "' AS other;"
         "CREATE TABLE other.kept AS SELECT * FROM directory");
  ASSERT_TRUE(open()->removeKey("two"_label));
  tamper("ATTACH '" + path("kept") +
         "' AS other;"
         "REPLACE INTO main.directory SELECT * FROM other.kept");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesALabelThatNoSearchFinds) {
  tamper("UPDATE keys SET label = CAST(label AS BLOB) WHERE label = 'two'");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_KEY_INTEGRITY);
}

TEST_F(RecordsTamperingTest, NoticesAHashThatNoSearchFinds) {
  tamper("UPDATE keys SET subject_hash = CAST(subject_hash AS TEXT)");
  EXPECT_EQ(listingCode(), ZELKM_ERR_DATABASE_KEY_INTEGRITY);
}

TEST_F(RecordsTamperingTest, NoticesAMissingDirectory) {
  tamper("DELETE FROM directory");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesAMissingPasswordRecord) {
  tamper("DELETE FROM parameters");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesAPasswordLifetimeThatWasChanged) {
  tamper("UPDATE parameters SET expires_at = 99999999999");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesIterationsThatWereChanged) {
  for (const char* iterations : {"1", "600001", "4000000000", "-1"}) {
    tamper(std::string("UPDATE parameters SET iterations = ") + iterations);
    EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION) << iterations;
  }
}

TEST_F(RecordsTamperingTest, NoticesStrangeTables) {
  tamper("CREATE TABLE more (x)");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, NoticesTriggers) {
  tamper("CREATE TRIGGER t AFTER INSERT ON keys BEGIN DELETE FROM keys; END");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

TEST_F(RecordsTamperingTest, TellsAnotherVersion) {
  tamper("PRAGMA user_version = 2");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_INVALID_VERSION);
}

TEST_F(RecordsTamperingTest, TellsAnotherApplication) {
  tamper("PRAGMA application_id = 1");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_INVALID_FILE_TYPE);
}

TEST_F(RecordsTamperingTest, TakesNoOtherJournal) {
  tamper("PRAGMA journal_mode = WAL");
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_CORRUPTION);
}

}  // namespace
}  // namespace zel::km
