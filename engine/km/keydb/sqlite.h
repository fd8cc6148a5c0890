#ifndef ZEL_KM_KEYDB_SQLITE_H_
#define ZEL_KM_KEYDB_SQLITE_H_

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * SQLite as this library uses it: a connection, its statements, and what its failures mean here.
 *
 *     Result<Statement> select = connection.prepare("SELECT label FROM keys WHERE id = ?1");
 *     if (!select) return select.failure();
 *     select.value().bind(1, id);
 *     Result<bool> row = select.value().step();
 *
 * Failures of SQLite become the codes of databases: 12 and 13 for what cannot be read and written,
 * 17 for a file that is no database, 18 for a damaged one, 90 for one that the user may not use.
 */

namespace zel::km {

/** What a failure kept from being done. */
enum class Access { read, write };

/** A Statement's texts and blobs are borrowed until its next step; bound ones until it goes. */
class Statement {
 public:
  Statement(sqlite3* connection, sqlite3_stmt* statement)
      : connection_(connection), statement_(statement, &sqlite3_finalize) {}

  Statement& bind(int index, std::int64_t number);
  Statement& bind(int index, sys::ByteView bytes);
  Statement& bind(int index, std::string_view text);
  // A literal would otherwise become a number.
  Statement& bind(int index, const char* text) { return bind(index, std::string_view(text)); }

  /** True when there is a row to read, false at the end. */
  sys::Result<bool> step();
  /** Makes ready for other values and the first row again. */
  void rewind() { sqlite3_reset(statement_.get()); }
  /** Steps through to the end. */
  sys::Status run();

  /** SQLITE_INTEGER, SQLITE_TEXT, SQLITE_BLOB: any column may hold any of them. Ask before reading.
   */
  int type(int column) const;
  std::int64_t integer(int column) const;
  sys::ByteView blob(int column) const;
  std::string_view text(int column) const;

 private:
  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement_;
};

/** A Connection is one open database file, used by one thread at a time. */
class Connection {
 public:
  /** Opens an existing file and reads its schema. */
  static sys::Result<std::unique_ptr<Connection>> open(const std::string& path);

  sys::Result<Statement> prepare(std::string_view sql);
  /** Runs statements that have no parameters and no rows. */
  sys::Status execute(const char* sql, Access access);
  /** The one number that a statement answers. */
  sys::Result<std::int64_t> number(std::string_view sql);
  bool inTransaction() const;
  /** Does nothing outside a transaction: SQLite may have rolled back itself after an error. */
  void rollBack() noexcept;
  /** Whether the path names another file by now, or none. */
  bool hasMoved() const;

 private:
  using Handle = std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)>;

  explicit Connection(Handle handle) : handle_(std::move(handle)) {}

  Handle handle_;
};

/** A Transaction rolls back unless it was committed. */
class Transaction {
 public:
  enum class Kind { read, write };

  /** A writer waits for other processes up to the busy timeout, then it is code 13. */
  static sys::Result<Transaction> begin(Connection& connection, Kind kind);
  ~Transaction();
  Transaction(Transaction&& other) noexcept;
  Transaction& operator=(Transaction&&) = delete;
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  sys::Status commit();

  /**
   * Runs the body, which answers a Status or a Result, in a transaction and answers what it
   * answers: what it did stays when that is a success, and is rolled back when it fails or throws.
   */
  template <typename Body>
  static std::invoke_result_t<Body&> run(Connection& connection, Kind kind, Body&& body) {
    sys::Result<Transaction> transaction = begin(connection, kind);
    if (!transaction) return transaction.failure();
    auto answer = body();
    if (!answer) return answer;
    sys::Status committed = transaction.value().commit();
    if (!committed) return committed.failure();
    return answer;
  }

 private:
  explicit Transaction(Connection& connection) : connection_(&connection) {}

  Connection* connection_;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_SQLITE_H_
