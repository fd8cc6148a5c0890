#include "bridge/marshal/key_items.h"

#include "bridge/frame/trace.h"
#include "bridge/marshal/certificate_items.h"
#include "bridge/marshal/private_key_items.h"
#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

namespace {

/** countKeyItems counts up to a null node; a null item counts, and becomes a null element. */
jsize countKeyItems(const ZELKMKeyItemList* list) {
  jsize count = 0;
  for (; list != nullptr; list = list->next) ++count;
  return count;
}

}  // namespace

jobject newJavaKeyItem(JNIEnv* env, const ItemClasses& classes, const ZELKMKeyItem* item) {
  if (item == nullptr) return nullptr;
  jclass keyItemClass = env->FindClass(classes.keyItem);
  traceMessage("JNI_DEBUG......jKeyItemClass = 0x%x\n", lowBits(keyItemClass));
  if (keyItemClass == nullptr) return nullptr;
  jmethodID constructor = env->GetMethodID(keyItemClass, "<init>", classes.keyItemConstructor);
  if (constructor == nullptr) return nullptr;
  traceMessage("JNI_DEBUG......jKeyItemClass = 0x%x, constructor=0x%x\n", lowBits(keyItemClass),
               lowBits(constructor));

  jstring label = newJavaString(env, item->label);
  jobject privateKey =
      item->hasPrivateKey != 0 ? newJavaEPKIItem(env, classes, item->epki) : nullptr;
  jobject berObject = item->hasBerData != 0
                          ? newBERObject(env, classes, item->berData, item->berDataLength)
                          : nullptr;
  jobjectArray certificates =
      item->hasCertList != 0 ? newJavaCertificateItemArray(env, classes, item->certList) : nullptr;
  jobject keyItem = env->NewObject(
      keyItemClass, constructor, label, static_cast<jshort>(item->shortValue1),
      static_cast<jshort>(item->keySize), privateKey, certificates, berObject,
      static_cast<jboolean>(item->booleanValue1), static_cast<jboolean>(item->booleanValue2));
  if (keyItem == nullptr) return nullptr;

  jmethodID setHasPrivateKey = env->GetMethodID(keyItemClass, "setHasPrivateKey", "(Z)V");
  if (setHasPrivateKey == nullptr) return nullptr;
  env->CallVoidMethod(keyItem, setHasPrivateKey, static_cast<jboolean>(item->hasPrivateKey));
  return keyItem;
}

jobjectArray newJavaKeyItemArray(JNIEnv* env, const ItemClasses& classes,
                                 const ZELKMKeyItemList* list) {
  jclass keyItemClass = env->FindClass(classes.keyItem);
  if (keyItemClass == nullptr) return nullptr;
  if (list == nullptr) return nullptr;
  const jsize count = countKeyItems(list);
  traceMessage("JNI_DEBUG......cKeyItemList count is = %d\n", count);
  jobjectArray array = env->NewObjectArray(count, keyItemClass, nullptr);
  if (array == nullptr) return nullptr;

  for (jsize i = 0; i < count; ++i, list = list->next) {
    env->SetObjectArrayElement(array, i, newJavaKeyItem(env, classes, list->item));
  }
  return array;
}

jobject handOverKeyItem(JNIEnv* env, const ItemClasses& classes, ZELKMKeyItem* item) {
  if (item == nullptr) return nullptr;
  traceMessage("JNI_DEBUG......cKeyItem->keySize = %d\n", item->keySize);
  jobject keyItem = newJavaKeyItem(env, classes, item);
  ZELKM_FreeKeyItem(item);
  return keyItem;
}

jobjectArray handOverKeyItems(JNIEnv* env, const ItemClasses& classes, ZELKMKeyItemList* list,
                              int code) {
  if (list == nullptr || code != ZELKM_OK) return nullptr;
  jobjectArray keyItems = newJavaKeyItemArray(env, classes, list);
  ZELKM_FreeKeyItemList(list);
  return keyItems;
}

}  // namespace zel::bridge
