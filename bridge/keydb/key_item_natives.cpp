// Read key items of a key database. Every failure reads as null or false: no code reaches Java.

#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/keydb/entries_by_label.h"
#include "bridge/keydb/key_item_lists.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/key_items.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

jobject Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemByLabel(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jboolean isRequestKey) {
  if (lacksClass(env, self)) return nullptr;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  jobject keyItem = nullptr;
  withKeyDb(file, pwd, [&](int handle) {
    keyItem = getJavaKeyItemByLabel(env, handle, label, isRequestKey);
    return ZELKM_OK;
  });
  held.releaseAll();
  return keyItem;
}

jobjectArray Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemListByLabel(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel) {
  return getKeyItemListByLabel(env, self, kBasicItems, keyDbFileName, keyDbPwd, keyLabel);
}

jobjectArray Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemsByPublicKey(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jint publicKeyLength,
    jbyteArray publicKey) {
  return getKeyItemsByPublicKey(env, self, kBasicItems, keyDbFileName, keyDbPwd, publicKeyLength,
                                publicKey);
}

jobject Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetDefaultKeyItem(JNIEnv* env,
                                                                           jobject self,
                                                                           jstring keyDbFileName,
                                                                           jstring keyDbPwd) {
  if (lacksClass(env, self)) return nullptr;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  ZELKMKeyItem* item = nullptr;
  withKeyDb(file, pwd, [&](int handle) { return ZELKM_GetDefaultKeyItem(handle, &item); });

  // The item outlives its database's close, and the trace speaks of it even after a failed open.
  traceMessage("JNI_DEBUG......ZELKM_GetDefaultKeyItem gets %s\n", nullOrNot(item));
  jobject keyItem = handOverKeyItem(env, kBasicItems, item);
  held.releaseAll();
  return keyItem;
}

jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IsPrivateKeyPresent(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel) {
  if (lacksClass(env, self)) return JNI_FALSE;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  unsigned char present = 0;
  withKeyDb(file, pwd,
            [&](int handle) { return ZELKM_IsPrivateKeyPresent(handle, label, &present); });
  held.releaseAll();
  return static_cast<jboolean>(present == 1);
}
