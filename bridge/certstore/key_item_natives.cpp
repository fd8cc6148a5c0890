// Entries of a certificate store, read or deleted. Every failure of a reader reads as null.

#include <cstdlib>

#include "bridge/certstore/with_store.h"
#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/keydb/entries_by_label.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/key_items.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"

using namespace zel::bridge;

jobject Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetKeyItemByLabel(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jstring keyLabel) {
  if (lacksAny(env, self, keyLabel)) return nullptr;
  HeldStrings held(env);
  const Store store = takeStore(held, cspName, password);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  jobject keyItem = nullptr;
  withStore(store, [&](int handle) {
    keyItem = getJavaKeyItemByLabel(env, handle, label, JNI_FALSE);
    return ZELKM_OK;
  });
  held.releaseAll();
  return keyItem;
}

// A null label is not tested for here, and reaches the virtual machine as it is.
jobjectArray Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetKeyItemListByLabel(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jstring keyLabel) {
  if (lacksClass(env, self)) return nullptr;
  HeldStrings held(env);
  const Store store = takeStore(held, cspName, password);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  jobjectArray keyItems = nullptr;
  withStore(store, [&](int handle) {
    ZELKMKeyItemList* list = nullptr;
    const int rc = ZELKM_GetKeyItemListByLabel(handle, label, &list);
    traceMessage("JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets %s\n", nullOrNot(list));
    keyItems = handOverKeyItems(env, kBasicItems, list, rc);
    return rc;
  });
  held.releaseAll();
  return keyItems;
}

jobjectArray Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetKeyItemsByPublicKey(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jint publicKeyLength,
    jbyteArray publicKey) {
  if (lacksClass(env, self)) return nullptr;
  HeldStrings held(env);
  const Store store = takeStoreTracedAsToken(held, cspName, password);
  unsigned char* keyBytes = nullptr;
  JavaByteArrayToUChar(env, publicKey, publicKeyLength, &keyBytes);
  if (keyBytes == nullptr) {
    held.leaveHeld();
    return nullptr;
  }

  jobjectArray keyItems = nullptr;
  withStore(store, [&](int handle) {
    ZELKMKeyItemList* list = nullptr;
    const int rc = ZELKM_GetKeyItemsByPublicKey(handle, static_cast<uint32_t>(publicKeyLength),
                                                keyBytes, &list);
    traceMessage("JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets %s\n", nullOrNot(list));
    keyItems = handOverKeyItems(env, kBasicItems, list, rc);
    return rc;
  });
  held.releaseAll();
  std::free(keyBytes);
  return keyItems;
}

jint Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1DeleteKeyItemByLabel(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jstring keyLabel) {
  if (lacksAny(env, self, keyLabel)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Store store = takeStore(held, cspName, password);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const int rc =
      withStore(store, [&](int handle) { return deleteKeyByLabel(handle, label, JNI_FALSE); });
  held.releaseAll();
  return rc;
}
