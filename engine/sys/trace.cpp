#include "engine/sys/trace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "engine/sys/mutex.h"

namespace zel::sys {

namespace {

constexpr std::int64_t kMostOlderFiles = 1000;
constexpr std::size_t kLongestMessage = 2048;

/** A trace file that rotates when it is full. */
class TraceFile {
 public:
  TraceFile(std::string component, std::string name)
      : component_(std::move(component)), name_(std::move(name)) {}
  ~TraceFile() { closeFile(); }
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  const std::string& name() const { return name_; }

  void adopt(std::string component, TraceSettings settings) {
    component_ = std::move(component);
    olderFiles_ = std::clamp<std::int64_t>(settings.olderFiles, 0, kMostOlderFiles);
    kibibytesPerFile_ = std::max<std::int64_t>(settings.kibibytesPerFile, 0);
  }

  bool open() {
    closeFile();
    fd_ = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY,
                 S_IRUSR | S_IWUSR);
    if (fd_ < 0) return false;
    struct stat status {};
    if (fstat(fd_, &status) != 0 || !S_ISREG(status.st_mode)) {
      closeFile();
      return false;
    }
    // An earlier file may have been made readable for others.
    (void)fchmod(fd_, S_IRUSR | S_IWUSR);
    return true;
  }

  void write(const std::string& when, const std::string& message) {
    if (isFull()) rotate();
    std::string line = when + ' ' + component_ + ' ' + message + '\n';
    // The trace has no way to report that it could not be written.
    [[maybe_unused]] ssize_t written = ::write(fd_, line.data(), line.size());
  }

 private:
  bool isFull() const {
    struct stat status {};
    return kibibytesPerFile_ > 0 && fstat(fd_, &status) == 0 &&
           status.st_size / 1024 >= kibibytesPerFile_;
  }

  void rotate() {
    if (olderFiles_ == 0) {
      (void)ftruncate(fd_, 0);
      return;
    }
    for (std::int64_t age = olderFiles_; age > 1; --age) {
      (void)std::rename(older(age - 1).c_str(), older(age).c_str());
    }
    (void)std::rename(name_.c_str(), older(1).c_str());
    open();
  }

  std::string older(std::int64_t age) const { return name_ + '.' + std::to_string(age); }

  void closeFile() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

  std::string component_;
  std::string name_;
  std::int64_t olderFiles_ = 0;
  std::int64_t kibibytesPerFile_ = 0;
  int fd_ = -1;
};

struct Trace {
  Mutex mutex;
  std::vector<std::unique_ptr<TraceFile>> files ZEL_GUARDED_BY(mutex);
  std::atomic<bool> on = false;
};

// Never destroyed: a thread may still trace while the process exits.
Trace& trace() {
  static auto* instance = new Trace;
  return *instance;
}

std::string now() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  tm utc{};
  gmtime_r(&time.tv_sec, &utc);
  char text[64];
  std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  std::snprintf(text + length, sizeof text - length, ".%03ldZ %d/%d", time.tv_nsec / 1'000'000,
                getpid(), gettid());
  return text;
}

// A label may hold a line end, which must not look like a line of the trace.
std::string oneLine(const char* format, va_list arguments) {
  char text[kLongestMessage];
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): every caller has called va_start.
  int length = std::vsnprintf(text, sizeof text, format, arguments);
  std::string message(text,
                      std::min(static_cast<std::size_t>(std::max(length, 0)), sizeof text - 1));
  std::replace_if(
      message.begin(), message.end(),
      [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; }, '?');
  return message;
}

void writeToAll(const char* format, va_list arguments) {
  if (!trace().on.load(std::memory_order_relaxed)) return;
  std::string message = oneLine(format, arguments);
  std::string when = now();
  Trace& all = trace();
  const Lock lock(all.mutex);
  for (auto& file : all.files) file->write(when, message);
}

}  // namespace

Status startTrace(const char* component, const char* fileName, TraceSettings settings) {
  if (component == nullptr || fileName == nullptr) return Failure{ZELKM_ERR_NULL_PARAMETER};
  if (*fileName == '\0') return Failure{ZELKM_ERR_FILENAME_NULL};
  Trace& all = trace();
  const Lock lock(all.mutex);
  auto& files = all.files;
  auto known = std::find_if(files.begin(), files.end(),
                            [&](const auto& file) { return file->name() == fileName; });
  if (known != files.end()) {
    (*known)->adopt(component, settings);
    return success();
  }
  auto file = std::make_unique<TraceFile>(component, fileName);
  if (!file->open()) return Failure{ZELKM_ERR_FILE_OPEN_TO_WRITE};
  file->adopt(component, settings);
  files.push_back(std::move(file));
  all.on = true;
  return success();
}

void stopTrace() {
  Trace& all = trace();
  const Lock lock(all.mutex);
  all.on = false;
  all.files.clear();
}

void traceLine(const char* format, ...) {
  int savedErrno = errno;
  va_list arguments;
  va_start(arguments, format);
  writeToAll(format, arguments);
  va_end(arguments);
  errno = savedErrno;
}

Failure fail(int code, const char* format, ...) {
  int savedErrno = errno;
  va_list arguments;
  va_start(arguments, format);
  writeToAll(format, arguments);
  va_end(arguments);
  errno = savedErrno;
  return Failure{code};
}

}  // namespace zel::sys
