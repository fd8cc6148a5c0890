#ifndef ZEL_KM_FACE_ITEM_KEYS_H_
#define ZEL_KM_FACE_ITEM_KEYS_H_

#include <vector>

#include "engine/km/face/item_ptr.h"
#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Key entries as records of the C interface.
 */

namespace zel::km {

/**
 * The entry with its chain. A private key that does not leave its store is present without an
 * EncryptedPrivateKeyInfo.
 */
sys::Result<KeyItemPtr> handOutKey(Store& store, const KeyEntry& entry);

/** The entries as a list, in their order. ZELKM_ERR_KEY_GET_BY_LABEL (117) when there is none. */
sys::Result<KeyItemListPtr> handOutKeys(Store& store, const std::vector<KeyEntry>& entries);

/** A private key as the store encrypts it; null when it does not leave the store. */
sys::Result<EpkiItemPtr> handOutEncryptedKey(PrivateKeys& store, const PrivateKey& key);

/** Encrypted bytes as a record. */
EpkiItemPtr handOutEpki(sys::ByteView encrypted);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ITEM_KEYS_H_
