// Create, open, re-password and stash a key database file.

#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

namespace {

constexpr jlong kMillisecondsPerSecond = 1000;

/**
 * openAndCloseAgain is the frame of the natives that only want to know whether a database opens or
 * can be created: none of them keeps it open. A zero handle is not closed.
 */
template <typename Open>
jint openAndCloseAgain(JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd,
                       Open&& open) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  int handle = 0;
  const int rc = open(file, pwd, &handle);
  if (rc == ZELKM_OK && handle != 0) ZELKM_CloseKeyDb(handle);
  held.releaseAll();
  return rc;
}

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewKeyDb(JNIEnv* env, jobject self,
                                                                     jstring keyDbFileName,
                                                                     jstring keyDbPwd,
                                                                     jlong expireTime) {
  return openAndCloseAgain(
      env, self, keyDbFileName, keyDbPwd, [&](const char* file, const char* pwd, int* handle) {
        return ZELKM_CreateNewKeyDb(file, pwd, expireTime / kMillisecondsPerSecond, handle);
      });
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewKeyDbFIPS(JNIEnv* env, jobject self,
                                                                         jstring keyDbFileName,
                                                                         jstring keyDbPwd,
                                                                         jlong expireTime) {
  return openAndCloseAgain(
      env, self, keyDbFileName, keyDbPwd, [&](const char* file, const char* pwd, int* handle) {
        return ZELKM_CreateNewKeyDbFIPS(file, pwd, expireTime / kMillisecondsPerSecond, handle);
      });
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1OpenKeyDb(JNIEnv* env, jobject self,
                                                                jstring keyDbFileName,
                                                                jstring keyDbPwd) {
  return openAndCloseAgain(env, self, keyDbFileName, keyDbPwd, ZELKM_OpenKeyDb);
}

jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ChangeKeyDbPwd(JNIEnv* env, jobject self,
                                                                         jstring keyDbFileName,
                                                                         jstring oldPwd,
                                                                         jstring newPwd,
                                                                         jlong expireTime) {
  traceMessage("JNI_DEBUG......c_ChangeKeyDbPwd......\n");
  if (lacksClass(env, self)) return JNI_FALSE;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* oldKeyDbPwd = held.take(oldPwd, TextTrace{"JNI_DEBUG......cOldKeyDbPwd = %s\n"});
  const char* newKeyDbPwd = held.take(newPwd, TextTrace{"JNI_DEBUG......cNewKeyDbPwd = %s\n"});
  const int rc =
      ZELKM_ChangeKeyDbPwd(file, oldKeyDbPwd, newKeyDbPwd, expireTime / kMillisecondsPerSecond);
  held.releaseAll();
  return static_cast<jboolean>(rc == ZELKM_OK);
}

jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1StashKeyDbPwd(JNIEnv* env, jobject self,
                                                                        jstring keyDbFileName,
                                                                        jstring keyDbPwd) {
  traceMessage("JNI_DEBUG......c_StashKeyDbPwd......\n");
  if (lacksAny(env, self)) return JNI_FALSE;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const int rc = ZELKM_StashKeyDbPwd(file, pwd);
  held.releaseAll();
  return static_cast<jboolean>(rc == ZELKM_OK);
}
