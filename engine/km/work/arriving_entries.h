#ifndef ZEL_KM_WORK_ARRIVING_ENTRIES_H_
#define ZEL_KM_WORK_ARRIVING_ENTRIES_H_

#include <string>

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Entries that arrive with others, or out of files of other programs: nobody has chosen a label for
 * them that fits this store.
 */

namespace zel::km {

/** Whether an entry of the store has this very certificate. */
sys::Result<bool> hasCertificate(KeyEntries& store, const sys::Bytes& certificate);

/**
 * insertNamed inserts an entry under a label made of its name (real UTF-8), or of its subject when
 * the name is empty; numbered when a key of the store has that label. The entry's own label is
 * passed over.
 */
sys::Status insertNamed(Store& store, const std::string& name, KeyEntry entry);

/**
 * addIssuer keeps a certificate that came along with another, unless the store has it; a token
 * hands it to its secondary key database. It is not trusted: whoever sent it may have invented it.
 */
sys::Status addIssuer(Store& store, const sys::Bytes& certificate);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_ARRIVING_ENTRIES_H_
