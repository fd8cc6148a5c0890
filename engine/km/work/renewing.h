#ifndef ZEL_KM_WORK_RENEWING_H_
#define ZEL_KM_WORK_RENEWING_H_

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Renewal: another certificate for the subject and the key of entries. It renews an entry whose
 * certificate is not this one and did not begin later.
 */

namespace zel::km {

/** Whether the certificate (DER) renews any entry. */
sys::Result<bool> isRenewal(KeyEntries& store, sys::ByteView certificate);

/**
 * renew gives the certificate (DER) to all entries that it renews. When there is none:
 *  - ZELKM_ERR_KEY_GET_BY_LABEL (117): no entry has its subject and key.
 *  - ZELKM_ERR_DATABASE_DUPLICATE_KEY: they have it already.
 *  - ZELKM_ERR_VALIDATION_KEY_VALIDITY: theirs began later.
 */
sys::Status renew(Store& store, sys::ByteView certificate);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_RENEWING_H_
