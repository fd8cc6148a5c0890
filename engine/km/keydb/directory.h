#ifndef ZEL_KM_KEYDB_DIRECTORY_H_
#define ZEL_KM_KEYDB_DIRECTORY_H_

#include <cstdint>

#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/sealing.h"
#include "engine/km/keydb/sqlite.h"
#include "engine/sys/result.h"

/**
 * @file
 * The directory of a key database: one sealed row that knows which records there are. Each record's
 * seal protects the record; that none was removed, added, or put back as it once was is known here.
 *
 * A table's records are summed up as the exclusive or of one HMAC each, so that a change costs the
 * same at any size. The sum is sealed and never seen: nobody can find other records with the same.
 */

namespace zel::km {

/** The two tables of records. */
enum class Table { keys, requests };

/** A Membership sums up the records of one table. */
struct Membership {
  std::int64_t count = 0;
  Digest sum{};

  void add(const Digest& member);
  void remove(const Digest& member);

  bool operator==(const Membership&) const = default;
};

struct Directory {
  Membership keys;
  Membership requests;
  std::int64_t defaultKey = 0; /**< a record's id; 0 for none */
  std::int64_t lastId = 0;     /**< ids are never given twice */

  Membership& of(Table table) { return table == Table::keys ? keys : requests; }
};

/** ZELKM_ERR_DATABASE_CORRUPTION (18) when the row is missing or not sealed by these keys. */
sys::Result<Directory> readDirectory(Connection& connection, const DatabaseKeys& keys);

sys::Status writeDirectory(Connection& connection, const DatabaseKeys& keys,
                           const Directory& directory);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_DIRECTORY_H_
