#include <cstdlib>
#include <cstring>

#include "tests/fake_jni/function_table.h"
#include "tests/fake_jni/jni_call.h"
#include "tests/recorder/readable.h"

namespace zel::test {

namespace {

jstring newStringUTF(JNIEnv* env, const char* text) {
  JniCall call(env, "NewStringUTF", quoted(text));
  if (text == nullptr) call.wrong("makes a string of nothing");
  if (text == nullptr || call.fails()) return call.null();
  call.done();
  return call.heap().newString(text);
}

const char* getStringUTFChars(JNIEnv* env, jstring string, jboolean* isCopy) {
  JniCall call(env, "GetStringUTFChars", shown(env, string));
  if (isCopy != nullptr) call.wrong("asks whether it is a copy");
  if (string == nullptr) return call.null();
  const JavaThing* thing = call.needs(string, JavaThing::kString);
  if (thing == nullptr || call.fails()) return call.null();
  call.done();
  // A copy for each call, so that the sanitizer sees a use after the release.
  char* characters = strdup(thing->text.c_str());
  recorder().owned.takeAs(Kind::kStringChars, characters, "string " + thing->shown, std::free);
  call.jni().heldCharacters[characters] = string;
  return characters;
}

void releaseStringUTFChars(JNIEnv* env, jstring string, const char* characters) {
  JniCall call(env, "ReleaseStringUTFChars", shown(env, string));
  call.done();
  auto& held = call.jni().heldCharacters;
  const auto taken = held.find(characters);
  if (taken == held.end()) return call.wrong("releases what is not held");
  if (taken->second != string) return call.wrong("releases the characters of another string");
  held.erase(taken);
  recorder().owned.give(Kind::kStringChars, characters);
  std::free(const_cast<char*>(characters));
}

jsize getArrayLength(JNIEnv* env, jarray array) {
  JniCall call(env, "GetArrayLength", shown(env, array));
  const JavaThing* thing = call.heap().thing(array);
  if (thing == nullptr || thing->kind != JavaThing::kByteArray) {
    thing = call.needs(array, JavaThing::kObjectArray);
  }
  if (thing == nullptr) return 0;
  const bool ofBytes = thing->kind == JavaThing::kByteArray;
  const size_t length = ofBytes ? thing->bytes.size() : thing->elements.size();
  call.returnsShown(std::to_string(length));
  return static_cast<jsize>(length);
}

jobjectArray newObjectArray(JNIEnv* env, jsize length, jclass elementType, jobject initial) {
  JniCall call(
      env, "NewObjectArray",
      std::to_string(length) + ", " + shown(env, elementType) + ", " + shown(env, initial));
  if (call.needs(elementType, JavaThing::kClass) == nullptr || length < 0 || call.fails()) {
    return call.null();
  }
  const std::vector<jobject> elements(static_cast<size_t>(length), initial);
  return call.returns(call.heap().newArray(elementType, elements));
}

jobject getObjectArrayElement(JNIEnv* env, jobjectArray array, jsize index) {
  JniCall call(env, "GetObjectArrayElement", shown(env, array) + ", " + std::to_string(index));
  const JavaThing* thing = call.needs(array, JavaThing::kObjectArray);
  if (thing == nullptr || call.fails()) return call.null();
  if (static_cast<size_t>(index) >= thing->elements.size()) {
    call.wrong("is outside the array");
    return nullptr;
  }
  return call.returns(thing->elements[static_cast<size_t>(index)]);
}

void setObjectArrayElement(JNIEnv* env, jobjectArray array, jsize index, jobject element) {
  JniCall call(env, "SetObjectArrayElement",
               shown(env, array) + ", " + std::to_string(index) + ", " + shown(env, element));
  call.done();
  JavaThing* thing = call.needs(array, JavaThing::kObjectArray);
  if (thing == nullptr) return;
  if (static_cast<size_t>(index) >= thing->elements.size()) {
    return call.wrong("is outside the array");
  }
  if (element != nullptr && "[" + call.heap().thing(element)->type != thing->type) {
    return call.wrong("stores another type");
  }
  thing->elements[static_cast<size_t>(index)] = element;
}

jbyteArray newByteArray(JNIEnv* env, jsize length) {
  JniCall call(env, "NewByteArray", std::to_string(length));
  if (length < 0 || call.fails()) return call.null();
  return call.returns(call.heap().newBytes(std::vector<uint8_t>(static_cast<size_t>(length))));
}

jbyte* getByteArrayElements(JNIEnv* env, jbyteArray array, jboolean* isCopy) {
  JniCall call(env, "GetByteArrayElements", shown(env, array));
  if (isCopy != nullptr) call.wrong("asks whether it is a copy");
  const JavaThing* thing = call.needs(array, JavaThing::kByteArray);
  if (thing == nullptr || call.fails()) return call.null();
  const size_t length = thing->bytes.size();
  call.returnsShown(inHex(thing->bytes.data(), length));
  void* elements = std::malloc(length + 1);
  std::memcpy(elements, thing->bytes.data(), length);
  recorder().owned.takeAs(Kind::kArrayElements, elements, "elements of " + thing->shown, std::free);
  return static_cast<jbyte*>(elements);
}

void setByteArrayRegion(JNIEnv* env, jbyteArray array, jsize start, jsize length,
                        const jbyte* bytes) {
  JniCall call(env, "SetByteArrayRegion",
               shown(env, array) + ", " + std::to_string(start) + ", " + std::to_string(length) +
                   ", " + inHex(bytes, static_cast<size_t>(length)));
  call.done();
  JavaThing* thing = call.needs(array, JavaThing::kByteArray);
  if (thing == nullptr || length == 0) return;
  const auto first = static_cast<size_t>(start);
  const auto count = static_cast<size_t>(length);
  if (first + count > thing->bytes.size()) return call.wrong("is outside the array");
  if (bytes == nullptr) return call.wrong("copies from nothing");
  std::memcpy(thing->bytes.data() + first, bytes, count);
}

}  // namespace

void answerStringsAndArrays(JNINativeInterface_& table) {
  table.NewStringUTF = newStringUTF;
  table.GetStringUTFChars = getStringUTFChars;
  table.ReleaseStringUTFChars = releaseStringUTFChars;
  table.GetArrayLength = getArrayLength;
  table.NewObjectArray = newObjectArray;
  table.GetObjectArrayElement = getObjectArrayElement;
  table.SetObjectArrayElement = setObjectArrayElement;
  table.NewByteArray = newByteArray;
  table.GetByteArrayElements = getByteArrayElements;
  table.SetByteArrayRegion = setByteArrayRegion;
}

}  // namespace zel::test
