#ifndef TESTS_FAKE_JNI_JNI_CALL_H_
#define TESTS_FAKE_JNI_JNI_CALL_H_

#include <jni.h>

#include <string>

#include "tests/fake_jni/fake_jni.h"
#include "tests/recorder/recorder.h"

/**
 * @file
 * One call of a JNI function, from its arguments to its line in the record:
 *
 *     JniCall call(env, "FindClass", quoted(name));
 *     if (call.fails()) return call.null();
 *     return call.returns(call.heap().classNamed(name));   // FindClass("p/Item") = class p/Item
 */

namespace zel::test {

class JniCall {
 public:
  JniCall(JNIEnv* env, const char* function, const std::string& arguments);

  JavaHeap& heap() { return FakeJni::of(env_).heap; }
  FakeJni& jni() { return FakeJni::of(env_); }

  /** fails() counts this call and tells whether it is one that shall fail. */
  bool fails();

  /** needs() is the thing that an argument names; an error when that is nothing, or another kind.
   */
  JavaThing* needs(const void* reference, JavaThing::Kind kind);

  /** wrong() records an error of the caller. */
  void wrong(const std::string& what);

  /** Each ends the call and records it: with a reference, null, another result, or none. */
  template <typename Reference>
  Reference returns(Reference result) {
    recorder().event(text_ + " = " + heap().shown(result));
    return result;
  }
  std::nullptr_t null();
  void returnsShown(const std::string& result);
  void done();
  /** doneThrowing() ends it without a result, by an exception of Java's. */
  void doneThrowing();

 private:
  HostCode host_;
  JNIEnv* env_;
  const char* function_;
  std::string text_;
};

/** shown() is a reference as it stands among the arguments. */
std::string shown(JNIEnv* env, const void* reference);

}  // namespace zel::test

#endif  // TESTS_FAKE_JNI_JNI_CALL_H_
