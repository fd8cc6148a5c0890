// Reading key entries.

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/keys.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_keys.h"
#include "engine/km/face/operation.h"

using namespace zel;
using namespace zel::km;

namespace {

/** Looks an entry up and makes its record, chain included, of the store as it is at one moment. */
template <typename Find>
sys::Status answerKey(Store& store, Find find, ZELKMKeyItem** out) {
  sys::Result<KeyItemPtr> item = inSnapshot(store, [&]() -> sys::Result<KeyItemPtr> {
    const sys::Result<KeyEntry> entry = find();
    if (!entry) return entry.failure();
    return handOutKey(store, entry.value());
  });
  if (!item) return item.failure();
  *out = item.value().release();
  return sys::success();
}

/** As answerKey, for the entries that are found. */
template <typename Find>
sys::Status answerKeys(Store& store, Find find, ZELKMKeyItemList** out) {
  sys::Result<KeyItemListPtr> list = inSnapshot(store, [&]() -> sys::Result<KeyItemListPtr> {
    const sys::Result<std::vector<KeyEntry>> entries = find();
    if (!entries) return entries.failure();
    return handOutKeys(store, entries.value());
  });
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
    return answerKey(
        store, [&] { return store.findKey(wanted.value()); }, item);
  });
}

int ZELKM_GetKeyItemListByLabel(int handle, const char* label, ZELKMKeyItemList** list) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(list); !given) return given;
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const auto find = [&]() -> sys::Result<std::vector<KeyEntry>> {
      sys::Result<KeyEntry> entry = store.findKey(wanted.value());
      if (!entry) return entry.failure();
      std::vector<KeyEntry> entries;
      entries.push_back(std::move(entry).value());
      return entries;
    };
    return answerKeys(store, find, list);
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
    return answerKeys(
        store, [&] { return store.findKeysByPublicKey(publicKey.value()); }, list);
  });
}

int ZELKM_GetDefaultKeyItem(int handle, ZELKMKeyItem** item) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(item); !given) return given;
    return answerKey(
        store, [&] { return store.defaultKey(); }, item);
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
