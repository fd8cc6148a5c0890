#ifndef TESTS_FAKE_JNI_FAKE_JNI_H_
#define TESTS_FAKE_JNI_FAKE_JNI_H_

#include <jni.h>

#include <map>
#include <string>

#include "tests/fake_jni/java_heap.h"

/**
 * @file
 * A scripted JNI environment. The functions that the bridge may call work on a small Java heap and
 * record themselves; every other slot of the function table aborts with its name.
 *
 *     FakeJni jni;
 *     jni.heap.declare("p/Item", {{JavaMember::kMethod, "<init>", "([B)V"}});
 *     recorder().faults.failCall("GetMethodID", 1);    // answers null
 *     Java_p_Maker_make(jni.env(), maker, jni.heap.newString("a"));
 *     // FindClass("p/Item") = class p/Item
 *     // GetMethodID(class p/Item, "<init>", "([B)V") = null
 *
 * What no correct caller does is recorded as an error: an unknown reference, a null where JNI takes
 * none, an argument of another type than the signature says, a string released twice or with
 * another string's characters. Two nulls are let through because natives are required to pass them
 * on: a null string to GetStringUTFChars, and a null object or field where a constructor or a field
 * lookup is not checked.
 *
 * A method ID shows as its name. Functions without a result cannot fail.
 */

namespace zel::test {

class FakeJni {
 public:
  FakeJni();
  ~FakeJni();
  FakeJni(const FakeJni&) = delete;
  FakeJni& operator=(const FakeJni&) = delete;

  /** nameReferences() lets the recorder name the references that traces print; a reset ends it. */
  void nameReferences();

  JNIEnv* env() { return &environment_; }

  JavaHeap heap;

  /** Every void method of an object ends with an exception, which stays pending. */
  bool voidMethodsThrow = false;

  /** Of a string's characters that are held, the string. */
  std::map<const char*, jstring> heldCharacters;

  static FakeJni& of(JNIEnv* env) { return *static_cast<Environment*>(env)->fake; }

 private:
  struct Environment : JNIEnv_ {
    FakeJni* fake = nullptr;
  };

  Environment environment_;
};

}  // namespace zel::test

#endif  // TESTS_FAKE_JNI_FAKE_JNI_H_
