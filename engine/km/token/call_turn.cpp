#include "engine/km/token/call_turn.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "engine/sys/bytes.h"
#include "engine/sys/hexadecimal.h"

namespace zel::km::token {

namespace {

constexpr int kNoFile = -1;
constexpr std::chrono::milliseconds kBetweenTries{1};

// What is locked of the file. Who waits for the turn keeps the next place, so that a process that
// has just ended a turn does not take the following ones as well.
constexpr off_t kTurn = 0;
constexpr off_t kNextPlace = 1;

/** One file for each module file, by whatever name that was found. */
std::string lockFileFor(const std::string& moduleFile) {
  std::error_code ignored;
  std::filesystem::path real = std::filesystem::canonical(moduleFile, ignored);
  if (real.empty()) real = moduleFile;
  std::array<std::uint8_t, EVP_MAX_MD_SIZE> digest{};
  EVP_Digest(real.c_str(), real.native().size(), digest.data(), nullptr, EVP_sha256(), nullptr);
  constexpr std::size_t kEnoughToTellApart = 8;

  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') folder = "/tmp";
  return std::string(folder) + "/vosmar-token-" + std::to_string(getuid()) + "-" +
         sys::hexadecimal(sys::ByteView(digest).first(kEnoughToTellApart)) + ".lock";
}

/** The file that processes lock; nobody else's, and no link that leads elsewhere. */
int openLockFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  struct stat status {};
  if (file != kNoFile && (fstat(file, &status) != 0 || status.st_uid != getuid())) {
    close(file);
    return kNoFile;
  }
  return file;
}

/** Locks or unlocks a place without waiting, by a lock that the threads of a process share. */
int changeLock(int file, short type, off_t place) {
  struct flock wanted {};
  wanted.l_type = type;
  wanted.l_whence = SEEK_SET;
  wanted.l_start = place;
  wanted.l_len = 1;
  return fcntl(file, F_OFD_SETLK, &wanted);
}

}  // namespace

Turns::Turns(const std::string& moduleFile, std::chrono::milliseconds patience)
    : path_(lockFileFor(moduleFile)), patience_(patience) {}

/** Patience with other processes does not run out while it is other threads that are waited for. */
bool Turns::begin() {
  const Clock::time_point arrived = Clock::now();
  threads_.lock();
  if (depth_++ == 0) had_ = lockFile(std::max(arrived, lastEnd_) + patience_);
  return had_;
}

void Turns::end() {
  if (--depth_ == 0 && had_) {
    unlock(kTurn);
    lastEnd_ = Clock::now();
  }
  threads_.unlock();
}

bool Turns::lockFile(Clock::time_point deadline) {
  // A lock goes with the opening of its file, which a fork shares: each process opens it itself.
  if (process_ != getpid()) {
    process_ = getpid();
    if (file_ != kNoFile) close(file_);
    file_ = openLockFile(path_);
  }
  if (!lock(kNextPlace, deadline)) return false;
  const bool had = lock(kTurn, deadline);
  unlock(kNextPlace);
  return had;
}

bool Turns::lock(off_t place, Clock::time_point deadline) {
  while (file_ != kNoFile && changeLock(file_, F_WRLCK, place) != 0) {
    if (errno == EAGAIN || errno == EACCES) {
      if (Clock::now() > deadline) return false;
      std::this_thread::sleep_for(kBetweenTries);
    } else if (errno != EINTR) {
      close(file_);
      file_ = kNoFile;  // no locks to be had there: every process for itself
    }
  }
  return true;
}

void Turns::unlock(off_t place) const {
  if (file_ != kNoFile) changeLock(file_, F_UNLCK, place);
}

}  // namespace zel::km::token
