#include "tests/fake_jni/jni_call.h"

namespace zel::test {

JniCall::JniCall(JNIEnv* env, const char* function, const std::string& arguments)
    : env_(env), function_(function), text_(std::string(function) + "(" + arguments + ")") {}

bool JniCall::fails() { return recorder().faults.fails(FaultPlan::kJni, function_); }

JavaThing* JniCall::needs(const void* reference, JavaThing::Kind kind) {
  JavaThing* thing = heap().thing(reference);
  if (thing != nullptr && thing->kind == kind) return thing;
  wrong("is given no such thing");
  return nullptr;
}

void JniCall::wrong(const std::string& what) { recorder().error(text_ + " " + what); }

std::nullptr_t JniCall::null() {
  returnsShown("null");
  return nullptr;
}

void JniCall::returnsShown(const std::string& result) { recorder().event(text_ + " = " + result); }

void JniCall::done() { recorder().event(text_); }

void JniCall::doneThrowing() { recorder().event(text_ + " throws"); }

std::string shown(JNIEnv* env, const void* reference) {
  const std::string name = FakeJni::of(env).heap.shown(reference);
  return name.empty() ? "unknown reference" : name;
}

}  // namespace zel::test
