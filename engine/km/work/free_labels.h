#ifndef ZEL_KM_WORK_FREE_LABELS_H_
#define ZEL_KM_WORK_FREE_LABELS_H_

#include "engine/km/store/store.h"
#include "engine/sys/result.h"
#include "engine/sys/trace.h"

/**
 * @file
 * Finding out that a label is in use before a key is made for it, which takes long:
 *
 *     if (Status isFree = requireFree(label, store.findKey(label)); !isFree) return isFree;
 */

namespace zel::km {

/**
 * requireFree judges by the search for a label among keys or among requests.
 * ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23) when it found an entry, and the codes of the search.
 */
template <typename Entry>
sys::Status requireFree(const Label& label, const sys::Result<Entry>& found) {
  if (found) {
    return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                     label.c_str());
  }
  return found.code() == ZELKM_ERR_KEY_GET_BY_LABEL ? sys::success() : found.failure();
}

}  // namespace zel::km

#endif  // ZEL_KM_WORK_FREE_LABELS_H_
