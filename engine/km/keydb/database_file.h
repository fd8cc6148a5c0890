#ifndef ZEL_KM_KEYDB_DATABASE_FILE_H_
#define ZEL_KM_KEYDB_DATABASE_FILE_H_

#include <memory>
#include <string>

#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/sqlite.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"
#include "engine/sys/secrets.h"

/**
 * @file
 * An unlocked key database file. All handles on it share one DatabaseFile; each operation borrows a
 * connection for as long as it runs. A few idle connections are kept open per process and the rest
 * is closed, so that handles that nobody closes cost neither descriptors nor locks:
 *
 *     Result<BorrowedConnection> connection = file->borrow();
 *     if (!connection) return connection.failure();
 *     Records records(*connection.value(), file->keys());
 */

namespace zel::km {

class DatabaseFile;

/** A BorrowedConnection goes back to the idle ones, or is closed when it was left in a mess. */
class BorrowedConnection {
 public:
  BorrowedConnection(const DatabaseFile& file, std::unique_ptr<Connection> connection)
      : file_(&file), connection_(std::move(connection)) {}
  ~BorrowedConnection();
  BorrowedConnection(BorrowedConnection&&) noexcept = default;
  BorrowedConnection& operator=(BorrowedConnection&&) = delete;

  Connection& operator*() const { return *connection_; }

 private:
  const DatabaseFile* file_;
  std::unique_ptr<Connection> connection_;
};

class DatabaseFile {
 public:
  DatabaseFile(std::string path, bool approvedOnly, DatabaseKeys keys, sys::ByteView password);
  ~DatabaseFile();
  DatabaseFile(const DatabaseFile&) = delete;
  DatabaseFile& operator=(const DatabaseFile&) = delete;

  const std::string& path() const { return path_; }
  bool approvedOnly() const { return approvedOnly_; }
  const DatabaseKeys& keys() const { return keys_; }
  sys::ByteView password() const { return password_.bytes(); }

  /**
   * Takes in a connection that somebody has done with, and closes it when another file stands under
   * the path by now.
   */
  void adopt(std::unique_ptr<Connection> connection) const;

  /**
   * A connection to the file as it is now. A small file that somebody else has written to is
   * examined as a whole first: ZELKM_ERR_DATABASE_CORRUPTION (18) when a byte of it is wrong.
   */
  sys::Result<BorrowedConnection> borrow() const;

 private:
  std::string path_;
  bool approvedOnly_;
  DatabaseKeys keys_;
  sys::SecretBlock password_;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_DATABASE_FILE_H_
