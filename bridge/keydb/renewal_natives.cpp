// Renew a certificate, and validate a chain, against a key database.

#include <cstdlib>

#include "bridge/frame/gate.h"
#include "bridge/frame/stated_leaks.h"
#include "bridge/frame/trace.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

// Its traces have numbers of their own, and its answer is the library's byte as it stands.
jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CheckCertAsRenewal(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jint certLength,
    jbyteArray certData) {
  if (lacksAny(env, self)) return JNI_FALSE;
  HeldStrings held(env);
  const char* file = held.take(
      keyDbFileName, TextTrace{"CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = %s\n"});
  const char* pwd =
      held.take(keyDbPwd, TextTrace{"CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = %s\n"});
  unsigned char* cert = nullptr;
  JavaByteArrayToUChar(env, certData, certLength, &cert);
  traceMessage("CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = %.*s\n",
               bytesShown(cert, certLength), bytesAsText(cert));
  unsigned char isRenewal = 0;
  withKeyDb(file, pwd, [&](int handle) {
    const int rc =
        ZELKM_CheckCertAsRenewal(handle, cert, static_cast<uint32_t>(certLength), &isRenewal);
    traceMessage(
        "CMSKeyDatabase::c_CheckCertAsRenewal 0100, after calling ZELKM_CheckCertAsRenewal, jrc=%d\n",
        rc);
    return rc;
  });
  leaveAllocated(cert);
  held.releaseAll();
  return isRenewal;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1RenewCert(JNIEnv* env, jobject self,
                                                                jstring keyDbFileName,
                                                                jstring keyDbPwd, jint certLength,
                                                                jbyteArray certData) {
  if (lacksAny(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  unsigned char* cert = nullptr;
  JavaByteArrayToUChar(env, certData, certLength, &cert);
  traceMessage("JNI_DEBUG......Renew CertData = %.*s\n", bytesShown(cert, certLength),
               bytesAsText(cert));
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    return ZELKM_RenewCert(handle, cert, static_cast<uint32_t>(certLength));
  });
  leaveAllocated(cert);
  held.releaseAll();
  return rc;
}

// The database is not closed, so there is no withKeyDb here.
jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ValidateCertificateChain(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jbyteArray certData,
    jint certLength) {
  traceMessage("JNI_DEBUG......c_ValidateCertificateChain......\n");
  if (lacksClass(env, self)) return JNI_FALSE;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  unsigned char* cert = nullptr;
  JavaByteArrayToUChar(env, certData, certLength, &cert);
  if (cert == nullptr) {
    held.leaveHeld();
    return JNI_FALSE;
  }

  unsigned char isValid = 0;
  int handle = 0;
  if (ZELKM_OpenKeyDb(file, pwd, &handle) == ZELKM_OK) {
    const int rc =
        ZELKM_ValidateCertChain(handle, cert, static_cast<uint32_t>(certLength), &isValid);
    traceMessage("JNI_DEBUG......c_ValidateCertificateChain() = %d\n", rc);
    leaveOpen(handle);
  }
  held.releaseAll();
  std::free(cert);
  return static_cast<jboolean>(isValid == 1);
}
