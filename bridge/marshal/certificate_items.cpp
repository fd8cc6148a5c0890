#include "bridge/marshal/certificate_items.h"

#include <cstdlib>

#include "bridge/frame/stated_leaks.h"
#include "bridge/frame/trace.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

namespace {

/** newUnsignedCertificate is the to-be-signed part of the certificate as a Java array. */
jbyteArray newUnsignedCertificate(JNIEnv* env, const ZELKMCertItem* cert) {
  unsigned char* buffer = nullptr;
  uint32_t length = 0;
  if (ZELKM_GetUnsignedCertFromCert(cert->certDer, cert->certDerLength, &buffer, &length) !=
      ZELKM_OK) {
    return nullptr;
  }
  jbyteArray array = newJavaByteArray(env, buffer, length);
  if (array == nullptr) {
    std::free(buffer);
    return nullptr;
  }
  leaveAllocated(buffer);
  return array;
}

jobject newFullCertificateItem(JNIEnv* env, const ItemClasses& classes, const ZELKMCertItem* cert,
                               jclass certificateItemClass, jmethodID constructor,
                               jbyteArray certificateBytes) {
  jstring label = newJavaString(env, cert->label);
  jobject subjectDN = newJavaDNItem(env, classes, cert->subjectDN);
  jobject issuerDN = newJavaDNItem(env, classes, cert->issuerDN);
  traceMessage("JNI_DEBUG......jCertificateItemClass effectTime = %ld\n", cert->effectTime);
  jobject spki = newBERObject(env, classes, cert->spki, cert->spkiLength);
  if (spki == nullptr) return nullptr;
  if (cert->sig == nullptr || cert->sigLength == 0) return nullptr;
  jbyteArray sig = newJavaByteArray(env, cert->sig, cert->sigLength);
  if (sig == nullptr) return nullptr;
  jobject sigAlgId = newBERObject(env, classes, cert->sigAlgId, cert->sigAlgIdLength);
  if (sigAlgId == nullptr) return nullptr;
  jstring sigAlgIdOID = newJavaString(env, cert->sigAlgIdOID);
  jstring sigAlgIdOIDName = newJavaString(env, cert->sigAlgIdOIDName);
  jobject extraObject = nullObjectConverter(env, cert->extraObject);
  jbyteArray unsignedCertificate = newUnsignedCertificate(env, cert);
  if (unsignedCertificate == nullptr) return nullptr;

  jobject item = env->NewObject(
      certificateItemClass, constructor, static_cast<jshort>(cert->shortValue1),
      static_cast<jshort>(cert->shortValue2), label, subjectDN, issuerDN,
      static_cast<jlong>(cert->effectTime), static_cast<jlong>(cert->expireTime), spki, extraObject,
      sig, sigAlgId, sigAlgIdOID, sigAlgIdOIDName, unsignedCertificate, certificateBytes);
  traceMessage("JNI_DEBUG......exit(): produced jCertificateItem = 0x%x\n", lowBits(item));
  traceMessage("JNI_DEBUG......exit(): jCertificateItemClass = 0x%x\n",
               lowBits(certificateItemClass));
  return item;
}

/** countCertificates counts up to a null node or a null item. */
jsize countCertificates(const ZELKMCertItemList* list) {
  jsize count = 0;
  for (; list != nullptr && list->item != nullptr; list = list->next) ++count;
  return count;
}

}  // namespace

jobject newJavaCertificateItem(JNIEnv* env, const ItemClasses& classes, const ZELKMCertItem* cert) {
  if (cert == nullptr) return nullptr;
  jclass certificateItemClass = env->FindClass(classes.certificateItem);
  if (certificateItemClass == nullptr) return nullptr;
  const bool bytesOnly = cert->label == nullptr;
  jmethodID constructor =
      env->GetMethodID(certificateItemClass, "<init>",
                       bytesOnly ? kBytesConstructor : classes.certificateItemConstructor);
  if (constructor == nullptr) return nullptr;
  traceMessage("JNI_DEBUG......constructorMID %p\n", static_cast<void*>(constructor));
  jbyteArray certificateBytes = newJavaByteArray(env, cert->certDer, cert->certDerLength);
  if (certificateBytes == nullptr) return nullptr;

  if (bytesOnly) {
    traceMessage("JNI_DEBUG......to construct a cert");
    return env->NewObject(certificateItemClass, constructor, certificateBytes);
  }
  return newFullCertificateItem(env, classes, cert, certificateItemClass, constructor,
                                certificateBytes);
}

jobjectArray newJavaCertificateItemArray(JNIEnv* env, const ItemClasses& classes,
                                         const ZELKMCertItemList* list) {
  if (list == nullptr) return nullptr;
  jclass certificateItemClass = env->FindClass(classes.certificateItem);
  if (certificateItemClass == nullptr) return nullptr;
  traceMessage("JNI_DEBUG......jCertificateItemClass = 0x%x\n", lowBits(certificateItemClass));
  const jsize count = countCertificates(list);
  traceMessage("JNI_DEBUG......certCnt = %d\n", count);
  jobjectArray array = env->NewObjectArray(count, certificateItemClass, nullptr);
  if (array == nullptr) return nullptr;

  for (jsize i = 0; i < count; ++i, list = list->next) {
    env->SetObjectArrayElement(array, i, newJavaCertificateItem(env, classes, list->item));
  }
  traceMessage("JNI_DEBUG......retArray = 0x%x\n", lowBits(array));
  return array;
}

}  // namespace zel::bridge
