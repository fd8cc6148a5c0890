#include "engine/km/keydb/records.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "engine/km/keydb/schema.h"
#include "engine/sys/files.h"
#include "tests/engine/cms/tools.h"

namespace zel::km {
namespace {

/** Records in a file that nothing examines as a whole, as no large file is. */
class RecordsTest : public testing::Test {
 protected:
  RecordsTest() {
    EXPECT_TRUE(sys::createFile(file_, sys::FileAccess::ownerOnly));
    connection_ = Connection::open(file_).value();
    EXPECT_TRUE(createSchema(*connection_));
    EXPECT_TRUE(writeDirectory(*connection_, keys_, Directory{}));
    for (const std::uint8_t number : sys::Bytes{1, 2}) {
      Record record;
      record.label = std::to_string(number);
      record.lookup = {digest(sys::Bytes{number}).value(), digest(sys::Bytes{number, 0}).value()};
      record.document = {number};
      EXPECT_TRUE(Records(*connection_, keys_).insert(Table::keys, record));
      records_.push_back(record);
    }
  }

  /** Has two indexes stand for each other, and opens the file anew. */
  void exchange(const std::string& one, const std::string& other) {
    connection_.reset();
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &raw), SQLITE_OK);
    const std::string sql =
        "PRAGMA writable_schema = ON; CREATE TEMP TABLE roots AS SELECT name, rootpage FROM "
        "main.sqlite_schema; UPDATE main.sqlite_schema SET rootpage = (SELECT rootpage FROM roots "
        "WHERE name = '" +
        other + "') WHERE name = '" + one +
        "'; UPDATE main.sqlite_schema SET "
        "rootpage = (SELECT rootpage FROM roots WHERE name = '" +
        one + "') WHERE name = '" + other + "'";
    ASSERT_EQ(sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(raw);
    sqlite3_close(raw);
    connection_ = Connection::open(file_).value();
  }

  sys::Result<std::vector<Record>> find(const Condition& condition) {
    return Records(*connection_, keys_).find(Table::keys, condition);
  }

  cms::TemporaryFolder folder_;
  const std::string file_ = folder_.path("records.kdb");
  const DatabaseKeys keys_ = DatabaseKeys::fromMaster(sys::Bytes(kKeyLength, 1)).value();
  std::unique_ptr<Connection> connection_;
  std::vector<Record> records_;
};

TEST_F(RecordsTest, AreFoundByEachCondition) {
  for (const Record& record : records_) {
    for (const Condition& condition :
         {byId(record.id), byLabel(record.label), byPublicKey(record.lookup.publicKey),
          bySubject(record.lookup.subject)}) {
      const std::vector<Record> found = find(condition).value();
      ASSERT_EQ(found.size(), 1U) << condition.column;
      EXPECT_EQ(found.front().document, record.document) << condition.column;
    }
  }
}

TEST_F(RecordsTest, AreNotTakenForWhatAWrongIndexSaysTheyAre) {
  exchange("keys_by_public_key", "keys_by_subject");
  EXPECT_EQ(find(bySubject(records_[0].lookup.publicKey)).code(), ZELKM_ERR_DATABASE_CORRUPTION);
  EXPECT_EQ(find(byPublicKey(records_[0].lookup.subject)).code(), ZELKM_ERR_DATABASE_CORRUPTION);
  EXPECT_EQ(find(byLabel("1")).value().size(), 1U);
}

}  // namespace
}  // namespace zel::km
