#ifndef ZEL_SYS_FILES_H_
#define ZEL_SYS_FILES_H_

#include <cstddef>
#include <string>

#include "engine/sys/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/draft.h"
#include "engine/sys/result.h"

/**
 * @file
 * Whole files, read and written. Key databases are not among them: those are opened by SQLite
 * alone, because closing any other descriptor on such a file drops SQLite's locks on it.
 *
 *     Result<Bytes> request = readFile(name, kLargestRequest);
 *     Status written = writeFile(name, certificate, FileAccess::everybody);
 *
 * Names are real UTF-8. Codes: ZELKM_ERR_FILENAME_NULL (85) for an empty name,
 * ZELKM_ERR_FILE_OPEN_NOT_EXIST (89), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90),
 * ZELKM_ERR_FILE_OPEN_TO_READ (87), ZELKM_ERR_FILE_OPEN_TO_WRITE (88), ZELKM_ERR_FILE_WRITE (91),
 * and ZELKM_ERR_IO (74) for what fails while reading or is longer than allowed.
 */

namespace zel::sys {

/** readFile reads a file of at most the given number of bytes. */
ZEL_SYS_API Result<Bytes> readFile(const std::string& name, std::size_t most);

/** readSecretFile is readFile for secrets; the bytes are wiped with their last copy. */
ZEL_SYS_API Result<SecretBytes> readSecretFile(const std::string& name, std::size_t most);

/**
 * readOwnSecretFile is readSecretFile for a file that must be the user's (or root's) and readable
 * by its owner alone. ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90) when it is not.
 */
ZEL_SYS_API Result<SecretBytes> readOwnSecretFile(const std::string& name, std::size_t most);

/**
 * readOwnFile is readSecretFile for a file that must be the user's (or root's), writable by nobody
 * outside its group, and no symbolic link. ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90) when it is not.
 */
ZEL_SYS_API Result<SecretBytes> readOwnFile(const std::string& name, std::size_t most);

/**
 * writeFile puts the bytes in the place of what the name stood for: after a crash there is either
 * the old file or the new one. What is no regular file (a pipe, a terminal) is written into.
 */
ZEL_SYS_API Status writeFile(const std::string& name, ByteView bytes, FileAccess access);

/**
 * writeNewFile is writeFile for a name that nothing has yet: the file has it only once it is whole.
 * ZELKM_ERR_DATABASE_ALREADY_EXISTS (9) when the name is taken.
 */
ZEL_SYS_API Status writeNewFile(const std::string& name, ByteView bytes, FileAccess access);

/** removeFile removes a file for good; one that is not there is removed already. */
ZEL_SYS_API Status removeFile(const std::string& name);

/** setModificationTime sets when a file was last written to, in nanoseconds since 1970. */
ZEL_SYS_API Status setModificationTime(const std::string& name, std::int64_t nanoseconds);

}  // namespace zel::sys

#endif  // ZEL_SYS_FILES_H_
