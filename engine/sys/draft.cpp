#include "engine/sys/draft.h"

#include <fcntl.h>
#include <openssl/rand.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "engine/sys/hexadecimal.h"
#include "engine/sys/system_failure.h"
#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

Descriptor openNew(const std::string& name, FileAccess access) {
  const mode_t mode = access == FileAccess::ownerOnly ? 0600 : 0666;
  return Descriptor(
      ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
}

std::string folderOf(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : name.substr(0, slash);
}

}  // namespace

Draft::Draft(std::string finalName)
    : finalName_(std::move(finalName)), name_(temporaryName(finalName_)) {}

Draft::~Draft() {
  if (created_) ::unlink(name_.c_str());
}

Result<Descriptor> Draft::create(FileAccess access) {
  Descriptor file = openNew(name_, access);
  if (!file) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, finalName_);
  created_ = true;
  return file;
}

Status Draft::takeNewName() {
  Status moved = moveToNewName(name_, finalName_);
  if (moved) created_ = false;
  return moved;
}

Status Draft::takeName() {
  if (std::rename(name_.c_str(), finalName_.c_str()) != 0) {
    return fail(ZELKM_ERR_FILE_WRITE, "%s: %s", finalName_.c_str(), std::strerror(errno));
  }
  created_ = false;
  if (syncFolderOf(finalName_)) return success();
  return fail(ZELKM_ERR_FILE_WRITE, "%s: folder not synced", finalName_.c_str());
}

Status createFile(const std::string& name, FileAccess access) {
  if (!openNew(name, access)) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, name);
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

std::string temporaryName(const std::string& name) {
  unsigned char random[8];
  // Uniqueness is wanted, not secrecy: the file is created exclusively.
  if (RAND_bytes(random, sizeof random) != 1) std::memset(random, 0, sizeof random);
  return name + ".new-" + hexadecimal(random);
}

bool syncFolderOf(const std::string& name) {
  Descriptor folder(::open(folderOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder && ::fsync(folder.number()) == 0;
}

}  // namespace zel::sys
