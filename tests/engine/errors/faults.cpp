#include "tests/engine/errors/faults.h"

#include <openssl/evp.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <csignal>
#include <optional>

#include "tests/engine/km/heap.h"
#include "tests/engine/sys/bound_by_modes.h"

namespace zel::km::errors::faults {

namespace {

constexpr int kNeverLocked = SQLITE_LOCK_EXCLUSIVE + 1;

struct Faults {
  bool allocationFails = false;
  int openingAnswer = SQLITE_OK;
  int readingAnswer = SQLITE_OK;
  int lockedFrom = kNeverLocked; /**< the lowest of SQLite's locks that nobody gets */
  bool diskIsFull = false;
  bool boundByModes = false;
  bool cryptographyFails = false;
};
Faults planned;
Faults inForce;
std::optional<test::BoundByModes> boundByModes;

/** SQLite's own file system, with a hand in it. */
class FileSystem {
 public:
  FileSystem() : below_(sqlite3_vfs_find(nullptr)), vfs_(*below_) {
    vfs_.zName = "failing";
    vfs_.xOpen = open;
    vfs_.xSleep = sleep;
    sqlite3_vfs_register(&vfs_, 1);
  }

  static FileSystem& instance() {
    static FileSystem fileSystem;
    return fileSystem;
  }

 private:
  static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    if (inForce.openingAnswer != SQLITE_OK) return inForce.openingAnswer;
    FileSystem& self = instance();
    const int answer = self.below_->xOpen(self.below_, name, file, flags, outFlags);
    if (answer == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) self.takeOver(*file);
    return answer;
  }

  static int read(sqlite3_file* file, void* into, int length, sqlite3_int64 offset) {
    if (inForce.readingAnswer != SQLITE_OK) return inForce.readingAnswer;
    return instance().methodsBelow_->xRead(file, into, length, offset);
  }

  static int lock(sqlite3_file* file, int level) {
    if (level >= inForce.lockedFrom) return SQLITE_BUSY;
    return instance().methodsBelow_->xLock(file, level);
  }

  // Nobody is there to wait for.
  static int sleep(sqlite3_vfs*, int microseconds) { return microseconds; }

  // SQLite has one set of methods for every database on a local disk, another for journals.
  void takeOver(sqlite3_file& file) {
    methodsBelow_ = file.pMethods;
    methods_ = *methodsBelow_;
    methods_.xRead = read;
    methods_.xLock = lock;
    file.pMethods = &methods_;
  }

  sqlite3_vfs* below_;
  sqlite3_vfs vfs_;
  const sqlite3_io_methods* methodsBelow_ = nullptr;
  sqlite3_io_methods methods_{};
};

// Before the first database is opened.
[[maybe_unused]] const FileSystem& installed = FileSystem::instance();

void setFileSizeLimit(rlim_t most) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = most;
  setrlimit(RLIMIT_FSIZE, &limit);
}

}  // namespace

void failAllocation() { planned.allocationFails = true; }
void failOpening(int sqliteCode) { planned.openingAnswer = sqliteCode; }
void failReading(int sqliteCode) { planned.readingAnswer = sqliteCode; }
void lockOut() { planned.lockedFrom = SQLITE_LOCK_SHARED; }
void lockOutOfWriting() { planned.lockedFrom = SQLITE_LOCK_RESERVED; }
void fillDisk() { planned.diskIsFull = true; }
void bindByModes() { planned.boundByModes = true; }
void failCryptography() { planned.cryptographyFails = true; }

void begin() {
  inForce = planned;
  planned = {};
  if (inForce.diskIsFull) {
    std::signal(SIGXFSZ, SIG_IGN);
    setFileSizeLimit(0);
  }
  if (inForce.boundByModes) boundByModes.emplace();
  if (inForce.cryptographyFails) EVP_set_default_properties(nullptr, "provider=none");
  heap::failNext(inForce.allocationFails);
}

void end() {
  heap::failNext(false);
  boundByModes.reset();
  if (inForce.diskIsFull) setFileSizeLimit(RLIM_INFINITY);
  if (inForce.cryptographyFails) EVP_set_default_properties(nullptr, "");
  inForce = {};
}

}  // namespace zel::km::errors::faults
