#include "tests/fake_jni/function_table.h"
#include "tests/fake_jni/jni_call.h"
#include "tests/recorder/readable.h"

namespace zel::test {

namespace {

jclass findClass(JNIEnv* env, const char* name) {
  JniCall call(env, "FindClass", quoted(name));
  if (call.fails()) return call.null();
  return call.returns(call.heap().classNamed(name));
}

jclass getObjectClass(JNIEnv* env, jobject object) {
  JniCall call(env, "GetObjectClass", shown(env, object));
  if (call.needs(object, JavaThing::kObject) == nullptr || call.fails()) return call.null();
  return call.returns(call.heap().classOf(object));
}

/** Members are named as they were looked up, so the answer only tells whether there is one. */
void* lookUp(JNIEnv* env, const char* function, JavaMember::Kind kind, jclass type,
             const char* name, const char* signature) {
  JniCall call(env, function, shown(env, type) + ", " + quoted(name) + ", " + quoted(signature));
  if (call.needs(type, JavaThing::kClass) == nullptr || call.fails()) return call.null();
  JavaThing* member = call.heap().memberOf(type, kind, name, signature);
  if (member == nullptr) return call.null();
  call.done();
  return call.heap().referenceTo(member);
}

jmethodID getMethodID(JNIEnv* env, jclass type, const char* name, const char* signature) {
  return static_cast<jmethodID>(
      lookUp(env, "GetMethodID", JavaMember::kMethod, type, name, signature));
}

jmethodID getStaticMethodID(JNIEnv* env, jclass type, const char* name, const char* signature) {
  return static_cast<jmethodID>(
      lookUp(env, "GetStaticMethodID", JavaMember::kStaticMethod, type, name, signature));
}

jfieldID getFieldID(JNIEnv* env, jclass type, const char* name, const char* signature) {
  return static_cast<jfieldID>(
      lookUp(env, "GetFieldID", JavaMember::kField, type, name, signature));
}

jobject getObjectField(JNIEnv* env, jobject object, jfieldID field) {
  JniCall call(env, "GetObjectField", shown(env, object) + ", " + shown(env, field));
  JavaThing* owner = call.needs(object, JavaThing::kObject);
  if (owner == nullptr || field == nullptr || call.fails()) return call.null();
  const JavaThing* member = call.needs(field, JavaThing::kMember);
  if (member == nullptr) return nullptr;
  if (member->type != owner->type) call.wrong("is a field of another class");
  return call.returns(owner->fields[member->shown]);
}

}  // namespace

void answerClasses(JNINativeInterface_& table) {
  table.FindClass = findClass;
  table.GetObjectClass = getObjectClass;
  table.GetMethodID = getMethodID;
  table.GetStaticMethodID = getStaticMethodID;
  table.GetFieldID = getFieldID;
  table.GetObjectField = getObjectField;
}

}  // namespace zel::test
