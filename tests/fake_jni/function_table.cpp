#include "tests/fake_jni/function_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "tests/recorder/recorder.h"

namespace zel::test {

namespace {

/** A function's name as a template argument. */
template <size_t size>
struct Name {
  constexpr Name(const char (&text)[size]) { std::copy_n(text, size, letters); }
  char letters[size];
};

[[noreturn]] void refuse(const char* function) {
  const HostCode host;
  std::puts(recorder().transcript().c_str());
  std::printf("The JNI function %s is outside the list that this bridge may call.\n", function);
  std::fflush(stdout);
  std::abort();
}

template <Name name, typename Result, typename... Arguments>
struct Refusal {
  static Result call(Arguments...) { refuse(name.letters); }
  static Result callVariadic(Arguments..., ...) { refuse(name.letters); }
};

template <Name name, typename Result, typename... Arguments>
void refuseCalls(Result (*&slot)(Arguments...)) {
  slot = Refusal<name, Result, Arguments...>::call;
}

template <Name name, typename Result, typename... Arguments>
void refuseCalls(Result (*&slot)(Arguments..., ...)) {
  slot = Refusal<name, Result, Arguments...>::callVariadic;
}

JNINativeInterface_ filledTable() {
  JNINativeInterface_ table = {};
#define JNI_FUNCTION(name) refuseCalls<#name>(table.name);
#include "tests/fake_jni/jni_functions.inc"
#undef JNI_FUNCTION
  answerClasses(table);
  answerStringsAndArrays(table);
  answerCalls(table);
  return table;
}

}  // namespace

const JNINativeInterface_& functionTable() {
  static const JNINativeInterface_ table = filledTable();
  return table;
}

}  // namespace zel::test
