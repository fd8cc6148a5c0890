#include "engine/km/keydb/database_lifecycle.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <tuple>
#include <utility>

#include "engine/km/keydb/database_file.h"
#include "engine/km/keydb/directory.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/password_cache.h"
#include "engine/km/keydb/password_rules.h"
#include "engine/km/keydb/schema.h"
#include "engine/km/keydb/stash.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/files.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** A file whose parameters have been read; nothing in it is unlocked. */
struct Locked {
  std::string path; /**< absolute, so that a change of directory does not lose it */
  FileIdentity identity;
  std::unique_ptr<Connection> connection;
  Parameters parameters;
};

/** A file whose password was right. */
struct Unlocked {
  Locked file;
  sys::SecretBytes password;
  sys::SecretBytes masterKey;
};

/** A database under a name of its own until it is whole. */
class Draft {
 public:
  explicit Draft(const std::string& name)
      : name_(sys::temporaryName(name)), journal_(name_ + "-journal") {}
  ~Draft() {
    if (!created_) return;
    ::unlink(journal_.c_str());
    ::unlink(name_.c_str());
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  const std::string& name() const { return name_; }

  sys::Status create() {
    sys::Status made = sys::createFile(name_, sys::FileAccess::ownerOnly);
    created_ = static_cast<bool>(made);
    if (made || made.code() == ZELKM_ERR_FILE_OPEN_NOT_ALLOWED) return made;
    return sys::Failure{ZELKM_ERR_DATABASE_CREATE};
  }
  sys::Status moveTo(const std::string& name) {
    sys::Status moved = sys::moveToNewName(name_, name);
    if (moved) created_ = false;
    return moved;
  }

 private:
  std::string name_;
  std::string journal_; /**< SQLite's, while it writes */
  bool created_ = false;
};

std::string absolutePathOf(const std::string& name) {
  char* resolved = ::realpath(name.c_str(), nullptr);
  if (resolved == nullptr) return name;
  std::string path = resolved;
  std::free(resolved);
  return path;
}

bool isThere(const std::string& name) {
  struct stat status {};
  return ::lstat(name.c_str(), &status) == 0;
}

/** Only a name that nothing of another database stands under can be given to a new one. */
sys::Status checkNameIsFree(const std::string& name) {
  // SQLite would play the journal of a database that is gone back into the new one.
  for (const char* suffix : {"", "-journal", "-wal"}) {
    if (isThere(name + suffix)) {
      return sys::fail(ZELKM_ERR_DATABASE_ALREADY_EXISTS, "%s%s exists", name.c_str(), suffix);
    }
  }
  return sys::success();
}

sys::Result<Locked> readLocked(const std::string& name) {
  sys::Result<FileState> state = stateOf(name);
  if (!state) return state.failure();
  Locked locked{absolutePathOf(name), state.value().identity, nullptr, {}};
  sys::Result<std::unique_ptr<Connection>> connection = Connection::open(locked.path);
  if (!connection) return connection.failure();
  locked.connection = std::move(connection.value());
  sys::Status known = checkSchema(*locked.connection);
  if (!known) return known.failure();
  sys::Result<Parameters> parameters = readParameters(*locked.connection);
  if (!parameters) return parameters.failure();
  locked.parameters = std::move(parameters.value());
  return locked;
}

sys::Result<sys::SecretBytes> givenOrStashed(const std::string& name,
                                             const PasswordOrStash& password,
                                             const Locked& locked) {
  if (password) return sys::SecretBytes(password->bytes().begin(), password->bytes().end());
  return readStash(name, locked.parameters.salt);
}

sys::Result<Unlocked> unlock(const std::string& name, const PasswordOrStash& password) {
  sys::Result<Locked> locked = readLocked(name);
  if (!locked) return locked.failure();
  sys::Result<sys::SecretBytes> used = givenOrStashed(name, password, locked.value());
  if (!used) return used.failure();
  const Parameters& parameters = locked.value().parameters;
  PasswordCache& cache = PasswordCache::instance();
  sys::Result<sys::SecretBytes> key = cache.passwordKey(locked.value().identity, parameters.salt,
                                                        parameters.iterations, used.value());
  if (!key) return key.failure();
  sys::Result<sys::SecretBytes> master = openMasterKey(parameters, key.value());
  if (!master) return master.failure();
  cache.keep(locked.value().identity, parameters.salt, used.value(), key.value());
  return Unlocked{std::move(locked.value()), std::move(used.value()), std::move(master.value())};
}

/** All handles on one file under one password share what is known of it. */
sys::Result<std::shared_ptr<const DatabaseFile>> shared(Unlocked unlocked) {
  using Key = std::tuple<std::string, FileIdentity, sys::Bytes>;
  static std::mutex mutex;
  static auto* files = new std::map<Key, std::weak_ptr<const DatabaseFile>>;

  Locked& locked = unlocked.file;
  std::shared_ptr<const DatabaseFile> file;
  {
    std::lock_guard lock(mutex);
    std::weak_ptr<const DatabaseFile>& known =
        (*files)[Key(locked.path, locked.identity, locked.parameters.salt)];
    file = known.lock();
    if (!file) {
      sys::Result<DatabaseKeys> keys = DatabaseKeys::fromMaster(unlocked.masterKey);
      if (!keys) return keys.failure();
      file = std::make_shared<const DatabaseFile>(locked.path, locked.parameters.approvedOnly,
                                                  std::move(keys.value()), unlocked.password);
      known = file;
    }
    std::erase_if(*files, [](const auto& each) { return each.second.expired(); });
  }
  file->adopt(std::move(locked.connection));
  // A file that is damaged is found out now rather than by the first operation.
  sys::Result<BorrowedConnection> sound = file->borrow();
  if (!sound) return sound.failure();
  return file;
}

sys::Result<std::unique_ptr<Store>> storeOf(Unlocked unlocked) {
  sys::Result<std::shared_ptr<const DatabaseFile>> file = shared(std::move(unlocked));
  if (!file) return file.failure();
  return std::unique_ptr<Store>(std::make_unique<KeyDatabase>(std::move(file.value())));
}

/** Sets all that depends on the password; answers the password key. */
sys::Result<sys::SecretBytes> setPassword(Parameters& parameters, sys::ByteView password,
                                          sys::ByteView masterKey) {
  sys::Result<DatabaseKeys> keys = DatabaseKeys::fromMaster(masterKey);
  if (!keys) return keys.failure();
  parameters.iterations = cms::kPbeIterations;
  parameters.salt.resize(cms::kPbeSaltLength);
  sys::Status set = fillRandom(parameters.salt);
  if (set) set = renewPrivateKeyKey(parameters, keys.value(), password);
  if (!set) return set.failure();
  sys::Result<cms::PbeKey> derived =
      cms::derivePbeKey(password, parameters.salt, parameters.iterations);
  if (!derived) return derived.failure();
  set = closeMasterKey(parameters, derived.value().key, masterKey);
  if (!set) return set.failure();
  return std::move(derived.value().key);
}

sys::Status fillNewFile(Connection& connection, const Parameters& parameters,
                        sys::ByteView masterKey) {
  sys::Result<DatabaseKeys> keys = DatabaseKeys::fromMaster(masterKey);
  if (!keys) return keys.failure();
  sys::Result<Transaction> transaction = Transaction::begin(connection, Transaction::Kind::write);
  if (!transaction) return transaction.failure();
  sys::Status filled = createSchema(connection);
  if (filled) filled = writeParameters(connection, parameters);
  if (filled) filled = writeDirectory(connection, keys.value(), Directory{});
  if (filled) filled = transaction.value().commit();
  return filled;
}

/** The store is closed again when this returns, so that the file can be given another name. */
sys::Status fillWithEntries(const std::string& name, sys::ByteView password,
                            const sys::SecretBytes& masterKey,
                            const std::function<sys::Status(Store&)>& fill) {
  sys::Result<Locked> locked = readLocked(name);
  if (!locked) return locked.failure();
  sys::Result<std::unique_ptr<Store>> store =
      storeOf(Unlocked{std::move(locked.value()), {password.begin(), password.end()}, masterKey});
  if (!store) return store.failure();
  return store.value()->inTransaction([&] { return fill(*store.value()); });
}

}  // namespace

sys::Result<std::unique_ptr<Store>> createKeyDatabase(const sys::FileName& name,
                                                      const sys::Password& password,
                                                      const NewDatabase& settings) {
  sys::Status allowed = checkNewPassword(password.bytes(), settings.approvedOnly);
  if (!allowed) return allowed.failure();
  sys::Status isFree = checkNameIsFree(name.path());
  if (!isFree) return isFree.failure();
  Parameters parameters;
  parameters.approvedOnly = settings.approvedOnly;
  sys::Result<std::int64_t> expiresAt = expiryOf(settings.lifetime);
  if (!expiresAt) return expiresAt.failure();
  parameters.expiresAt = expiresAt.value();

  Draft draft(name.path());
  sys::Status made = draft.create();
  if (!made) return made.failure();
  sys::SecretBytes masterKey(kKeyLength);
  made = fillRandom(masterKey);
  if (!made) return made.failure();
  sys::Result<sys::SecretBytes> passwordKey = setPassword(parameters, password.bytes(), masterKey);
  if (!passwordKey) return passwordKey.failure();
  {
    sys::Result<std::unique_ptr<Connection>> connection = Connection::open(draft.name());
    if (!connection) return connection.failure();
    made = fillNewFile(*connection.value(), parameters, masterKey);
    if (!made) return made.failure();
  }
  if (settings.fill)
    made = fillWithEntries(draft.name(), password.bytes(), masterKey, settings.fill);
  if (made) made = draft.moveTo(name.path());
  if (!made) return made.failure();

  sys::Result<Locked> locked = readLocked(name.path());
  if (!locked) return locked.failure();
  PasswordCache::instance().keep(locked.value().identity, parameters.salt, password.bytes(),
                                 passwordKey.value());
  return storeOf(Unlocked{std::move(locked.value()),
                          {password.bytes().begin(), password.bytes().end()},
                          std::move(masterKey)});
}

sys::Result<std::unique_ptr<Store>> openKeyDatabase(const sys::FileName& name,
                                                    const PasswordOrStash& password) {
  sys::Result<Unlocked> unlocked = unlock(name.path(), password);
  if (!unlocked) return unlocked.failure();
  sys::Status valid = checkNotExpired(unlocked.value().file.parameters.expiresAt);
  if (!valid) return valid.failure();
  return storeOf(std::move(unlocked.value()));
}

sys::Status changeDatabasePassword(const sys::FileName& name, const PasswordOrStash& oldPassword,
                                   const sys::Password& newPassword, std::int64_t lifetime) {
  sys::Result<std::int64_t> expiresAt = expiryOf(lifetime);
  if (!expiresAt) return expiresAt.failure();
  sys::Result<Unlocked> unlocked = unlock(name.path(), oldPassword);
  if (!unlocked) return unlocked.failure();
  const sys::SecretBytes masterKey = unlocked.value().masterKey;
  const FileIdentity identity = unlocked.value().file.identity;
  const Parameters oldParameters = unlocked.value().file.parameters;
  sys::Status allowed = checkNewPassword(newPassword.bytes(), oldParameters.approvedOnly);
  if (!allowed) return allowed;

  sys::Result<std::shared_ptr<const DatabaseFile>> file = shared(std::move(unlocked.value()));
  if (!file) return file.failure();
  Parameters parameters = oldParameters;
  parameters.expiresAt = expiresAt.value();
  sys::Result<sys::SecretBytes> passwordKey =
      setPassword(parameters, newPassword.bytes(), masterKey);
  if (!passwordKey) return passwordKey.failure();

  sys::Result<BorrowedConnection> connection = file.value()->borrow();
  if (!connection) return connection.failure();
  sys::Result<Transaction> transaction =
      Transaction::begin(*connection.value(), Transaction::Kind::write);
  if (!transaction) return transaction.failure();
  sys::Result<Parameters> present = readParameters(*connection.value());
  if (!present) return present.failure();
  if (present.value().salt != oldParameters.salt) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_PASSWORD, "somebody else changed it meanwhile");
  }
  sys::Status written = writeParameters(*connection.value(), parameters);
  if (written) written = transaction.value().commit();
  if (!written) return written;
  PasswordCache::instance().forget(identity);
  PasswordCache::instance().keep(identity, parameters.salt, newPassword.bytes(),
                                 passwordKey.value());
  return sys::success();
}

sys::Status stashDatabasePassword(const sys::FileName& name, const sys::Password& password) {
  sys::Result<Unlocked> unlocked = unlock(name.path(), password);
  if (!unlocked) return unlocked.failure();
  const Parameters& parameters = unlocked.value().file.parameters;
  sys::Status valid = checkNotExpired(parameters.expiresAt);
  if (!valid) return valid;
  return writeStash(name.path(), parameters.salt, password.bytes());
}

sys::Result<bool> needsPassword(const sys::FileName& name) {
  sys::Result<Locked> locked = readLocked(name.path());
  if (!locked) return locked.failure();
  return !readStash(name.path(), locked.value().parameters.salt);
}

}  // namespace zel::km
