#ifndef ZEL_KM_KEYDB_SCHEMA_H_
#define ZEL_KM_KEYDB_SCHEMA_H_

#include "engine/km/keydb/sqlite.h"
#include "engine/sys/result.h"

/**
 * @file
 * The tables of a key database file, and how a file is known to be one. docs/engine.md describes
 * every column.
 */

namespace zel::km {

/** createSchema makes the tables in an empty file. */
sys::Status createSchema(Connection& connection);

/** ZELKM_ERR_DATABASE_INVALID_FILE_TYPE (17) unless the file is a key database, of any version. */
sys::Status checkApplication(Connection& connection);

/**
 * checkSchema finds out whether the file is a key database of this version:
 *  - ZELKM_ERR_DATABASE_INVALID_FILE_TYPE (17): a file of something else.
 *  - ZELKM_ERR_DATABASE_INVALID_VERSION (15): a key database of another version.
 *  - ZELKM_ERR_DATABASE_CORRUPTION (18): its tables are not what they have to be.
 */
sys::Status checkSchema(Connection& connection);

/** checkStructure has SQLite examine every page. ZELKM_ERR_DATABASE_CORRUPTION (18). */
sys::Status checkStructure(Connection& connection);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_SCHEMA_H_
