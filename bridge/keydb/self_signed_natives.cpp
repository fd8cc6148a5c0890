// Self-signed certificates: the library makes the key pair, the certificate and, on request, a
// file.

#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewSelfSignedCertificate(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jint firstNumber,
    jstring keyLabel, jboolean firstFlag, jint secondNumber, jobject subject, jint thirdNumber,
    jstring certFileName, jboolean secondFlag) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.takeIfGiven(certFileName, kTraceCertFileName);

  traceMessage("JNI_DEBUG......to call JavaDNItem2CDN()\n");
  ZELKMDNItem* dn = nullptr;
  JavaDNItem2CDN(env, subject, &dn);
  int rc = ZELKM_ERR_INVALID_DN_INPUT;
  if (dn != nullptr) {
    traceMessage("JNI_DEBUG......to call ZELKM_CreateSelfSignedCert()\n");
    rc = withKeyDb(file, pwd, [&](int handle) {
      return ZELKM_CreateSelfSignedCert(handle, label, firstFlag, firstNumber, secondNumber, dn,
                                        thirdNumber, certFile, secondFlag);
    });
    traceMessage("JNI_DEBUG......after call ZELKM_CreateSelfSignedCert()\n");
    ZELKM_FreeDNItem(dn);
    traceMessage("JNI_DEBUG......after call ZELKM_FreeDNItem()\n");
  }
  held.releaseAll();
  traceMessage("JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificate()\n");
  return rc;
}

// Its traces leave out the "Ext" of its name.
jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSigExt(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jint firstNumber,
    jstring keyLabel, jboolean firstFlag, jint secondNumber, jobject subject, jint thirdNumber,
    jint sigAlg, jint extLength, jbyteArray extData, jstring certFileName, jboolean secondFlag) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  if (!isSignatureAlgorithm(sigAlg)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.takeIfGiven(certFileName, kTraceCertFileName);
  unsigned char* extensions = nullptr;
  if (extLength > 0) JavaByteArrayToUChar(env, extData, extLength, &extensions);

  traceMessage("JNI_DEBUG......to call JavaDNItem2CDN()\n");
  ZELKMDNItem* dn = nullptr;
  JavaDNItem2CDN(env, subject, &dn);
  int rc = ZELKM_ERR_INVALID_DN_INPUT;
  if (dn != nullptr) {
    traceMessage("JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()\n");
    rc = withKeyDb(file, pwd, [&](int handle) {
      return ZELKM_CreateSelfSignedCertSigExt(
          handle, label, firstFlag, firstNumber, secondNumber, dn, thirdNumber, sigAlg, extensions,
          static_cast<uint32_t>(extLength), certFile, secondFlag);
    });
    traceMessage("JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()\n");
    ZELKM_FreeDNItem(dn);
    traceMessage("JNI_DEBUG......after call ZELKM_FreeDNItem()\n");
  }
  wipeAndFree(extensions, extLength);
  held.releaseAll();
  traceMessage("JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSig()\n");
  return rc;
}
