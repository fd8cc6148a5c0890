// Certificates onto a token and off it. The two that take a personal certificate may lend a
// secondary key database to the token.

#include "bridge/frame/gate.h"
#include "bridge/keydb/certificate_file.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/block_copies.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "bridge/token/secondary_key_db.h"
#include "bridge/token/with_token.h"
#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"

using namespace zel::bridge;

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ReceivePersonalCertificate(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring secondaryKeyDbFileName, jstring secondaryKeyDbPassword, jstring certFileName,
    jboolean isBase64) {
  if (lacksAny(env, self, moduleName, tokenLabel, certFileName)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const SecondaryKeyDb secondary =
      takeSecondaryKeyDb(held, secondaryKeyDbFileName, secondaryKeyDbPassword);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  const int rc = withCertFile(certFile, isBase64, [&](const unsigned char* bytes, uint32_t length) {
    return withTokenKeyDb(token, secondary, [&](int handle) {
      return ZELKM_ReceiveCert(handle, bytes, length, JNI_FALSE);
    });
  });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ImportCertificate(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring secondaryKeyDbFileName, jstring secondaryKeyDbPassword, jstring keyLabel,
    jint certLength, jbyteArray certificate, jint keyLength, jbyteArray privateKey) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, certificate) || certLength == 0) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const SecondaryKeyDb secondary =
      takeSecondaryKeyDb(held, secondaryKeyDbFileName, secondaryKeyDbPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const BlockCopies blocks = copyBlocks(env, {certLength, certificate}, {keyLength, privateKey});
  const int rc = withTokenKeyDb(token, secondary, [&](int handle) {
    return ZELKM_InsertKey(handle, label, blocks.first.length, blocks.first.bytes,
                           blocks.second.length, blocks.second.bytes, JNI_FALSE, JNI_FALSE);
  });
  wipeAndFree(blocks);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1AddSignerCertificate(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jstring certFileName, jboolean isBase64) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, certFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  const int rc = withCertFile(certFile, isBase64, [&](const unsigned char* bytes, uint32_t length) {
    return withToken(token,
                     [&](int handle) { return ZELKM_StoreCACert(handle, bytes, length, label); });
  });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ExtractCertificate(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jstring keyLabel, jstring certFileName, jboolean format) {
  if (lacksAny(env, self, moduleName, tokenLabel, keyLabel, certFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  const int rc = withToken(
      token, [&](int handle) { return ZELKM_ExportCert(handle, label, certFile, format); });
  held.releaseAll();
  return rc;
}
