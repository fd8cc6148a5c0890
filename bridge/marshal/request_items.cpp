#include "bridge/marshal/request_items.h"

#include "bridge/frame/trace.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/item_classes.h"
#include "bridge/marshal/private_key_items.h"
#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

namespace {

constexpr const char* kCertificateRequestItem = "com/nelo/zel/vosmar/basic/CertificateRequestItem";

constexpr const char* kCertificateRequestItemConstructor =
    "(S"
    "Lcom/nelo/zel/vosmar/basic/DNItem;"
    "Lcom/nelo/zel/vosmar/basic/BERObject;"
    "Lcom/nelo/zel/vosmar/basic/BERObject;"
    "[B"
    "Lcom/nelo/zel/vosmar/basic/BERObject;"
    "Ljava/lang/String;Ljava/lang/String;[B[B)V";

constexpr const char* kRequestKeyItemConstructor =
    "(Ljava/lang/String;SS"
    "Lcom/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem;"
    "Lcom/nelo/zel/vosmar/basic/CertificateRequestItem;"
    "Lcom/nelo/zel/vosmar/basic/BERObject;)V";

}  // namespace

jobject getJavaCertReqItem(JNIEnv* env, const ZELKMCertReqItem* req) {
  if (req == nullptr) return nullptr;
  jclass certReqItemClass = env->FindClass(kCertificateRequestItem);
  if (certReqItemClass == nullptr) return nullptr;
  jmethodID constructor =
      env->GetMethodID(certReqItemClass, "<init>", kCertificateRequestItemConstructor);
  if (constructor == nullptr) return nullptr;

  const ZELKMCertReqInfoItem* info = req->certReqInfoItem;
  jbyteArray berData = newJavaByteArray(env, req->berData, req->berDataLength);
  if (berData == nullptr) return nullptr;
  if (info == nullptr) return nullptr;
  jbyteArray infoBerData = newJavaByteArray(env, info->berData, info->berDataLength);
  if (infoBerData == nullptr) return nullptr;
  jobject subjectName = newJavaDNItem(env, kBasicItems, info->subjectName);
  jobject spki = newBERObject(env, kBasicItems, info->spki, info->spkiLength);
  if (spki == nullptr) return nullptr;
  jobject optionalBer = newBERObject(env, kBasicItems, info->optionalBer, info->optionalBerLength);
  jbyteArray sig = newJavaByteArray(env, req->sig, req->sigLength);
  if (sig == nullptr) return nullptr;
  jobject sigAlgId = newBERObject(env, kBasicItems, req->sigAlgId, req->sigAlgIdLength);
  if (sigAlgId == nullptr) return nullptr;
  jstring sigAlgIdOID = newJavaString(env, req->sigAlgIdOID);
  jstring sigAlgIdOIDName = newJavaString(env, req->sigAlgIdOIDName);

  traceMessage(
      "JNI_DEBUG......getJavaCertReqItem(): produced certReqItem->certReqInfoItem->keySize = 0x%x\n",
      static_cast<unsigned>(info->keySize));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jSubjectName = 0x%x\n",
               lowBits(subjectName));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jSPKI = 0x%x\n", lowBits(spki));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jSig = 0x%x\n", lowBits(sig));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgId = 0x%x\n",
               lowBits(sigAlgId));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgIdOID = 0x%x\n",
               lowBits(sigAlgIdOID));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jsigAlgIdOIDName = 0x%x\n",
               lowBits(sigAlgIdOIDName));
  traceMessage("JNI_DEBUG......getJavaCertReqItem(): produced jBerData = 0x%x\n", lowBits(berData));
  jobject item = env->NewObject(certReqItemClass, constructor, static_cast<jshort>(info->keySize),
                                subjectName, spki, optionalBer, sig, sigAlgId, sigAlgIdOID,
                                sigAlgIdOIDName, berData, infoBerData);
  traceMessage("JNI_DEBUG......jCertReqItemClass = 0x%x, retObj = 0x%x\n",
               lowBits(certReqItemClass), lowBits(item));
  return item;
}

jobject newJavaReqKeyItem(JNIEnv* env, const ZELKMReqKeyItem* item) {
  if (item == nullptr) return nullptr;
  jclass keyItemClass = env->FindClass(kBasicItems.keyItem);
  if (keyItemClass == nullptr) return nullptr;
  jmethodID constructor = env->GetMethodID(keyItemClass, "<init>", kRequestKeyItemConstructor);
  if (constructor == nullptr) return nullptr;
  traceMessage("JNI_DEBUG......jKeyItemClass = 0x%x, constructor=0x%x\n", lowBits(keyItemClass),
               lowBits(constructor));

  jstring label = newJavaString(env, item->label);
  jobject privateKey = newJavaEPKIItem(env, kBasicItems, item->epki);
  jobject berObject = item->hasBerData != 0
                          ? newBERObject(env, kBasicItems, item->berData, item->berDataLength)
                          : nullptr;
  jobject request = getJavaCertReqItem(env, item->certReq);
  jobject keyItem =
      env->NewObject(keyItemClass, constructor, label, static_cast<jshort>(item->shortValue1),
                     static_cast<jshort>(item->keySize), privateKey, request, berObject);
  if (keyItem == nullptr) return nullptr;

  jmethodID setHasPrivateKey = env->GetMethodID(keyItemClass, "setHasPrivateKey", "(Z)V");
  if (setHasPrivateKey == nullptr) return nullptr;
  env->CallVoidMethod(keyItem, setHasPrivateKey, JNI_TRUE);
  return keyItem;
}

}  // namespace zel::bridge
