#ifndef ZEL_KM_KEYDB_OUTPUT_FILES_H_
#define ZEL_KM_KEYDB_OUTPUT_FILES_H_

#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/files.h"
#include "engine/sys/result.h"

/**
 * @file
 * The files that operations write. They take the place of older ones, but never of a key database:
 * one slip in a file's name would cost all its keys.
 */

namespace zel::km {

/** ZELKM_ERR_DATABASE_ALREADY_EXISTS (9) when the name is that of a key database. */
sys::Status checkIsNoKeyDatabase(const sys::FileName& name);

/** sys::writeFile, and its codes, after checkIsNoKeyDatabase. */
sys::Status writeOutput(const sys::FileName& name, sys::ByteView bytes, sys::FileAccess access);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_OUTPUT_FILES_H_
