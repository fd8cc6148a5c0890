#ifndef BRIDGE_MARSHAL_HELD_STRINGS_H_
#define BRIDGE_MARSHAL_HELD_STRINGS_H_

#include <jni.h>

#include <array>
#include <cstddef>
#include <initializer_list>

#include "bridge/marshal/text_trace.h"

namespace zel::bridge {

/**
 * HeldStrings is the ledger of the Java strings that a native holds, in the order it took them.
 *
 *     HeldStrings held(env);
 *     const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
 *     const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
 *     ...
 *     held.releaseAll();
 *
 * The order of acquiring, tracing and releasing is what a caller of the bridge can observe, so it
 * happens when told, and the destructor releases nothing: its order would be the reverse, and it
 * would release what a native must leave held. It only asserts that the native decided.
 *
 * A text is modified UTF-8 and lives until its release. A string that could not be acquired is
 * traced as null, handed on as null, and not released.
 */
class HeldStrings {
 public:
  explicit HeldStrings(JNIEnv* env) : env_(env) {}
  HeldStrings(const HeldStrings&) = delete;
  HeldStrings& operator=(const HeldStrings&) = delete;
  ~HeldStrings();

  /** take acquires the string and traces it. The string itself is not tested for null. */
  const char* take(jstring string, TextTrace trace);

  /** takeIfGiven leaves a null string alone, and traces it as null. */
  const char* takeIfGiven(jstring string, TextTrace trace);

  /** takeIfGiven leaves a null string alone, and has a trace of its own for it. */
  const char* takeIfGiven(jstring string, TextTrace given, FixedTrace absent);

  /** takeIfGiven without a trace leaves a null string alone. */
  const char* takeIfGiven(jstring string);

  /** releaseAll releases every string in the order of acquiring. */
  void releaseAll();

  /** releaseInOrder releases every string in the order given, which names each of them. */
  void releaseInOrder(std::initializer_list<const char*> texts);

  /** leaveHeld leaves every string unreleased, on the few paths that require it. */
  void leaveHeld();

 private:
  struct Held {
    jstring string;
    const char* text;
  };

  const char* acquire(jstring string);
  void release(Held& held);

  JNIEnv* env_;
  std::array<Held, 8> held_{};
  std::size_t count_ = 0;
};

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_HELD_STRINGS_H_
