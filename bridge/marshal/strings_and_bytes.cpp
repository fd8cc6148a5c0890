#include "bridge/marshal/strings_and_bytes.h"

#include <cstdlib>
#include <cstring>

#include "bridge/frame/stated_leaks.h"
#include "bridge/frame/trace.h"

namespace zel::bridge {

jstring newJavaString(JNIEnv* env, const char* text) {
  if (text == nullptr || env == nullptr) return nullptr;
  return env->NewStringUTF(text);
}

jbyteArray newJavaByteArray(JNIEnv* env, const unsigned char* bytes, uint32_t length) {
  jbyteArray array = env->NewByteArray(static_cast<jsize>(length));
  if (array == nullptr) return nullptr;
  env->SetByteArrayRegion(array, 0, static_cast<jsize>(length),
                          reinterpret_cast<const jbyte*>(bytes));
  return array;
}

void JavaByteArrayToUChar(JNIEnv* env, jbyteArray byteArray, jint expectedLength,
                          unsigned char** out) {
  if (out == nullptr) return;
  *out = nullptr;
  if (byteArray == nullptr || expectedLength == 0) return;

  const bool sameLength = env->GetArrayLength(byteArray) == expectedLength;
  traceMessage("JNI_DEBUG......JavaByteArrayToUChar(): jByteLen %s jCertBERLen\n",
               sameLength ? "==" : "!=");
  if (!sameLength) return;

  const auto size = static_cast<std::size_t>(expectedLength);
  auto* buffer = static_cast<unsigned char*>(std::malloc(size));
  if (buffer == nullptr) return;
  const jbyte* elements = env->GetByteArrayElements(byteArray, nullptr);
  if (elements == nullptr) {
    std::free(buffer);
    return;
  }
  std::memcpy(buffer, elements, size);
  leavePinned(elements);
  *out = buffer;
}

void wipeAndFree(unsigned char* buffer, jint length) {
  if (buffer == nullptr) return;
  explicit_bzero(buffer, static_cast<std::size_t>(length));
  std::free(buffer);
}

int bytesShown(const unsigned char* buffer, jint length) {
  return buffer == nullptr ? static_cast<int>(std::strlen(bytesAsText(nullptr))) : length;
}

const char* bytesAsText(const unsigned char* buffer) {
  return orNull(reinterpret_cast<const char*>(buffer));
}

jobject newBERObject(JNIEnv* env, const ItemClasses& classes, const unsigned char* bytes,
                     uint32_t length) {
  if (bytes == nullptr || length == 0) return nullptr;
  // The class is traced before it is looked up, so the line always reads 0x0.
  traceMessage("JNI_DEBUG......jBERObjectClass = 0x%x\n", 0U);
  jclass berObjectClass = env->FindClass(classes.berObject);
  if (berObjectClass == nullptr) return nullptr;
  jmethodID constructor = env->GetMethodID(berObjectClass, "<init>", kBytesConstructor);
  if (constructor == nullptr) return nullptr;
  jbyteArray array = newJavaByteArray(env, bytes, length);
  if (array == nullptr) return nullptr;
  return env->NewObject(berObjectClass, constructor, array);
}

jobject nullObjectConverter(JNIEnv* /*env*/, const void* /*pointer*/) { return nullptr; }

}  // namespace zel::bridge
