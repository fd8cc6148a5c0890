#include "bridge/keydb/key_item_lists.h"

#include <cstdlib>

#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/key_items.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"

namespace zel::bridge {

jobjectArray getKeyItemListByLabel(JNIEnv* env, jobject self, const ItemClasses& classes,
                                   jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel) {
  if (lacksClass(env, self)) return nullptr;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  jobjectArray keyItems = nullptr;
  withKeyDb(file, pwd, [&](int handle) {
    ZELKMKeyItemList* list = nullptr;
    const int rc = ZELKM_GetKeyItemListByLabel(handle, label, &list);
    traceMessage("JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets %s\n", nullOrNot(list));
    keyItems = handOverKeyItems(env, classes, list, rc);
    return rc;
  });
  held.releaseAll();
  return keyItems;
}

jobjectArray getKeyItemsByPublicKey(JNIEnv* env, jobject self, const ItemClasses& classes,
                                    jstring keyDbFileName, jstring keyDbPwd, jint publicKeyLength,
                                    jbyteArray publicKey) {
  if (lacksClass(env, self)) return nullptr;
  if (publicKeyLength < 1) return nullptr;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  unsigned char* keyBytes = nullptr;
  JavaByteArrayToUChar(env, publicKey, publicKeyLength, &keyBytes);
  if (keyBytes == nullptr) {
    held.leaveHeld();
    return nullptr;
  }

  jobjectArray keyItems = nullptr;
  withKeyDb(file, pwd, [&](int handle) {
    ZELKMKeyItemList* list = nullptr;
    const int rc = ZELKM_GetKeyItemsByPublicKey(handle, static_cast<uint32_t>(publicKeyLength),
                                                keyBytes, &list);
    traceMessage("JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets %s\n", nullOrNot(list));
    keyItems = handOverKeyItems(env, classes, list, rc);
    return rc;
  });
  held.releaseAll();
  std::free(keyBytes);
  return keyItems;
}

}  // namespace zel::bridge
