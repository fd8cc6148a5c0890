#include "engine/sys/files.h"

#include <fcntl.h>
#include <openssl/rand.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "engine/sys/descriptor.h"
#include "engine/sys/hexadecimal.h"
#include "engine/sys/system_failure.h"
#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

/** A file that is removed again unless it is kept. */
class Draft {
 public:
  explicit Draft(std::string name) : name_(std::move(name)) {}
  ~Draft() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  const std::string& name() const { return name_; }
  void keep() { name_.clear(); }

 private:
  std::string name_;
};

template <typename Container>
Result<Container> readAll(int descriptor, const std::string& name, std::size_t most) {
  Container bytes;
  std::size_t length = 0;
  for (;;) {
    if (length > most) return fail(ZELKM_ERR_IO, "%s: longer than %zu bytes", name.c_str(), most);
    bytes.resize(length + 4096);
    ssize_t got = ::read(descriptor, bytes.data() + length, bytes.size() - length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return fail(ZELKM_ERR_IO, "%s: %s", name.c_str(), std::strerror(errno));
    if (got == 0) break;
    length += static_cast<std::size_t>(got);
  }
  bytes.resize(length);
  return bytes;
}

/** What makes a file not the user's own. */
struct OwnRule {
  int openFlags;
  mode_t barred; /**< what nobody else may do */
};

Result<SecretBytes> readOwn(const std::string& name, std::size_t most, const OwnRule& rule) {
  if (name.empty()) return Failure{ZELKM_ERR_FILENAME_NULL};
  Descriptor file(
      ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | rule.openFlags));
  if (!file) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_READ, name);
  struct stat status {};
  if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "%s: not a regular file", name.c_str());
  }
  if (status.st_uid != ::geteuid() && status.st_uid != 0) {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "%s: belongs to somebody else", name.c_str());
  }
  if ((status.st_mode & rule.barred) != 0) {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "%s: mode %03o lets others in", name.c_str(),
                status.st_mode & 0777U);
  }
  return readAll<SecretBytes>(file.number(), name, most);
}

bool writeAll(int descriptor, ByteView bytes) {
  while (!bytes.empty()) {
    ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

mode_t modeOf(FileAccess access) { return access == FileAccess::ownerOnly ? 0600 : 0666; }

std::string folderOf(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : name.substr(0, slash);
}

// A new name is only sure to be there after a crash when its folder is on the disk.
bool syncFolderOf(const std::string& name) {
  Descriptor folder(::open(folderOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder && ::fsync(folder.number()) == 0;
}

// A replaced symbolic link would leave its target as it was.
std::string behindLinks(const std::string& name) {
  std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(name.c_str(), nullptr),
                                                       &std::free);
  return resolved ? resolved.get() : name;
}

Status writeInto(const std::string& name, ByteView bytes) {
  Descriptor file(::open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  if (!file) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, name);
  if (!writeAll(file.number(), bytes)) {
    return fail(ZELKM_ERR_FILE_WRITE, "%s: %s", name.c_str(), std::strerror(errno));
  }
  return success();
}

/** Writes a file under a name of its own, to be given its final one; the mode may be null. */
Status writeDraft(Draft& draft, const std::string& name, ByteView bytes, FileAccess access,
                  const mode_t* mode) {
  Descriptor file(::open(draft.name().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                         modeOf(access)));
  if (!file) {
    Failure failure = systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, name);
    draft.keep();
    return failure;
  }
  if (access == FileAccess::everybody && mode != nullptr) (void)::fchmod(file.number(), *mode);
  if (!writeAll(file.number(), bytes) || ::fsync(file.number()) != 0 || !file.close()) {
    return fail(ZELKM_ERR_FILE_WRITE, "%s: %s", name.c_str(), std::strerror(errno));
  }
  return success();
}

Status replace(const std::string& name, ByteView bytes, FileAccess access, const mode_t* mode) {
  Draft draft(temporaryName(name));
  if (Status written = writeDraft(draft, name, bytes, access, mode); !written) return written;
  if (std::rename(draft.name().c_str(), name.c_str()) != 0) {
    return fail(ZELKM_ERR_FILE_WRITE, "%s: %s", name.c_str(), std::strerror(errno));
  }
  draft.keep();
  if (!syncFolderOf(name)) return fail(ZELKM_ERR_FILE_WRITE, "%s: folder not synced", name.c_str());
  return success();
}

}  // namespace

Result<Bytes> readFile(const std::string& name, std::size_t most) {
  if (name.empty()) return Failure{ZELKM_ERR_FILENAME_NULL};
  Descriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!file) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_READ, name);
  return readAll<Bytes>(file.number(), name, most);
}

Result<SecretBytes> readSecretFile(const std::string& name, std::size_t most) {
  if (name.empty()) return Failure{ZELKM_ERR_FILENAME_NULL};
  Descriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!file) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_READ, name);
  return readAll<SecretBytes>(file.number(), name, most);
}

Result<SecretBytes> readOwnSecretFile(const std::string& name, std::size_t most) {
  return readOwn(name, most, {.openFlags = 0, .barred = S_IRWXG | S_IRWXO});
}

Result<SecretBytes> readOwnFile(const std::string& name, std::size_t most) {
  return readOwn(name, most, {.openFlags = O_NOFOLLOW, .barred = S_IWOTH});
}

Status writeFile(const std::string& name, ByteView bytes, FileAccess access) {
  if (name.empty()) return Failure{ZELKM_ERR_FILENAME_NULL};
  struct stat status {};
  const bool exists = ::stat(name.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) return writeInto(name, bytes);
  const mode_t mode = status.st_mode & 0777U;
  return replace(behindLinks(name), bytes, access, exists ? &mode : nullptr);
}

Status writeNewFile(const std::string& name, ByteView bytes, FileAccess access) {
  if (name.empty()) return Failure{ZELKM_ERR_FILENAME_NULL};
  Draft draft(temporaryName(name));
  if (Status written = writeDraft(draft, name, bytes, access, nullptr); !written) return written;
  Status moved = moveToNewName(draft.name(), name);
  if (moved) draft.keep();
  return moved;
}

Status createFile(const std::string& name, FileAccess access) {
  Descriptor file(
      ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, modeOf(access)));
  if (!file) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, name);
  return success();
}

Status moveToNewName(const std::string& from, const std::string& to) {
  int moved = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (moved != 0 && (errno == EINVAL || errno == ENOSYS)) {
    // Not every file system can rename without replacing; a hard link never replaces.
    moved = ::link(from.c_str(), to.c_str());
    if (moved == 0) ::unlink(from.c_str());
  }
  if (moved != 0) return systemFailure(ZELKM_ERR_FILE_WRITE, to);
  if (!syncFolderOf(to)) return fail(ZELKM_ERR_FILE_WRITE, "%s: folder not synced", to.c_str());
  return success();
}

Status removeFile(const std::string& name) {
  if (::unlink(name.c_str()) != 0) {
    if (errno == ENOENT) return success();
    return fail(ZELKM_ERR_FILE_REMOVE, "%s: %s", name.c_str(), std::strerror(errno));
  }
  if (!syncFolderOf(name))
    return fail(ZELKM_ERR_FILE_REMOVE, "%s: folder not synced", name.c_str());
  return success();
}

Status setModificationTime(const std::string& name, std::int64_t nanoseconds) {
  constexpr std::int64_t kSecond = 1'000'000'000;
  const timespec times[] = {{0, UTIME_OMIT}, {nanoseconds / kSecond, nanoseconds % kSecond}};
  if (::utimensat(AT_FDCWD, name.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0) return success();
  return fail(ZELKM_ERR_FILE_WRITE, "%s: %s", name.c_str(), std::strerror(errno));
}

std::string temporaryName(const std::string& name) {
  unsigned char random[8];
  // Uniqueness is wanted, not secrecy: the file is created exclusively.
  if (RAND_bytes(random, sizeof random) != 1) std::memset(random, 0, sizeof random);
  return name + ".new-" + hexadecimal(random);
}

}  // namespace zel::sys
