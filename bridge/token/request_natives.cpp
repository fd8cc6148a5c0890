// New keys on a token, with a certificate request or a self-signed certificate, and the requests
// that are on it already. A subject is converted before any string is acquired.

#include "bridge/frame/gate.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/block_copies.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "bridge/token/with_token.h"
#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"

using namespace zel::bridge;

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1CreatePersonalCertificateRequest(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jint keySize, jobject subject, jint signatureAlgorithm,
    jstring certReqFileName) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, subject, certReqFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  if (!isSignatureAlgorithm(signatureAlgorithm)) return ZELKM_ERR_PARAMETER;
  ZELKMDNItem* dn = nullptr;
  JavaDNItem2CDN(env, subject, &dn);
  if (dn == nullptr) return ZELKM_ERR_INVALID_DN_INPUT;
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.take(certReqFileName, kTraceCertReqFileName);
  const int rc = withToken(token, [&](int handle) {
    return ZELKM_CreateNewCertReqSigExt(handle, label, keySize, dn, signatureAlgorithm, nullptr, 0,
                                        certReqFile, 0, 0);
  });
  ZELKM_FreeDNItem(dn);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1CreateSelfSignedCertificate(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jint firstValue, jstring keyLabel, jint secondValue, jobject subject, jint thirdValue,
    jint signatureAlgorithm) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, subject)) return ZELKM_ERR_PARAMETER;
  if (!isSignatureAlgorithm(signatureAlgorithm)) return ZELKM_ERR_PARAMETER;
  ZELKMDNItem* dn = nullptr;
  JavaDNItem2CDN(env, subject, &dn);
  if (dn == nullptr) return ZELKM_ERR_INVALID_DN_INPUT;
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const int rc = withToken(token, [&](int handle) {
    return ZELKM_CreateSelfSignedCertSigExt(handle, label, JNI_FALSE, firstValue, secondValue, dn,
                                            thirdValue, signatureAlgorithm, nullptr, 0, nullptr,
                                            JNI_FALSE);
  });
  ZELKM_FreeDNItem(dn);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ImportPersonalCertificateRequest(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jint requestLength, jbyteArray request, jint keyLength,
    jbyteArray privateKey) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, request) || requestLength == 0) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const BlockCopies blocks = copyBlocks(env, {requestLength, request}, {keyLength, privateKey});
  const int rc = withToken(token, [&](int handle) {
    return ZELKM_InsertReqKey(handle, label, blocks.first.length, blocks.first.bytes,
                              blocks.second.length, blocks.second.bytes);
  });
  wipeAndFree(blocks);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1RecreatePersonalCertificateRequest(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jint signatureAlgorithm, jstring certReqFileName) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, certReqFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  if (!isSignatureAlgorithm(signatureAlgorithm)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.take(certReqFileName, kTraceCertReqFileName);
  const int rc = withToken(token, [&](int handle) {
    return ZELKM_ReCreateCertReqSig(handle, label, signatureAlgorithm, certReqFile, 0, 0);
  });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ExtractPersonalCertificateRequest(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jstring certReqFileName) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, certReqFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certReqFile = held.take(certReqFileName, kTraceCertReqFileName);
  const int rc = withToken(
      token, [&](int handle) { return ZELKM_ReCreateCertReq(handle, label, certReqFile, 0, 0); });
  held.releaseAll();
  return rc;
}
