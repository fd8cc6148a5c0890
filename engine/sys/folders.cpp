#include "engine/sys/folders.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include "engine/sys/system_failure.h"
#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

constexpr std::chrono::seconds kLongestWait(5);
constexpr std::chrono::milliseconds kBetweenTries(5);

Descriptor openFolder(const std::string& name) {
  return Descriptor(::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

Result<std::string> homeFolder() {
  const char* home = ::secure_getenv("HOME");
  if (home != nullptr && *home == '/') return std::string(home);
  std::vector<char> texts(16'384);
  passwd entry{};
  passwd* found = nullptr;
  const int error = ::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found);
  if (error != 0 || found == nullptr || *found->pw_dir != '/') {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_EXIST, "neither HOME nor the user database has a folder");
  }
  return std::string(found->pw_dir);
}

Status requireOwnFolder(const std::string& name, mode_t barred) {
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) {
    return systemFailure(ZELKM_ERR_FILE_OPEN_TO_READ, name);
  }
  if (!S_ISDIR(status.st_mode)) {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "%s: not a folder", name.c_str());
  }
  if (status.st_uid != ::geteuid() && status.st_uid != 0) {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "%s: belongs to somebody else", name.c_str());
  }
  if ((status.st_mode & barred) != 0) {
    return fail(ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "%s: mode %03o lets others write", name.c_str(),
                status.st_mode & 0777U);
  }
  return success();
}

Status makeOwnFolder(const std::string& name) {
  if (::mkdir(name.c_str(), S_IRWXU) == 0) {
    // The new name is only sure to be there after a crash when the folder above is on the disk.
    const Descriptor above = openFolder(std::filesystem::path(name).parent_path());
    if (above && ::fsync(above.number()) == 0) return success();
    return fail(ZELKM_ERR_FILE_WRITE, "%s: folder not synced", name.c_str());
  }
  if (errno == EEXIST) return success();
  return systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, name);
}

Result<std::vector<std::string>> namesIn(const std::string& folder) {
  std::error_code error;
  std::vector<std::string> names;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    names.push_back(entry->path().filename());
  }
  if (error) {
    errno = error.value();
    return systemFailure(ZELKM_ERR_FILE_OPEN_TO_READ, folder);
  }
  return names;
}

Result<FolderLock> FolderLock::take(const std::string& folder) {
  Descriptor opened = openFolder(folder);
  if (!opened) return systemFailure(ZELKM_ERR_FILE_OPEN_TO_WRITE, folder);
  const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
  while (::flock(opened.number(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) {
      traceLine("%s: no lock: %s", folder.c_str(), std::strerror(errno));
      break;
    }
    if (std::chrono::steady_clock::now() > deadline) {
      return fail(ZELKM_ERR_DATABASE_WRITE, "%s: another process is writing", folder.c_str());
    }
    std::this_thread::sleep_for(kBetweenTries);
  }
  return FolderLock(std::move(opened));
}

}  // namespace zel::sys
