#include "engine/km/store/file_state.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <ctime>

#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
// Time stamps are as coarse as the system's tick, 10 ms at most.
constexpr std::int64_t kCoarsestTick = 20'000'000;

std::int64_t nanosecondsOf(const timespec& time) {
  return time.tv_sec * kNanoseconds + time.tv_nsec;
}

}  // namespace

bool FileState::settled() const {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const std::int64_t age = nanosecondsOf(now) - changed;
  return age > kCoarsestTick;
}

sys::Result<FileState> stateOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    const bool denied = errno == EACCES || errno == EPERM;
    return sys::fail(denied ? ZELKM_ERR_FILE_OPEN_NOT_ALLOWED : ZELKM_ERR_KEYDB_NOT_EXIST, "%s: %s",
                     path.c_str(), std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_FILE_TYPE, "%s: not a regular file", path.c_str());
  }
  return FileState{{status.st_dev, status.st_ino},
                   status.st_size,
                   nanosecondsOf(status.st_mtim),
                   nanosecondsOf(status.st_ctim)};
}

}  // namespace zel::km
