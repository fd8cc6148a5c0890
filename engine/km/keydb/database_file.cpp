#include "engine/km/keydb/database_file.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <map>
#include <new>
#include <utility>

#include "engine/km/keydb/records.h"
#include "engine/km/keydb/schema.h"
#include "engine/sys/mutex.h"

namespace zel::km {

namespace {

constexpr std::size_t kMostIdle = 16;
constexpr std::size_t kMostExamined = 256;
// A file of up to 4 MiB is examined within milliseconds; a larger one costs more than it is worth
// at every opening, and is protected by the seals and by the check of every listing.
constexpr std::int64_t kMostPagesExamined = 1024;

/** The connections that nobody uses at the moment, and the files that were found sound. */
class Idle {
 public:
  static Idle& instance() {
    // Never destroyed: a thread may still use a database while the process exits.
    static auto* idle = new Idle;
    return *idle;
  }

  /** Null when there is none for the file as it is now: a cache of an older one would be stale. */
  std::unique_ptr<Connection> take(const DatabaseFile* file, const FileState& state) {
    std::list<Entry> stale;
    const sys::Lock lock(mutex_);
    for (auto each = entries_.begin(); each != entries_.end();) {
      const auto next = std::next(each);
      if (each->file == file) {
        if (each->state == state) {
          std::unique_ptr<Connection> connection = std::move(each->connection);
          entries_.erase(each);
          return connection;
        }
        stale.splice(stale.end(), entries_, each);
      }
      each = next;
    }
    return nullptr;
  }

  void put(const DatabaseFile* file, const FileState& state,
           std::unique_ptr<Connection> connection) {
    std::list<Entry> evicted;
    const sys::Lock lock(mutex_);
    entries_.push_front(Entry{file, state, std::move(connection)});
    if (entries_.size() > kMostIdle) evicted.splice(evicted.end(), entries_, --entries_.end());
  }

  void closeAllOf(const DatabaseFile* file) {
    std::list<Entry> closed;
    const sys::Lock lock(mutex_);
    for (auto each = entries_.begin(); each != entries_.end();) {
      const auto next = std::next(each);
      if (each->file == file) closed.splice(closed.end(), entries_, each);
      each = next;
    }
  }

  bool isExamined(const FileState& state) {
    const sys::Lock lock(mutex_);
    const auto found = examined_.find(state.identity);
    return found != examined_.end() && found->second == state;
  }

  void setExamined(const FileState& state) {
    if (!state.settled()) return;
    const sys::Lock lock(mutex_);
    if (examined_.size() >= kMostExamined) examined_.clear();
    examined_.insert_or_assign(state.identity, state);
  }

 private:
  struct Entry {
    const DatabaseFile* file;
    FileState state;
    std::unique_ptr<Connection> connection;
  };

  sys::Mutex mutex_;
  std::list<Entry> entries_ ZEL_GUARDED_BY(mutex_); /**< the most recently used first */
  std::map<FileIdentity, FileState> examined_ ZEL_GUARDED_BY(mutex_);
};

sys::Status examineAll(Connection& connection, const DatabaseKeys& keys) {
  sys::Status sound = checkSchema(connection);
  if (sound) sound = checkStructure(connection);
  if (!sound) return sound;
  Records records(connection, keys);
  for (Table table : {Table::keys, Table::requests}) {
    sys::Result<std::vector<std::string>> labels = records.labels(table);
    if (!labels) return labels.failure();
  }
  return sys::success();
}

/** Examines a small file once per state. */
sys::Status examine(Connection& connection, const DatabaseFile& file) {
  return Transaction::run(connection, Transaction::Kind::read, [&]() -> sys::Status {
    sys::Result<std::int64_t> pages = connection.number("PRAGMA page_count");
    if (!pages) return pages.failure();
    // From here on SQLite's lock keeps other processes from writing.
    sys::Result<FileState> state = stateOf(file.path());
    if (!state) return state.failure();
    if (pages.value() > kMostPagesExamined || Idle::instance().isExamined(state.value())) {
      return sys::success();
    }
    sys::Status sound = examineAll(connection, file.keys());
    if (sound) Idle::instance().setExamined(state.value());
    return sound;
  });
}

}  // namespace

BorrowedConnection::~BorrowedConnection() {
  if (!connection_ || connection_->inTransaction()) return;
  try {
    file_->adopt(std::move(connection_));
  } catch (const std::bad_alloc&) {
    // A connection that cannot be kept is closed.
  }
}

DatabaseFile::DatabaseFile(std::string path, bool approvedOnly, DatabaseKeys keys,
                           sys::ByteView password)
    : path_(std::move(path)),
      approvedOnly_(approvedOnly),
      keys_(std::move(keys)),
      password_(password.size()) {
  std::ranges::copy(password, password_.bytes().begin());
}

DatabaseFile::~DatabaseFile() { Idle::instance().closeAllOf(this); }

void DatabaseFile::adopt(std::unique_ptr<Connection> connection) const {
  sys::Result<FileState> state = stateOf(path_);
  // Asked after the state was read, so that the connection is to the file of that state.
  if (!state || connection->hasMoved()) return;
  Idle::instance().put(this, state.value(), std::move(connection));
}

sys::Result<BorrowedConnection> DatabaseFile::borrow() const {
  sys::Result<FileState> state = stateOf(path_);
  if (!state) return state.failure();
  std::unique_ptr<Connection> connection = Idle::instance().take(this, state.value());
  if (!connection || connection->hasMoved()) {
    sys::Result<std::unique_ptr<Connection>> opened = Connection::open(path_);
    if (!opened) return opened.failure();
    connection = std::move(opened.value());
    sys::Status known = checkSchema(*connection);
    if (!known) return known.failure();
  }
  if (!Idle::instance().isExamined(state.value())) {
    sys::Status sound = examine(*connection, *this);
    if (!sound) return sound.failure();
  }
  return BorrowedConnection(*this, std::move(connection));
}

}  // namespace zel::km
