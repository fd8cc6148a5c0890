// Certificate requests: made anew with a key pair, or written again from the one under the label.

#include "bridge/frame/gate.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewCertRequest(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jint keySize, jobject subject, jstring certReqFileName, jboolean createNew) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.take(certReqFileName, kTraceCertReqFileName);

  int rc = ZELKM_ERR_INVALID_DN_INPUT;
  if (createNew == JNI_FALSE) {
    rc = withKeyDb(file, pwd, [&](int handle) {
      return ZELKM_ReCreateCertReq(handle, label, certReqFile, 0, 0);
    });
  } else {
    ZELKMDNItem* dn = nullptr;
    JavaDNItem2CDN(env, subject, &dn);
    if (dn != nullptr) {
      rc = withKeyDb(file, pwd, [&](int handle) {
        return ZELKM_CreateNewCertReq(handle, label, keySize, dn, certReqFile, 0, 0);
      });
      ZELKM_FreeDNItem(dn);
    }
  }
  held.releaseAll();
  return rc;
}

// The request file's name is neither required nor traced here.
jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewCertRequestSigExt(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jint keySize, jobject subject, jint sigAlg, jint extLength, jbyteArray extData,
    jstring certReqFileName, jboolean createNew) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  if (!isSignatureAlgorithm(sigAlg)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.takeIfGiven(certReqFileName);
  unsigned char* extensions = nullptr;
  if (extLength > 0) JavaByteArrayToUChar(env, extData, extLength, &extensions);

  int rc = ZELKM_ERR_INVALID_DN_INPUT;
  if (createNew == JNI_FALSE) {
    rc = withKeyDb(file, pwd, [&](int handle) {
      return ZELKM_ReCreateCertReqSig(handle, label, sigAlg, certReqFile, 0, 0);
    });
  } else {
    ZELKMDNItem* dn = nullptr;
    JavaDNItem2CDN(env, subject, &dn);
    if (dn != nullptr) {
      rc = withKeyDb(file, pwd, [&](int handle) {
        return ZELKM_CreateNewCertReqSigExt(handle, label, keySize, dn, sigAlg, extensions,
                                            static_cast<uint32_t>(extLength), certReqFile, 0, 0);
      });
      ZELKM_FreeDNItem(dn);
    }
  }
  wipeAndFree(extensions, extLength);
  held.releaseAll();
  return rc;
}
