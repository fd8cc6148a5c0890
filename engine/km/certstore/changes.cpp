#include "engine/km/certstore/changes.h"

#include <array>
#include <utility>

#include "engine/cms/certificates.h"
#include "engine/km/certstore/entry_file.h"
#include "engine/sys/files.h"
#include "engine/sys/hexadecimal.h"
#include "engine/sys/trace.h"

namespace zel::km::certstore {

namespace {

/** The n-th name for a file: `THUMBPRINT.pfx`, then with two hexadecimal digits in between. */
std::string nameFor(const std::string& thumbprint, int number) {
  if (number == 0) return thumbprint + ".pfx";
  const std::array<std::uint8_t, 1> digits = {static_cast<std::uint8_t>(number - 1)};
  return thumbprint + "." + sys::hexadecimal(digits) + ".pfx";
}

constexpr int kMostNames = 257;

}  // namespace

sys::Status Changes::begin() {
  if (sys::Status made = folder_.make(); !made) return made;
  sys::Result<sys::FolderLock> lock = folder_.lock();
  if (!lock) return lock.failure();
  lock_.emplace(std::move(lock).value());
  return sys::success();
}

sys::Status Changes::commit() {
  sys::Status status = sys::success();
  for (const std::string& fileName : std::exchange(doomed_, {})) {
    sys::Status removed = sys::removeFile(folder_.path(fileName));
    if (!removed && status) status = removed;
  }
  done_.clear();
  lock_.reset();
  return status;
}

void Changes::rollBack() {
  doomed_.clear();
  for (; !done_.empty(); done_.pop_back()) {
    const Undo& undo = done_.back();
    const std::string path = folder_.path(undo.fileName);
    const sys::Status undone =
        undo.oldContent ? sys::writeFile(path, *undo.oldContent, sys::FileAccess::ownerOnly)
                        : sys::removeFile(path);
    if (!undone) sys::traceLine("%s stays changed", path.c_str());
  }
  lock_.reset();
}

sys::Status Changes::create(const KeyEntry& entry, std::optional<std::int64_t> modified) {
  const sys::Result<sys::SecretBytes> content = encodeEntry(entry);
  if (!content) return content.failure();
  const sys::Result<std::string> fileName = writeToFreeName(entry.certificate, content.value());
  if (!fileName) return fileName.failure();
  done_.push_back({.fileName = fileName.value(), .oldContent = std::nullopt});
  return modified ? sys::setModificationTime(folder_.path(fileName.value()), *modified)
                  : sys::success();
}

sys::Result<std::string> Changes::writeToFreeName(const sys::Bytes& certificate,
                                                  sys::ByteView content) {
  const std::string thumbprint = cms::thumbprint(certificate);
  for (int number = 0; number < kMostNames; ++number) {
    std::string fileName = nameFor(thumbprint, number);
    const sys::Status written =
        sys::writeNewFile(folder_.path(fileName), content, sys::FileAccess::ownerOnly);
    if (written) return fileName;
    if (written.code() != ZELKM_ERR_DATABASE_ALREADY_EXISTS) return written.failure();
  }
  return sys::fail(ZELKM_ERR_FILE_WRITE, "all names for %s are taken", thumbprint.c_str());
}

sys::Status Changes::rewrite(const std::string& fileName, const KeyEntry& entry,
                             std::int64_t modified) {
  const std::string path = folder_.path(fileName);
  const sys::Result<sys::SecretBytes> content = encodeEntry(entry);
  if (!content) return content.failure();
  sys::Result<sys::SecretBytes> old = sys::readOwnFile(path, kMostFileBytes);
  if (!old) return old.failure();
  sys::Status written = sys::writeFile(path, content.value(), sys::FileAccess::ownerOnly);
  if (!written) return written;
  done_.push_back({.fileName = fileName, .oldContent = std::move(old).value()});
  return sys::setModificationTime(path, modified);
}

}  // namespace zel::km::certstore
