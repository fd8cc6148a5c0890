#include "engine/km/keydb/schema.h"

#include <string>

#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr std::int64_t kApplicationId = 0x5A454C4B;  // "ZELK"
constexpr std::int64_t kVersion = 1;

constexpr const char* kTables[] = {
    "CREATE TABLE parameters (id INTEGER PRIMARY KEY CHECK (id = 1), approved_only INTEGER NOT "
    "NULL, expires_at INTEGER NOT NULL, iterations INTEGER NOT NULL, salt BLOB NOT NULL, key_salt "
    "BLOB NOT NULL, master_key BLOB NOT NULL, private_key_key BLOB NOT NULL, checksum BLOB NOT "
    "NULL)",
    "CREATE TABLE directory (id INTEGER PRIMARY KEY CHECK (id = 1), sealed BLOB NOT NULL)",
    "CREATE TABLE keys (id INTEGER PRIMARY KEY, label TEXT NOT NULL UNIQUE, trusted INTEGER NOT "
    "NULL, public_key_hash BLOB NOT NULL, subject_hash BLOB NOT NULL, seal BLOB NOT NULL, "
    "content BLOB NOT NULL)",
    "CREATE TABLE requests (id INTEGER PRIMARY KEY, label TEXT NOT NULL UNIQUE, trusted INTEGER "
    "NOT NULL, public_key_hash BLOB NOT NULL, subject_hash BLOB NOT NULL, seal BLOB NOT NULL, "
    "content BLOB NOT NULL)",
    "CREATE INDEX keys_by_public_key ON keys (public_key_hash)",
    "CREATE INDEX keys_by_subject ON keys (subject_hash)",
    "CREATE INDEX requests_by_public_key ON requests (public_key_hash)",
};

// A write-ahead log would lie beside the file, where no check of it reaches.
sys::Status checkJournal(Connection& connection) {
  sys::Result<Statement> mode = connection.prepare("PRAGMA journal_mode");
  if (!mode) return mode.failure();
  sys::Result<bool> row = mode.value().step();
  if (!row) return row.failure();
  if (!row.value() || mode.value().text(0) != "delete") {
    return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION, "the file has another journal than ours");
  }
  return sys::success();
}

sys::Status checkTables(Connection& connection) {
  sys::Result<Statement> select =
      connection.prepare("SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL ORDER BY rowid");
  if (!select) return select.failure();
  for (const char* expected : kTables) {
    sys::Result<bool> row = select.value().step();
    if (!row) return row.failure();
    if (!row.value() || select.value().text(0) != expected) {
      return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION, "the tables are not those of a key database");
    }
  }
  sys::Result<bool> more = select.value().step();
  if (!more) return more.failure();
  if (more.value()) {
    return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION, "there are tables that do not belong here");
  }
  return sys::success();
}

}  // namespace

sys::Status createSchema(Connection& connection) {
  std::string statements = "PRAGMA application_id = " + std::to_string(kApplicationId) +
                           "; PRAGMA user_version = " + std::to_string(kVersion) + ";";
  for (const char* table : kTables) statements += std::string(table) + ";";
  return connection.execute(statements.c_str(), Access::write);
}

sys::Status checkApplication(Connection& connection) {
  sys::Result<std::int64_t> application = connection.number("PRAGMA application_id");
  if (!application) return application.failure();
  if (application.value() != kApplicationId) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_FILE_TYPE, "an SQLite file, but no key database");
  }
  return sys::success();
}

sys::Status checkSchema(Connection& connection) {
  sys::Status ours = checkApplication(connection);
  if (!ours) return ours;
  sys::Result<std::int64_t> version = connection.number("PRAGMA user_version");
  if (!version) return version.failure();
  if (version.value() != kVersion) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_VERSION, "key database version %lld, not %lld",
                     static_cast<long long>(version.value()), static_cast<long long>(kVersion));
  }
  sys::Status journal = checkJournal(connection);
  if (!journal) return journal;
  return checkTables(connection);
}

sys::Status checkStructure(Connection& connection) {
  sys::Result<Statement> check = connection.prepare("PRAGMA integrity_check(1)");
  if (!check) return check.failure();
  sys::Result<bool> row = check.value().step();
  if (!row) return row.failure();
  if (!row.value() || check.value().text(0) != "ok") {
    return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION, "SQLite finds: %s",
                     std::string(check.value().text(0)).c_str());
  }
  return sys::success();
}

}  // namespace zel::km
