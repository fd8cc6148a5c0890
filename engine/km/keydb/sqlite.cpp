#include "engine/km/keydb/sqlite.h"

#include <cerrno>
#include <new>
#include <utility>

#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr int kBusyTimeoutMilliseconds = 5000;
// No record comes near it; a damaged length must not make SQLite ask for gigabytes.
constexpr int kLongestRecord = 64 * 1024 * 1024;

int codeOf(int sqliteCode, Access access) {
  const int notDone = access == Access::read ? ZELKM_ERR_DATABASE_READ : ZELKM_ERR_DATABASE_WRITE;
  switch (sqliteCode & 0xff) {
    case SQLITE_NOTADB:
      return ZELKM_ERR_DATABASE_INVALID_FILE_TYPE;
    case SQLITE_CORRUPT:
    case SQLITE_FORMAT:
    case SQLITE_TOOBIG:
    case SQLITE_MISMATCH:
    case SQLITE_ERROR:  // our statements are right, so the schema is not
      return ZELKM_ERR_DATABASE_CORRUPTION;
    case SQLITE_CANTOPEN:
      return ZELKM_ERR_DATABASE_OPEN;
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return ZELKM_ERR_FILE_OPEN_NOT_ALLOWED;
    case SQLITE_READONLY:
    case SQLITE_FULL:
      return ZELKM_ERR_DATABASE_WRITE;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_IOERR:
      return notDone;
    default:
      return ZELKM_ERR_DATABASE;
  }
}

// SQLite has one code for a file that it cannot open, whatever the reason.
bool isDenied(sqlite3* handle, int sqliteCode) {
  if ((sqliteCode & 0xff) != SQLITE_CANTOPEN) return false;
  const int error = sqlite3_system_errno(handle);
  return error == EACCES || error == EPERM;
}

sys::Failure failure(sqlite3* handle, int sqliteCode, Access access) {
  if ((sqliteCode & 0xff) == SQLITE_NOMEM) throw std::bad_alloc();
  const int code =
      isDenied(handle, sqliteCode) ? ZELKM_ERR_FILE_OPEN_NOT_ALLOWED : codeOf(sqliteCode, access);
  return sys::fail(code, "SQLite answers %d: %s", sqliteCode, sqlite3_errmsg(handle));
}

}  // namespace

Statement& Statement::bind(int index, std::int64_t number) {
  sqlite3_bind_int64(statement_.get(), index, number);
  return *this;
}

Statement& Statement::bind(int index, sys::ByteView bytes) {
  // A null pointer would bind NULL.
  const void* data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
  sqlite3_bind_blob64(statement_.get(), index, data, bytes.size(), SQLITE_STATIC);
  return *this;
}

Statement& Statement::bind(int index, std::string_view text) {
  const char* data = text.empty() ? "" : text.data();
  sqlite3_bind_text64(statement_.get(), index, data, text.size(), SQLITE_STATIC, SQLITE_UTF8);
  return *this;
}

sys::Result<bool> Statement::step() {
  const int answer = sqlite3_step(statement_.get());
  if (answer == SQLITE_ROW) return true;
  if (answer == SQLITE_DONE) return false;
  const bool reading = sqlite3_stmt_readonly(statement_.get()) != 0;
  return failure(connection_, answer, reading ? Access::read : Access::write);
}

sys::Status Statement::run() {
  for (;;) {
    sys::Result<bool> row = step();
    if (!row) return row.failure();
    if (!row.value()) return sys::success();
  }
}

int Statement::type(int column) const { return sqlite3_column_type(statement_.get(), column); }

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

sys::ByteView Statement::blob(int column) const {
  const void* data = sqlite3_column_blob(statement_.get(), column);
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(size)};
}

std::string_view Statement::text(int column) const {
  const unsigned char* data = sqlite3_column_text(statement_.get(), column);
  if (data == nullptr) return {};
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {reinterpret_cast<const char*>(data), static_cast<std::size_t>(size)};
}

sys::Result<std::unique_ptr<Connection>> Connection::open(const std::string& path) {
  // SQLite gives a meaning of its own to names like ":memory:".
  const std::string name = path.starts_with('/') ? path : "./" + path;
  sqlite3* handle = nullptr;
  const int opened =
      sqlite3_open_v2(name.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  // Owned before anything else is allocated; SQLite hands one out even when it could not open.
  Handle owned(handle, &sqlite3_close_v2);
  std::unique_ptr<Connection> connection(new Connection(std::move(owned)));
  if (opened != SQLITE_OK) return failure(handle, opened, Access::read);
  sqlite3_extended_result_codes(handle, 1);
  sqlite3_busy_timeout(handle, kBusyTimeoutMilliseconds);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kLongestRecord);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sys::Status set = connection->execute(
      "PRAGMA synchronous = EXTRA; PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY;"
      "PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0;",
      Access::read);
  if (!set) return set.failure();
  return connection;
}

sys::Result<Statement> Connection::prepare(std::string_view sql) {
  sqlite3_stmt* statement = nullptr;
  const int prepared = sqlite3_prepare_v2(handle_.get(), sql.data(), static_cast<int>(sql.size()),
                                          &statement, nullptr);
  if (prepared != SQLITE_OK) return failure(handle_.get(), prepared, Access::read);
  return Statement(handle_.get(), statement);
}

sys::Status Connection::execute(const char* sql, Access access) {
  const int executed = sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr);
  if (executed != SQLITE_OK) return failure(handle_.get(), executed, access);
  return sys::success();
}

sys::Result<std::int64_t> Connection::number(std::string_view sql) {
  sys::Result<Statement> statement = prepare(sql);
  if (!statement) return statement.failure();
  sys::Result<bool> row = statement.value().step();
  if (!row) return row.failure();
  if (!row.value()) return sys::Failure{ZELKM_ERR_DATABASE_CORRUPTION};
  return statement.value().integer(0);
}

bool Connection::inTransaction() const { return sqlite3_get_autocommit(handle_.get()) == 0; }

void Connection::rollBack() noexcept {
  // Nobody is told of a failure, which leaves nothing but to close the connection.
  (void)sqlite3_exec(handle_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

bool Connection::hasMoved() const {
  int moved = 0;
  const int asked = sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return asked != SQLITE_OK || moved != 0;
}

sys::Result<Transaction> Transaction::begin(Connection& connection, Kind kind) {
  sys::Status begun = kind == Kind::write ? connection.execute("BEGIN IMMEDIATE", Access::write)
                                          : connection.execute("BEGIN", Access::read);
  if (!begun) return begun.failure();
  return Transaction(connection);
}

Transaction::~Transaction() {
  if (connection_ != nullptr) connection_->rollBack();
}

Transaction::Transaction(Transaction&& other) noexcept
    : connection_(std::exchange(other.connection_, nullptr)) {}

sys::Status Transaction::commit() {
  sys::Status committed = connection_->execute("COMMIT", Access::write);
  if (committed) connection_ = nullptr;
  return committed;
}

}  // namespace zel::km
