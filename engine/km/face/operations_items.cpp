#include "bridge/kmlib/zelkm.h"
#include "engine/cms/keys.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_keys.h"
#include "engine/km/face/operation.h"

// Reading key entries.

using namespace zel;
using namespace zel::km;

namespace {

// Entries are handed out with their chains, which are to be of the same moment: in a snapshot.

/** Hands an entry out through the caller's variable. */
sys::Status answerKey(Store& store, const sys::Result<KeyEntry>& entry, ZELKMKeyItem** out) {
  if (!entry) return entry.failure();
  sys::Result<KeyItemPtr> item = handOutKey(store, entry.value());
  if (!item) return item.failure();
  *out = item.value().release();
  return sys::success();
}

sys::Status answerKeys(Store& store, const std::vector<KeyEntry>& entries, ZELKMKeyItemList** out) {
  sys::Result<KeyItemListPtr> list = handOutKeys(store, entries);
  if (!list) return list.failure();
  *out = list.value().release();
  return sys::success();
}

}  // namespace

int ZELKM_GetKeyItemByLabel(int handle, const char* label, ZELKMKeyItem** item) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(item); !given) return given;
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    return store.inSnapshot([&] { return answerKey(store, store.findKey(wanted.value()), item); });
  });
}

int ZELKM_GetKeyItemListByLabel(int handle, const char* label, ZELKMKeyItemList** list) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(list); !given) return given;
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    return store.inSnapshot([&]() -> sys::Status {
      sys::Result<KeyEntry> entry = store.findKey(wanted.value());
      if (!entry) return entry.failure();
      std::vector<KeyEntry> entries;
      entries.push_back(std::move(entry).value());
      return answerKeys(store, entries, list);
    });
  });
}

int ZELKM_GetKeyItemsByPublicKey(int handle, uint32_t keyLength, const unsigned char* keyBytes,
                                 ZELKMKeyItemList** list) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(list); !given) return given;
    const sys::Result<sys::ByteView> publicKey = bytesArgument(keyBytes, keyLength);
    if (!publicKey) return publicKey.failure();
    const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(publicKey.value());
    if (!traits) return traits.failure();
    return store.inSnapshot([&]() -> sys::Status {
      const sys::Result<std::vector<KeyEntry>> entries =
          store.findKeysByPublicKey(publicKey.value());
      if (!entries) return entries.failure();
      return answerKeys(store, entries.value(), list);
    });
  });
}

int ZELKM_GetDefaultKeyItem(int handle, ZELKMKeyItem** item) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(item); !given) return given;
    return store.inSnapshot([&] { return answerKey(store, store.defaultKey(), item); });
  });
}

int ZELKM_IsPrivateKeyPresent(int handle, const char* label, unsigned char* present) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(present); !given) return given;
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<KeyEntry> entry = store.findKey(wanted.value());
    if (!entry) return entry.failure();
    *present = entry.value().privateKey.present() ? 1 : 0;
    return sys::success();
  });
}
