#include "engine/sys/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "engine/sys/descriptor.h"
#include "engine/sys/system_failure.h"
#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

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

/** Writes into a new draft; the mode that a replaced file had may be null. */
Status writeDraft(Draft& draft, const std::string& name, ByteView bytes, FileAccess access,
                  const mode_t* mode) {
  Result<Descriptor> created = draft.create(access);
  if (!created) return created.failure();
  Descriptor& file = created.value();
  if (access == FileAccess::everybody && mode != nullptr) (void)::fchmod(file.number(), *mode);
  if (!writeAll(file.number(), bytes) || ::fsync(file.number()) != 0 || !file.close()) {
    return fail(ZELKM_ERR_FILE_WRITE, "%s: %s", name.c_str(), std::strerror(errno));
  }
  return success();
}

Status replace(const std::string& name, ByteView bytes, FileAccess access, const mode_t* mode) {
  Draft draft(name);
  if (Status written = writeDraft(draft, name, bytes, access, mode); !written) return written;
  return draft.takeName();
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
  Draft draft(name);
  if (Status written = writeDraft(draft, name, bytes, access, nullptr); !written) return written;
  return draft.takeNewName();
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

}  // namespace zel::sys
