// Certificates into a certificate store: given as bytes, read from a file, or made anew.

#include "bridge/certstore/with_store.h"
#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/keydb/certificate_file.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/block_copies.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"

using namespace zel::bridge;

jint Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1ImportCertificate(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jstring keyLabel, jint certLength,
    jbyteArray certData, jint keyLength, jbyteArray keyData) {
  if (lacksAny(env, self, keyLabel, certData) || certLength == 0) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Store store = takeStoreTracedAsToken(held, cspName, password);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const BlockCopies blocks = copyBlocks(env, {certLength, certData}, {keyLength, keyData});
  const int rc = withStore(store, [&](int handle) {
    return ZELKM_InsertKey(handle, label, blocks.first.length, blocks.first.bytes,
                           blocks.second.length, blocks.second.bytes, JNI_FALSE, JNI_FALSE);
  });
  wipeAndFree(blocks);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1AddSignerCertificate(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jstring keyLabel,
    jstring certFileName, jboolean isBase64) {
  if (lacksAny(env, self, keyLabel, certFileName)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Store store = takeStore(held, cspName, password);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  const int rc = withCertFile(certFile, isBase64, [&](const unsigned char* bytes, uint32_t length) {
    return withStore(store,
                     [&](int handle) { return ZELKM_StoreCACert(handle, bytes, length, label); });
  });
  held.releaseAll();
  return rc;
}

// Its traces leave out the "Ext" of the operation. A null label is not tested for.
jint Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1CreateNewSelfSignedCertificate(
    JNIEnv* env, jobject self, jstring cspName, jstring password, jint numberA, jstring keyLabel,
    jint numberB, jobject subject, jint numberC, jint sigAlg, jint extLength, jbyteArray extData) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  if (!isSignatureAlgorithm(sigAlg)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const Store store = takeStore(held, cspName, password);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  unsigned char* extensions = nullptr;
  if (extLength > 0) JavaByteArrayToUChar(env, extData, extLength, &extensions);

  traceMessage("JNI_DEBUG......to call JavaDNItem2CDN()\n");
  ZELKMDNItem* dn = nullptr;
  JavaDNItem2CDN(env, subject, &dn);
  int rc = ZELKM_ERR_INVALID_DN_INPUT;
  if (dn != nullptr) {
    traceMessage("JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()\n");
    rc = withStore(store, [&](int handle) {
      return ZELKM_CreateSelfSignedCertSigExt(handle, label, JNI_FALSE, numberA, numberB, dn,
                                              numberC, sigAlg, extensions,
                                              static_cast<uint32_t>(extLength), nullptr, JNI_FALSE);
    });
    traceMessage("JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()\n");
    ZELKM_FreeDNItem(dn);
    traceMessage("JNI_DEBUG......after call ZELKM_FreeDNItem()\n");
  }
  wipeAndFree(extensions, extLength);
  held.releaseAll();
  traceMessage("JNI_DEBUG......to exit MSCertificateStore_c_1CreateNewSelfSignedCertificate()\n");
  return rc;
}
