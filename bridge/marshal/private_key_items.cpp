#include "bridge/marshal/private_key_items.h"

#include "bridge/frame/trace.h"
#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

namespace {

/** ClassAndObject is what a conversion looked up and made; the object is null when it failed. */
struct ClassAndObject {
  jclass itemClass;
  bool constructed;
  jobject item;
};

/** construct makes an object of a class that wraps bytes. */
ClassAndObject construct(JNIEnv* env, const char* className, const unsigned char* bytes,
                         uint32_t length) {
  jclass itemClass = env->FindClass(className);
  if (itemClass == nullptr) return {};
  jmethodID constructor = env->GetMethodID(itemClass, "<init>", kBytesConstructor);
  if (constructor == nullptr) return {};
  jbyteArray array = newJavaByteArray(env, bytes, length);
  if (array == nullptr) return {};
  return {itemClass, true, env->NewObject(itemClass, constructor, array)};
}

}  // namespace

jobject newJavaEPKIItem(JNIEnv* env, const ItemClasses& classes, const ZELKMEPKIItem* epki) {
  if (epki == nullptr) return nullptr;
  const ClassAndObject made =
      construct(env, classes.encryptedPrivateKeyInfoItem, epki->berData, epki->berDataLength);
  if (!made.constructed) return nullptr;
  traceMessage("JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x%x, retObj = 0x%x\n",
               lowBits(made.itemClass), lowBits(made.item));
  return made.item;
}

jobject newJavaPrivKeyInfoItem(JNIEnv* env, const ItemClasses& classes,
                               const ZELKMPrivKeyInfoItem* privKeyInfo) {
  if (privKeyInfo == nullptr) return nullptr;
  const ClassAndObject made =
      construct(env, classes.privateKeyInfoItem, privKeyInfo->berData, privKeyInfo->berDataLength);
  if (!made.constructed) return nullptr;
  traceMessage("JNI_DEBUG......jPrivateKeyInfoItem = 0x%x, retObj = 0x%x\n",
               lowBits(made.itemClass), lowBits(made.item));
  return made.item;
}

}  // namespace zel::bridge
