// One entry of a token, read or deleted by its label.

#include "bridge/frame/gate.h"
#include "bridge/keydb/entries_by_label.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "bridge/token/with_token.h"
#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"

using namespace zel::bridge;

// A wrong password reads as null here, like a label that the token does not have.
jobject Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1GetKeyItemByLabel(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jboolean isRequestKey) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel)) return nullptr;
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  jobject keyItem = nullptr;
  withToken(token, [&](int handle) {
    keyItem = getJavaKeyItemByLabel(env, handle, label, isRequestKey);
    return ZELKM_OK;
  });
  held.releaseAll();
  return keyItem;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1DeleteKeyItemByLabel(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jboolean isRequestKey) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const int rc =
      withToken(token, [&](int handle) { return deleteKeyByLabel(handle, label, isRequestKey); });
  held.releaseAll();
  return rc;
}
