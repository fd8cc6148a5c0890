#ifndef ZEL_KM_FACE_OPERATION_H_
#define ZEL_KM_FACE_OPERATION_H_

#include <new>

#include "engine/km/face/handle_table.h"
#include "engine/km/store/store.h"
#include "engine/sys/trace.h"

/**
 * @file
 * How an operation of the C interface is written: its body answers a Status, and whatever happens
 * in it becomes a result code.
 *
 *     int ZELKM_DeleteKey(int handle, const char* label) {
 *       return onStore(__func__, handle, [&](Store& store) -> sys::Status {
 *         const sys::Result<Label> wanted = labelArgument(label);
 *         return wanted ? store.removeKey(wanted.value()) : wanted.failure();
 *       });
 *     }
 *
 * Outputs are written last, when nothing can fail any more.
 */

namespace zel::km {

/** answering runs a body that needs no open store. */
template <typename Body>
int answering(const char* operation, Body&& body) noexcept {
  int code = ZELKM_ERR_UNKNOWN;
  try {
    sys::Status status = body();
    code = status.code();
    if (code != ZELKM_OK) sys::traceLine("%s answers %d", operation, code);
  } catch (const std::bad_alloc&) {
    code = ZELKM_ERR_MEMORY_ALLOCATE;
  } catch (...) {
    code = ZELKM_ERR_UNKNOWN;
  }
  return code;
}

/**
 * onStore runs a body on the store that the handle names, alone on that store for as long as it
 * runs. ZELKM_ERR_INVALID_DB_HANDLE (100) when the handle names none.
 */
template <typename Body>
int onStore(const char* operation, int handle, Body&& body) noexcept {
  return answering(operation, [&]() -> sys::Status {
    sys::Result<OpenStore> open = HandleTable::instance().borrow(handle);
    if (!open) return open.failure();
    return body(open.value().store());
  });
}

}  // namespace zel::km

#endif  // ZEL_KM_FACE_OPERATION_H_
