#ifndef ZEL_KM_WORK_ISSUER_ENTRIES_H_
#define ZEL_KM_WORK_ISSUER_ENTRIES_H_

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::km {

/** Whether an entry of the store has this very certificate. */
sys::Result<bool> hasCertificate(Store& store, const sys::Bytes& certificate);

/**
 * addIssuer keeps a certificate that came along with another, under a label made from its subject,
 * unless the store has it; a token hands it to its secondary key database. It is not trusted:
 * whoever sent it may have invented it.
 */
sys::Status addIssuer(Store& store, const sys::Bytes& certificate);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_ISSUER_ENTRIES_H_
