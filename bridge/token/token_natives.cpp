// What can be asked of a token without opening it.

#include <cstring>

#include "bridge/frame/gate.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/label_walk.h"
#include "bridge/marshal/token_labels.h"
#include "bridge/token/with_token.h"
#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"

using namespace zel::bridge;

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1GetCryptoTokenLabelList(
    JNIEnv* env, jclass type, jstring moduleName) {
  if (lacksAny(env, type, moduleName)) return ZELKM_ERR_PARAMETER;
  jmethodID addTokenLabel = staticLabelCallback(env, type, "addTokenLabel");
  if (addTokenLabel == nullptr) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* module = held.take(moduleName, kTraceModuleName);
  const int rc = deliverTokenLabels(env, type, addTokenLabel, module);
  held.releaseAll();
  return rc;
}

// Nothing but false tells a null argument or a failure from a token that needs no password.
jboolean Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1IsPasswordRequired(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel) {
  if (lacksAny(env, self, moduleName, tokenLabel)) return JNI_FALSE;
  HeldStrings held(env);
  const char* module = held.take(moduleName, kTraceModuleName);
  const char* label = held.take(tokenLabel, kTraceTokenLabel);
  KeyDbLocator locator;
  std::memset(&locator, 0, KEYDB_LOCATOR_QUERY_EXTENT);
  locator.type = KEYDB_LOCATOR_TOKEN;
  locator.moduleName = module;
  locator.tokenLabel = label;
  unsigned char required = 0;
  const int rc = ZELKM_IsPasswordRequired(&locator, &required);
  held.releaseAll();
  return static_cast<jboolean>(rc == ZELKM_OK && required == 1);
}

// Here alone a token's password must be given.
jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ChangeKeyDbPwd(JNIEnv* env, jobject self,
                                                                         jstring moduleName,
                                                                         jstring tokenLabel,
                                                                         jstring oldPassword,
                                                                         jstring newPassword) {
  if (lacksAny(env, self, moduleName, tokenLabel, oldPassword, newPassword)) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const char* module = held.take(moduleName, kTraceModuleName);
  const char* label = held.take(tokenLabel, kTraceTokenLabel);
  const char* oldPwd =
      held.take(oldPassword, TextTrace{"JNI_DEBUG......cCryptographicTokenOldPassword = %s\n"});
  const char* newPwd =
      held.take(newPassword, TextTrace{"JNI_DEBUG......cCryptographicTokenNewPassword = %s\n"});
  KeyDbLocator locator;
  std::memset(&locator, 0, KEYDB_LOCATOR_CHANGE_EXTENT);
  locator.type = KEYDB_LOCATOR_TOKEN;
  locator.moduleName = module;
  locator.tokenLabel = label;
  locator.password = oldPwd;
  locator.newPassword = newPwd;
  const int rc = ZELKM_ChangeKeyDbPwdX(&locator);
  held.releaseAll();
  return rc;
}
