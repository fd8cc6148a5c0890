#include "bridge/marshal/private_key_items.h"

#include "bridge/frame/trace.h"
#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

namespace {

/** newBytesItem makes an object of a class that wraps bytes, and traces both. */
template <typename Trace>
jobject newBytesItem(JNIEnv* env, const char* className, const unsigned char* bytes,
                     uint32_t length, Trace&& trace) {
  jclass itemClass = env->FindClass(className);
  if (itemClass == nullptr) return nullptr;
  jmethodID constructor = env->GetMethodID(itemClass, "<init>", kBytesConstructor);
  if (constructor == nullptr) return nullptr;
  jbyteArray array = newJavaByteArray(env, bytes, length);
  if (array == nullptr) return nullptr;
  jobject item = env->NewObject(itemClass, constructor, array);
  trace(itemClass, item);
  return item;
}

}  // namespace

jobject newJavaEPKIItem(JNIEnv* env, const ItemClasses& classes, const ZELKMEPKIItem* epki) {
  if (epki == nullptr) return nullptr;
  return newBytesItem(env, classes.encryptedPrivateKeyInfoItem, epki->berData, epki->berDataLength,
                      [](jclass itemClass, jobject item) {
                        traceMessage(
                            "JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x%x, retObj = 0x%x\n",
                            lowBits(itemClass), lowBits(item));
                      });
}

jobject newJavaPrivKeyInfoItem(JNIEnv* env, const ItemClasses& classes,
                               const ZELKMPrivKeyInfoItem* privKeyInfo) {
  if (privKeyInfo == nullptr) return nullptr;
  return newBytesItem(env, classes.privateKeyInfoItem, privKeyInfo->berData,
                      privKeyInfo->berDataLength, [](jclass itemClass, jobject item) {
                        traceMessage("JNI_DEBUG......jPrivateKeyInfoItem = 0x%x, retObj = 0x%x\n",
                                     lowBits(itemClass), lowBits(item));
                      });
}

}  // namespace zel::bridge
