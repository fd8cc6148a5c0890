#include "engine/km/keydb/passwords.h"

#include <memory>
#include <utility>

#include "engine/cms/pbe.h"
#include "engine/km/keydb/database_file.h"
#include "engine/km/keydb/password_cache.h"
#include "engine/km/keydb/password_rules.h"
#include "engine/km/keydb/sharing.h"
#include "engine/km/keydb/stash.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** Writes the parameters in the place of those that the old password was right for. */
sys::Status replaceParameters(const DatabaseFile& file, const Parameters& old,
                              const Parameters& renewed) {
  sys::Result<BorrowedConnection> borrowed = file.borrow();
  if (!borrowed) return borrowed.failure();
  Connection& connection = *borrowed.value();
  return Transaction::run(connection, Transaction::Kind::write, [&]() -> sys::Status {
    sys::Result<Parameters> present = readParameters(connection);
    if (!present) return present.failure();
    if (present.value().salt != old.salt) {
      return sys::fail(ZELKM_ERR_DATABASE_INVALID_PASSWORD, "somebody else changed it meanwhile");
    }
    return writeParameters(connection, renewed);
  });
}

}  // namespace

sys::Result<sys::SecretBytes> setPassword(Parameters& parameters, const sys::Password& password,
                                          sys::ByteView masterKey) {
  sys::Result<DatabaseKeys> keys = DatabaseKeys::fromMaster(masterKey);
  if (!keys) return keys.failure();
  parameters.iterations = cms::kPbeIterations;
  parameters.salt.resize(cms::kPbeSaltLength);
  sys::Status set = fillRandom(parameters.salt);
  if (set) set = renewPrivateKeyKey(parameters, keys.value(), password.bytes());
  if (!set) return set.failure();
  sys::Result<cms::PbeKey> derived =
      cms::derivePbeKey(password.bytes(), parameters.salt, parameters.iterations);
  if (!derived) return derived.failure();
  set = closeMasterKey(parameters, derived.value().key, masterKey);
  if (!set) return set.failure();
  return std::move(derived.value().key);
}

sys::Status changeDatabasePassword(const sys::FileName& name, const PasswordOrStash& oldPassword,
                                   const sys::Password& newPassword, std::int64_t lifetime) {
  sys::Result<std::int64_t> expiresAt = expiryOf(lifetime);
  if (!expiresAt) return expiresAt.failure();
  sys::Result<UnlockedFile> unlocked = UnlockedFile::open(name, oldPassword);
  if (!unlocked) return unlocked.failure();
  const FileIdentity identity = unlocked.value().identity();
  const Parameters old = unlocked.value().parameters();
  sys::Status allowed = checkNewPassword(newPassword.bytes(), old.approvedOnly);
  if (!allowed) return allowed;

  Parameters renewed = old;
  renewed.expiresAt = expiresAt.value();
  sys::Result<sys::SecretBytes> passwordKey =
      setPassword(renewed, newPassword, unlocked.value().masterKey());
  if (!passwordKey) return passwordKey.failure();
  sys::Result<std::shared_ptr<const DatabaseFile>> file =
      OpenFiles::instance().share(std::move(unlocked.value()));
  if (!file) return file.failure();
  sys::Status replaced = replaceParameters(*file.value(), old, renewed);
  if (!replaced) return replaced;
  PasswordCache::instance().replace(identity, renewed, newPassword.bytes(), passwordKey.value());
  return sys::success();
}

sys::Status stashDatabasePassword(const sys::FileName& name, const sys::Password& password) {
  sys::Result<UnlockedFile> unlocked = UnlockedFile::open(name, password);
  if (!unlocked) return unlocked.failure();
  const Parameters& parameters = unlocked.value().parameters();
  sys::Status valid = checkNotExpired(parameters.expiresAt);
  if (!valid) return valid;
  return writeStash(name.path(), parameters.salt, password.bytes());
}

sys::Result<bool> needsPassword(const sys::FileName& name) {
  sys::Result<LockedFile> locked = LockedFile::read(name);
  if (!locked) return locked.failure();
  return !locked.value().stashedPassword();
}

}  // namespace zel::km
