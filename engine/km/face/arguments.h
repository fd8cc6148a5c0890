#ifndef ZEL_KM_FACE_ARGUMENTS_H_
#define ZEL_KM_FACE_ARGUMENTS_H_

#include <optional>
#include <string>

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Arguments of the C interface as the engine wants them: text that leaves the interface, to a file
 * system or into a key derivation, becomes real UTF-8.
 */

namespace zel::km {

/** ZELKM_ERR_FILENAME_NULL (85) for no name, ZELKM_ERR_PARAMETER (65) for text that is none. */
sys::Result<std::string> fileNameArgument(const char* fileName);

/** ZELKM_ERR_NULL_PARAMETER (66) for null, ZELKM_ERR_PARAMETER (65) for text that is none. */
sys::Result<sys::SecretBytes> passwordArgument(const char* password);

/**
 * Null stands for the password of the stash file, and so does the empty one, since no password is
 * empty: Java cannot pass null. ZELKM_ERR_PARAMETER (65) for text that is none.
 */
sys::Result<std::optional<sys::SecretBytes>> passwordOrStash(const char* password);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ARGUMENTS_H_
