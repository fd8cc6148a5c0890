#ifndef ZEL_SYS_MEMORY_H_
#define ZEL_SYS_MEMORY_H_

#include <cstddef>
#include <string_view>

#include "engine/sys/api.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * What is handed out over the C interface. All of it comes from malloc, because its receivers
 * release it with free and with ZELKM_Free alike. Inside the engine nothing else uses malloc.
 *
 * Exhausted memory is std::bad_alloc here as everywhere in the engine.
 */

namespace zel::sys {

/** A NUL-terminated copy of the text; the caller releases it with free. */
ZEL_SYS_API char* handOutText(std::string_view text);

/** A copy of the bytes, null when there are none; the caller releases it with free. */
ZEL_SYS_API unsigned char* handOutBytes(ByteView bytes);

/** A zero-filled record of the C interface; the caller releases it with free. */
ZEL_SYS_API void* handOutZeroed(std::size_t size);

/** A zero-filled record of type T: `auto* item = handOutRecord<ZELKMKeyItem>();`. */
template <typename T>
T* handOutRecord() {
  return static_cast<T*>(handOutZeroed(sizeof(T)));
}

}  // namespace zel::sys

#endif  // ZEL_SYS_MEMORY_H_
