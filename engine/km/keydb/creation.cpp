#include "engine/km/keydb/creation.h"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "engine/km/keydb/directory.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/opening.h"
#include "engine/km/keydb/password_cache.h"
#include "engine/km/keydb/password_rules.h"
#include "engine/km/keydb/passwords.h"
#include "engine/km/keydb/schema.h"
#include "engine/sys/draft.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** Takes away the journal that SQLite leaves beside a draft which it could not even roll back. */
class JournalRemover {
 public:
  explicit JournalRemover(const sys::Draft& draft) : name_(draft.name() + "-journal") {}
  ~JournalRemover() { ::unlink(name_.c_str()); }
  JournalRemover(const JournalRemover&) = delete;
  JournalRemover& operator=(const JournalRemover&) = delete;

 private:
  std::string name_;
};

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

sys::Status createEmpty(sys::Draft& draft) {
  const sys::Result<sys::Descriptor> file = draft.create(sys::FileAccess::ownerOnly);
  if (file) return sys::success();
  if (file.code() == ZELKM_ERR_FILE_OPEN_NOT_ALLOWED) return file.failure();
  return sys::Failure{ZELKM_ERR_DATABASE_CREATE};
}

sys::Status writeTables(const std::string& name, const Parameters& parameters,
                        sys::ByteView masterKey) {
  sys::Result<DatabaseKeys> keys = DatabaseKeys::fromMaster(masterKey);
  if (!keys) return keys.failure();
  sys::Result<std::unique_ptr<Connection>> opened = Connection::open(name);
  if (!opened) return opened.failure();
  Connection& connection = *opened.value();
  return Transaction::run(connection, Transaction::Kind::write, [&] {
    sys::Status written = createSchema(connection);
    if (written) written = writeParameters(connection, parameters);
    if (written) written = writeDirectory(connection, keys.value(), Directory{});
    return written;
  });
}

/** Makes a database without entries of the empty file; answers the password key. */
sys::Result<sys::SecretBytes> writeDatabase(const std::string& name, Parameters parameters,
                                            const sys::Password& password) {
  sys::SecretBytes masterKey(kKeyLength);
  sys::Status made = fillRandom(masterKey);
  if (!made) return made.failure();
  sys::Result<sys::SecretBytes> passwordKey = setPassword(parameters, password, masterKey);
  if (!passwordKey) return passwordKey;
  made = writeTables(name, parameters, masterKey);
  if (!made) return made.failure();
  return passwordKey;
}

sys::Result<UnlockedFile> unlock(const sys::FileName& name, const sys::Password& password,
                                 sys::ByteView passwordKey) {
  sys::Result<LockedFile> locked = LockedFile::read(name);
  if (!locked) return locked.failure();
  return std::move(locked.value()).unlock(password, passwordKey);
}

/** The store is closed again when this returns, so that the file can be given another name. */
sys::Status fillWithEntries(sys::Result<UnlockedFile> file,
                            const std::function<sys::Status(Store&)>& fill) {
  if (!file) return file.failure();
  sys::Result<std::unique_ptr<Store>> store = KeyDatabase::of(std::move(file.value()));
  if (!store) return store.failure();
  return inTransaction(*store.value(), [&] { return fill(*store.value()); });
}

}  // namespace

sys::Result<std::unique_ptr<Store>> createKeyDatabase(const sys::FileName& name,
                                                      const sys::Password& password,
                                                      const NewDatabase& settings) {
  sys::Status allowed = checkNewPassword(password.bytes(), settings.approvedOnly);
  if (allowed) allowed = checkNameIsFree(name.path());
  if (!allowed) return allowed.failure();
  sys::Result<std::int64_t> expiresAt = expiryOf(settings.lifetime);
  if (!expiresAt) return expiresAt.failure();

  sys::Draft draft(name.path());
  const JournalRemover journal(draft);
  sys::Status made = createEmpty(draft);
  if (!made) return made.failure();
  sys::Result<sys::SecretBytes> key = writeDatabase(
      draft.name(), {.approvedOnly = settings.approvedOnly, .expiresAt = expiresAt.value()},
      password);
  if (!key) return key.failure();
  if (settings.fill) {
    made = fillWithEntries(unlock(sys::FileName::derived(draft.name()), password, key.value()),
                           settings.fill);
  }
  if (made) made = draft.takeNewName();
  if (!made) return made.failure();

  sys::Result<UnlockedFile> file = unlock(name, password, key.value());
  if (!file) return file.failure();
  PasswordCache::instance().replace(file.value().identity(), file.value().parameters(),
                                    password.bytes(), key.value());
  return KeyDatabase::of(std::move(file.value()));
}

}  // namespace zel::km
