// Read key items of a key database as objects of the legacy package.

#include "bridge/frame/gate.h"
#include "bridge/keydb/entries_by_label.h"
#include "bridge/keydb/key_item_lists.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/legacy/legacy_items.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"

using namespace zel::bridge;

// The legacy package has no class for requests, so the last argument is never looked at: the label
// of a request gives null.
jobject Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemByLabel(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jboolean /*isRequestKey*/) {
  if (lacksClass(env, self)) return nullptr;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  jobject keyItem = nullptr;
  withKeyDb(file, pwd, [&](int handle) {
    keyItem = getJavaKeyItem(env, kLegacyItems, handle, label);
    return ZELKM_OK;
  });
  held.releaseAll();
  return keyItem;
}

jobjectArray Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemListByLabel(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel) {
  return getKeyItemListByLabel(env, self, kLegacyItems, keyDbFileName, keyDbPwd, keyLabel);
}

jobjectArray Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemsByPublicKey(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jint publicKeyLength,
    jbyteArray publicKey) {
  return getKeyItemsByPublicKey(env, self, kLegacyItems, keyDbFileName, keyDbPwd, publicKeyLength,
                                publicKey);
}
