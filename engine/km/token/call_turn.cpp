#include "engine/km/token/call_turn.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <string>

namespace zel::km::token {

namespace {

constexpr int kNoFile = -1;

/** The file that processes lock; nobody else's, and no link that leads elsewhere. */
int openLockFile() {
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') folder = "/tmp";
  const std::string path =
      std::string(folder) + "/vosmar-tokens-" + std::to_string(getuid()) + ".lock";
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  struct stat status {};
  if (file != kNoFile && (fstat(file, &status) != 0 || status.st_uid != getuid())) {
    close(file);
    return kNoFile;
  }
  return file;
}

/** What threads and processes take turns by. */
class Turns {
 public:
  static Turns& instance() {
    // Never destroyed: other threads may still be at work while the process exits.
    static auto* turns = new Turns;
    return *turns;
  }

  void begin() {
    threads_.lock();
    if (depth_++ == 0) lockFile();
  }

  void end() {
    if (--depth_ == 0 && file_ != kNoFile) flock(file_, LOCK_UN);
    threads_.unlock();
  }

 private:
  void lockFile() {
    // A lock goes with the opening of its file, which a fork shares: each process opens it itself.
    if (process_ != getpid()) {
      process_ = getpid();
      if (file_ != kNoFile) close(file_);
      file_ = openLockFile();
    }
    while (file_ != kNoFile && flock(file_, LOCK_EX) != 0) {
      if (errno != EINTR) file_ = kNoFile;
    }
  }

  std::recursive_mutex threads_;
  int depth_ = 0;
  pid_t process_ = 0;
  int file_ = kNoFile;
};

}  // namespace

CallTurn::CallTurn() { Turns::instance().begin(); }

CallTurn::~CallTurn() { Turns::instance().end(); }

}  // namespace zel::km::token
