#ifndef BRIDGE_MARSHAL_TEXT_TRACE_H_
#define BRIDGE_MARSHAL_TEXT_TRACE_H_

#include "bridge/frame/trace.h"

namespace zel::bridge {

/**
 * TextTrace is a trace message with exactly one directive, a "%s", as the compiler makes sure:
 *
 *     inline constexpr TextTrace kTraceKeyLabel{"JNI_DEBUG......cKeyLabel = %s\n"};
 *     kTraceKeyLabel(label);
 */
class TextTrace {
 public:
  consteval explicit TextTrace(const char* format)
      : format_(hasOneTextDirective(format) ? format : needsExactlyOneTextDirective()) {}

  void operator()(const char* text) const { traceMessage(format_, orNull(text)); }

 private:
  /** Not constexpr: a wrong text calls it while compiling, which does not compile. */
  static const char* needsExactlyOneTextDirective();

  static consteval bool hasOneTextDirective(const char* format) {
    int directives = 0;
    for (; *format != '\0'; ++format) {
      if (*format != '%') continue;
      if (format[1] != 's') return false;
      ++directives;
    }
    return directives == 1;
  }

  const char* format_;
};

/** FixedTrace is a trace message without any directive; what looks like one is printed as it is. */
class FixedTrace {
 public:
  consteval explicit FixedTrace(const char* text) : text_(text) {}

  void operator()() const { traceMessage("%s", text_); }

 private:
  const char* text_;
};

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_TEXT_TRACE_H_
