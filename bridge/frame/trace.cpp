#include "bridge/frame/trace.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>

#include "bridge/frame/stated_leaks.h"

namespace zel::bridge {

const char* debugMsgEnv = nullptr;
std::atomic<std::int32_t> debugLogOn = 0;
std::FILE* debugLogFile = nullptr;
char* traceFormatBuffer = nullptr;

namespace {

/** Guards debugLogFile and traceFormatBuffer; taken only while the log is on or changes. */
std::mutex logLock;

constexpr std::size_t kTimeStampSize = 128;
constexpr std::size_t kTimeStampRoom = 150;

/**
 * buildLogFormat puts the time stamp before the format. The message stays a format, so the log
 * expands its arguments exactly as standard error does.
 */
void buildLogFormat(const char* format) {
  std::free(traceFormatBuffer);
  const std::size_t size = std::strlen(format) + kTimeStampRoom;
  traceFormatBuffer = static_cast<char*>(std::malloc(size));
  if (traceFormatBuffer == nullptr) return;

  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char timeStamp[kTimeStampSize];
  std::strftime(timeStamp, sizeof timeStamp, "%Y%m%d|%H:%M:%S", &local);
  std::snprintf(traceFormatBuffer, size, "%s || %s", timeStamp, format);
}

[[gnu::format(printf, 1, 0)]] void writeLog(const char* format, std::va_list arguments) {
  const std::lock_guard guard(logLock);
  if (!isLogging()) return;  // GCOVR_EXCL_BR_LINE: another thread closed it in the meantime
  buildLogFormat(format);
  if (debugLogFile == nullptr || traceFormatBuffer == nullptr) return;
  std::vfprintf(debugLogFile, traceFormatBuffer, arguments);
}

}  // namespace

void writeTrace(const char* format, ...) {
  std::va_list arguments;
  if (debugMsgEnv != nullptr) {
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
  }
  if (isLogging()) {
    va_start(arguments, format);
    writeLog(format, arguments);
    va_end(arguments);
  }
}

void openDebugLog(const char* fileName) {
  const std::lock_guard guard(logLock);
  leaveStreamOpen(debugLogFile);
  debugLogOn = 1;
  debugLogFile = std::fopen(fileName, "w+t");
}

void closeDebugLog() {
  const std::lock_guard guard(logLock);
  std::free(traceFormatBuffer);
  traceFormatBuffer = nullptr;
  if (debugLogFile != nullptr) {
    std::fclose(debugLogFile);
    debugLogFile = nullptr;
  }
  debugLogOn = 0;
}

}  // namespace zel::bridge
