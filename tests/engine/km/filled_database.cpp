#include "tests/engine/km/filled_database.h"

#include <sqlite3.h>

#include <chrono>
#include <thread>

#include "engine/km/keydb/creation.h"
#include "engine/km/keydb/key_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {

namespace {

PasswordOrStash passwordOf(const char* text) { return password(text); }

}  // namespace

FilledDatabaseTest::FilledDatabaseTest() {
  store_ = createKeyDatabase(fileName(file_), password(kPassword), {}).value();
  KeyEntry first = entryOf("one", one_);
  first.isDefault = true;
  KeyEntry second = entryOf("two", two_);
  second.trusted = true;
  EXPECT_TRUE(store_->insertKey(first));
  EXPECT_TRUE(store_->insertKey(second));
  EXPECT_TRUE(store_->insertRequest(requestOf("one", one_)));
}

std::unique_ptr<Store> FilledDatabaseTest::open() const {
  return KeyDatabase::open(fileName(file_), passwordOf(kPassword)).value();
}

int FilledDatabaseTest::openingCode() const {
  return KeyDatabase::open(fileName(file_), passwordOf(kPassword)).code();
}

int FilledDatabaseTest::listingCode() const {
  sys::Result<std::unique_ptr<Store>> store =
      KeyDatabase::open(fileName(file_), passwordOf(kPassword));
  if (!store) return store.code();
  const int code = store.value()->keyLabels().code();
  return code != ZELKM_OK ? code : store.value()->requestLabels().code();
}

void FilledDatabaseTest::tamper(const std::string& sql) const {
  sqlite3* connection = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &connection), SQLITE_OK);
  char* message = nullptr;
  EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK)
      << message;
  sqlite3_close(connection);
}

}  // namespace zel::km
