#ifndef ZEL_KM_WORK_VALIDATING_H_
#define ZEL_KM_WORK_VALIDATING_H_

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Whether a store trusts a certificate.
 */

namespace zel::km {

/**
 * validate looks for a way from a certificate (DER) to an entry that is trusted, which may be its
 * own, over the other entries of the store. The codes of cms::validateChain.
 */
sys::Status validate(KeyEntries& store, sys::ByteView certificate);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_VALIDATING_H_
