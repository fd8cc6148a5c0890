#include <cstdarg>
#include <vector>

#include "tests/fake_jni/function_table.h"
#include "tests/fake_jni/jni_call.h"

namespace zel::test {

namespace {

/** Reads variadic arguments as a method's signature tells them. */
class Arguments {
 public:
  Arguments(JNIEnv* env, jmethodID method, va_list list) : env_(env) {
    const JavaThing* member = FakeJni::of(env).heap.thing(method);
    if (member == nullptr || member->kind != JavaThing::kMember) {
      mistake_ = "is given no method";
      return;
    }
    const std::string& signature = member->text;
    for (size_t at = 1; signature[at] != ')';) {
      const size_t end = endOfType(signature, at);
      text_ += ", " + next(signature.substr(at, end - at), list);
      at = end;
    }
  }

  const std::string& text() const { return text_; }
  const std::string& mistake() const { return mistake_; }
  const std::vector<jobject>& references() const { return references_; }

 private:
  static size_t endOfType(const std::string& signature, size_t at) {
    while (signature[at] == '[') ++at;
    return signature[at] == 'L' ? signature.find(';', at) + 1 : at + 1;
  }

  std::string next(const std::string& type, va_list list) {
    switch (type[0]) {
      case 'Z':
        return booleanText(va_arg(list, int));
      case 'S':
      case 'I':
        return std::to_string(va_arg(list, int));
      case 'J':
        return std::to_string(va_arg(list, jlong));
      default:
        return reference(type, va_arg(list, jobject));
    }
  }

  static std::string booleanText(int value) {
    if (value == JNI_TRUE) return "true";
    return value == JNI_FALSE ? "false" : "true as " + std::to_string(value);
  }

  std::string reference(const std::string& type, jobject value) {
    const JavaThing* thing = FakeJni::of(env_).heap.thing(value);
    if (value != nullptr && (thing == nullptr || thing->type != type)) {
      mistake_ = "passes " + shown(env_, value) + " as " + type;
    }
    if (value != nullptr) references_.push_back(value);
    return shown(env_, value);
  }

  JNIEnv* env_;
  std::string text_;
  std::string mistake_;
  std::vector<jobject> references_;
};

/** A call of a method of an object, or of a static one or a constructor of a class. */
class MethodCall : public JniCall {
 public:
  MethodCall(JNIEnv* env, const char* function, jobject receiver, jmethodID method, va_list list)
      : MethodCall(env, function, receiver, method, Arguments(env, method, list)) {}

  /** The objects among the arguments. */
  const std::vector<jobject>& references() const { return references_; }

 private:
  MethodCall(JNIEnv* env, const char* function, jobject receiver, jmethodID method,
             const Arguments& arguments)
      : JniCall(env, function, shown(env, receiver) + ", " + shown(env, method) + arguments.text()),
        references_(arguments.references()) {
    const JavaThing* target = heap().thing(receiver);
    if (!arguments.mistake().empty()) {
      wrong(arguments.mistake());
    } else if (target != nullptr && typeOf(*target) != heap().thing(method)->type) {
      wrong("is a method of another class");
    }
  }

  static std::string typeOf(const JavaThing& target) {
    return target.kind == JavaThing::kClass ? 'L' + target.text + ';' : target.type;
  }

  std::vector<jobject> references_;
};

jobject newObjectV(JNIEnv* env, jclass type, jmethodID constructor, va_list list) {
  MethodCall call(env, "NewObject", type, constructor, list);
  if (call.needs(type, JavaThing::kClass) == nullptr || constructor == nullptr || call.fails()) {
    return call.null();
  }
  jobject made = call.heap().newObject(type);
  call.heap().thing(made)->elements = call.references();
  return call.returns(made);
}

/** The receiver may be null, where a native must call on without a check. */
void callVoidMethodV(JNIEnv* env, jobject object, jmethodID method, va_list list) {
  MethodCall call(env, "CallVoidMethod", object, method, list);
  if (call.jni().voidMethodsThrow) return call.doneThrowing();
  call.done();
}

jboolean booleanResult(MethodCall&& call) {
  const bool accepted = !call.fails();
  call.returnsShown(accepted ? "true" : "false");
  return accepted ? JNI_TRUE : JNI_FALSE;
}

jboolean callBooleanMethodV(JNIEnv* env, jobject object, jmethodID method, va_list list) {
  return booleanResult(MethodCall(env, "CallBooleanMethod", object, method, list));
}

void callStaticVoidMethodV(JNIEnv* env, jclass type, jmethodID method, va_list list) {
  MethodCall(env, "CallStaticVoidMethod", type, method, list).done();
}

jboolean callStaticBooleanMethodV(JNIEnv* env, jclass type, jmethodID method, va_list list) {
  return booleanResult(MethodCall(env, "CallStaticBooleanMethod", type, method, list));
}

}  // namespace

void answerCalls(JNINativeInterface_& table) {
  table.NewObjectV = newObjectV;
  table.CallVoidMethodV = callVoidMethodV;
  table.CallBooleanMethodV = callBooleanMethodV;
  table.CallStaticVoidMethodV = callStaticVoidMethodV;
  table.CallStaticBooleanMethodV = callStaticBooleanMethodV;
}

}  // namespace zel::test
