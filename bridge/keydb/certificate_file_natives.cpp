// Certificates and requests between a key database and files.

#include "bridge/frame/gate.h"
#include "bridge/keydb/certificate_file.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

// Here and in c_AddCaCert, unlike in withCertFile, the buffer is freed after a failed reading too.
jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ReceiveCert(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring certFileName,
    jboolean isBase64, jboolean flag) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  unsigned char* buffer = nullptr;
  uint32_t length = 0;
  int rc = readCertFileToBuf(certFile, isBase64, &buffer, &length);
  if (rc == ZELKM_OK) {
    rc = withKeyDb(file, pwd,
                   [&](int handle) { return ZELKM_ReceiveCert(handle, buffer, length, flag); });
  }
  if (length != 0 && buffer != nullptr) ZELKM_Free(buffer);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1AddCaCert(JNIEnv* env, jobject self,
                                                                jstring keyDbFileName,
                                                                jstring keyDbPwd, jstring keyLabel,
                                                                jstring certFileName,
                                                                jboolean isBase64) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  unsigned char* buffer = nullptr;
  uint32_t length = 0;
  int rc = readCertFileToBuf(certFile, isBase64, &buffer, &length);
  if (rc == ZELKM_OK) {
    rc = withKeyDb(file, pwd,
                   [&](int handle) { return ZELKM_StoreCACert(handle, buffer, length, label); });
  }
  if (length != 0 && buffer != nullptr) ZELKM_Free(buffer);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCert(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jstring certFileName, jboolean flag) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  const int rc = withKeyDb(
      file, pwd, [&](int handle) { return ZELKM_ExportCert(handle, label, certFile, flag); });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCertReq(JNIEnv* env, jobject self,
                                                                     jstring keyDbFileName,
                                                                     jstring keyDbPwd,
                                                                     jstring keyLabel,
                                                                     jstring certReqFileName) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.take(certReqFileName, kTraceCertReqFileName);
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    return ZELKM_ReCreateCertReq(handle, label, certReqFile, 0, 0);
  });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCertReqSig(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jint sigAlg, jstring certReqFileName) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  if (!isSignatureAlgorithm(sigAlg)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.take(certReqFileName, kTraceCertReqFileName);
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    return ZELKM_ReCreateCertReqSig(handle, label, sigAlg, certReqFile, 0, 0);
  });
  held.releaseAll();
  return rc;
}
