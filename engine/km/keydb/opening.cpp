#include "engine/km/keydb/opening.h"

#include <cstdlib>
#include <utility>

#include "engine/km/keydb/password_cache.h"
#include "engine/km/keydb/schema.h"
#include "engine/km/keydb/stash.h"

namespace zel::km {

namespace {

std::string absolutePathOf(const sys::FileName& name) {
  char* resolved = ::realpath(name.path().c_str(), nullptr);
  if (resolved == nullptr) return name.path();
  std::string path = resolved;
  std::free(resolved);
  return path;
}

}  // namespace

LockedFile::LockedFile(sys::FileName name, FileIdentity identity)
    : name_(std::move(name)), path_(absolutePathOf(name_)), identity_(identity) {}

sys::Result<LockedFile> LockedFile::read(const sys::FileName& name) {
  sys::Result<FileState> state = stateOf(name.path());
  if (!state) return state.failure();
  LockedFile file(name, state.value().identity);
  sys::Result<std::unique_ptr<Connection>> connection = Connection::open(file.path_);
  if (!connection) return connection.failure();
  file.connection_ = std::move(connection.value());
  sys::Status known = checkSchema(*file.connection_);
  if (!known) return known.failure();
  sys::Result<Parameters> parameters = readParameters(*file.connection_);
  if (!parameters) return parameters.failure();
  file.parameters_ = std::move(parameters.value());
  return file;
}

sys::Result<sys::Password> LockedFile::stashedPassword() const {
  sys::Result<sys::SecretBytes> utf8 = readStash(name_.path(), parameters_.salt);
  if (!utf8) return utf8.failure();
  return sys::Password(std::move(utf8.value()));
}

sys::Result<UnlockedFile> LockedFile::unlock(sys::Password password) && {
  sys::Result<sys::SecretBytes> master = PasswordCache::instance().open(
      identity_, parameters_, password.bytes(),
      [&](sys::ByteView passwordKey) { return openMasterKey(parameters_, passwordKey); });
  if (!master) return master.failure();
  return UnlockedFile(std::move(*this), std::move(password), std::move(master.value()));
}

sys::Result<UnlockedFile> LockedFile::unlock(sys::Password password, sys::ByteView passwordKey) && {
  sys::Result<sys::SecretBytes> master = openMasterKey(parameters_, passwordKey);
  if (!master) return master.failure();
  return UnlockedFile(std::move(*this), std::move(password), std::move(master.value()));
}

UnlockedFile::UnlockedFile(LockedFile file, sys::Password password, sys::SecretBytes masterKey)
    : file_(std::move(file)), password_(std::move(password)), masterKey_(std::move(masterKey)) {}

sys::Result<UnlockedFile> UnlockedFile::open(const sys::FileName& name,
                                             const PasswordOrStash& password) {
  sys::Result<LockedFile> locked = LockedFile::read(name);
  if (!locked) return locked.failure();
  if (password) return std::move(locked.value()).unlock(*password);
  sys::Result<sys::Password> stashed = locked.value().stashedPassword();
  if (!stashed) return stashed.failure();
  return std::move(locked.value()).unlock(std::move(stashed.value()));
}

}  // namespace zel::km
