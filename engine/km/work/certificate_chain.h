#ifndef ZEL_KM_WORK_CERTIFICATE_CHAIN_H_
#define ZEL_KM_WORK_CERTIFICATE_CHAIN_H_

#include <vector>

#include "engine/km/store/store.h"
#include "engine/sys/result.h"

namespace zel::km {

/**
 * chainOf answers the entry's certificate and its issuers as far as the store has them, each with
 * the label of its entry (cms/chains.h tells which issuers count).
 */
sys::Result<std::vector<LabelledCertificate>> chainOf(KeyEntries& store, const KeyEntry& entry);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_CERTIFICATE_CHAIN_H_
