// Convert between key databases and key ring files. The library opens both.

#include "bridge/frame/gate.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

namespace {

constexpr TextTrace kTraceKyrFileName{"JNI_DEBUG......cKyrFileName = %s\n"};
constexpr TextTrace kTraceKyrPwd{"JNI_DEBUG......cKyrPwd = %s\n"};

}  // namespace

// Java names the key ring first; the key database's strings are acquired first all the same.
jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1Kyr2Kdb(JNIEnv* env, jobject self,
                                                              jstring kyrFileName, jstring kyrPwd,
                                                              jstring keyDbFileName,
                                                              jstring keyDbPwd) {
  if (lacksAny(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* kyrFile = held.take(kyrFileName, kTraceKyrFileName);
  const char* kyrFilePwd = held.take(kyrPwd, kTraceKyrPwd);
  const int rc = ZELKM_Kyr2Kdb(kyrFile, kyrFilePwd, file, pwd);
  held.releaseInOrder({kyrFile, kyrFilePwd, file, pwd});
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1Kdb2Kyr(JNIEnv* env, jobject self,
                                                              jstring keyDbFileName,
                                                              jstring keyDbPwd, jstring kyrFileName,
                                                              jstring kyrPwd) {
  if (lacksAny(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* kyrFile = held.take(kyrFileName, kTraceKyrFileName);
  const char* kyrFilePwd = held.take(kyrPwd, kTraceKyrPwd);
  const int rc = ZELKM_Kdb2Kyr(file, pwd, kyrFile, kyrFilePwd);
  held.releaseInOrder({kyrFile, kyrFilePwd, file, pwd});
  return rc;
}
