#ifndef BRIDGE_FRAME_TRACE_H_
#define BRIDGE_FRAME_TRACE_H_

#include <atomic>
#include <cstdint>
#include <cstdio>

/**
 * @file
 * The trace: two sinks for one line, standard error and the debug log file.
 *
 *     traceMessage("JNI_DEBUG......certCnt = %d\n", count);
 *     traceMessage("JNI_DEBUG......cLabel = %s\n", orNull(label));
 *     traceMessage("JNI_DEBUG......retArray = 0x%x\n", lowBits(array));
 *
 * Texts are whole literals, so that a line seen in a log is found in the source by search. Secrets
 * are traced in clear, like everything else: whoever switches the trace on wants to see them.
 */

namespace zel::bridge {

/** debugMsgEnv is the value of VOSMAR_JNI_DEBUG at load; any switches standard error on. */
extern const char* debugMsgEnv;

/** debugLogOn is 1 while the debug log is in use. */
extern std::atomic<std::int32_t> debugLogOn;

/** debugLogFile is the open debug log, null when it is off or could not be opened. */
extern std::FILE* debugLogFile;

/** traceFormatBuffer is the time-stamped format of the last log line, or null. */
extern char* traceFormatBuffer;

/** isLogging tells whether the debug log is on. */
inline bool isLogging() { return debugLogOn.load(std::memory_order_relaxed) != 0; }

/** isTracing tells whether any sink is on. */
inline bool isTracing() { return debugMsgEnv != nullptr || isLogging(); }

/**
 * writeTrace writes one message to each sink that is on, standard error first. Lines of several
 * threads do not mix: a lock guards the log while it is on. Call traceMessage instead.
 */
[[gnu::format(printf, 1, 2)]] void writeTrace(const char* format, ...);

/**
 * traceMessage(format, ...) is the trace operation. It is a macro because the arguments must cost
 * nothing while tracing is off, and the compiler must check them against the format.
 */
#define traceMessage(...) \
  (zel::bridge::isTracing() ? zel::bridge::writeTrace(__VA_ARGS__) : static_cast<void>(0))

/** openDebugLog switches the log on, into a new file of this name in the working directory. */
void openDebugLog(const char* fileName);

/** closeDebugLog switches the log off and releases what it held. */
void closeDebugLog();

/** orNull is how a text is traced: a null one prints as "null". */
inline const char* orNull(const char* text) { return text == nullptr ? "null" : text; }

/** nullOrNot is how a pointer result is traced. */
inline const char* nullOrNot(const void* pointer) {
  return pointer == nullptr ? "NULL" : "NON-NULL";
}

/** lowBits is how a Java reference is traced: its low 32 bits. */
inline unsigned lowBits(const void* reference) {
  return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(reference));
}

}  // namespace zel::bridge

#endif  // BRIDGE_FRAME_TRACE_H_
