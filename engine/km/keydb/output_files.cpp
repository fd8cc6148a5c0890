#include "engine/km/keydb/output_files.h"

#include "engine/km/keydb/schema.h"
#include "engine/km/keydb/sqlite.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

// Looked at through SQLite, even where its first bytes would do: closing another descriptor on a
// database that this process has open would drop its locks.
bool isKeyDatabase(const std::string& name) {
  if (!stateOf(name)) return false;
  sys::Result<std::unique_ptr<Connection>> connection = Connection::open(name);
  const int code = connection ? checkApplication(*connection.value()).code() : connection.code();
  // Of a file that somebody holds locked nothing is known, so it may be one.
  return code == ZELKM_OK || code == ZELKM_ERR_DATABASE_READ;
}

}  // namespace

sys::Status checkIsNoKeyDatabase(const sys::FileName& name) {
  if (!isKeyDatabase(name.path())) return sys::success();
  return sys::fail(ZELKM_ERR_DATABASE_ALREADY_EXISTS, "%s is a key database, and is left alone",
                   name.path().c_str());
}

sys::Status writeOutput(const sys::FileName& name, sys::ByteView bytes, sys::FileAccess access) {
  sys::Status free = checkIsNoKeyDatabase(name);
  if (!free) return free;
  return sys::writeFile(name.path(), bytes, access);
}

}  // namespace zel::km
