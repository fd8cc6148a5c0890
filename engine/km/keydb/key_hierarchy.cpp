#include "engine/km/keydb/key_hierarchy.h"

#include <algorithm>

#include "engine/km/keydb/fields.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

// A file must not be able to make opening it cheap to guess, or endless.
constexpr std::int64_t kFewestIterations = 100'000;
constexpr std::int64_t kMostIterations = 10'000'000;

sys::Bytes copyOf(sys::ByteView bytes) { return {bytes.begin(), bytes.end()}; }

/** The columns of the row that are not sealed, as they stand there. */
struct Settings {
  std::int64_t approvedOnly;
  std::int64_t expiresAt;
  std::int64_t iterations;
  sys::ByteView salt;
  sys::ByteView keySalt;

  FieldWriter<sys::Bytes> fields() const {
    FieldWriter<sys::Bytes> fields;
    fields.number(approvedOnly).number(expiresAt).number(iterations).bytes(salt).bytes(keySalt);
    return fields;
  }
};

Settings settingsOf(const Parameters& parameters) {
  return {parameters.approvedOnly ? 1 : 0, parameters.expiresAt, parameters.iterations,
          parameters.salt, parameters.keySalt};
}

// The private key key is bound by its own context, so that the two can be sealed in turn.
sys::Bytes masterKeyContext(const Parameters& parameters) {
  return settingsOf(parameters).fields().text("master key").take();
}

sys::Bytes privateKeyKeyContext(const Parameters& parameters) {
  return settingsOf(parameters).fields().text("private key key").take();
}

// Tells a damaged row from a wrong password. It guards against accidents only: whoever changes the
// row on purpose can write the digest too, but not the seals.
sys::Result<Digest> checksumOf(const Settings& settings, sys::ByteView masterKey,
                               sys::ByteView privateKeyKey) {
  return digest(settings.fields().bytes(masterKey).bytes(privateKeyKey).take());
}

}  // namespace

sys::Result<Parameters> readParameters(Connection& connection) {
  sys::Result<Statement> select = connection.prepare(
      "SELECT approved_only, expires_at, iterations, salt, key_salt, master_key, private_key_key, "
      "checksum FROM parameters WHERE id = 1");
  if (!select) return select.failure();
  Statement& row = select.value();
  sys::Result<bool> found = row.step();
  if (!found) return found.failure();
  if (!found.value()) {
    return sys::fail(ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION, "the password record is missing");
  }
  const Settings settings{row.integer(0), row.integer(1), row.integer(2), row.blob(3), row.blob(4)};
  sys::Result<Digest> checksum = checksumOf(settings, row.blob(5), row.blob(6));
  if (!checksum) return checksum.failure();
  if (!std::ranges::equal(checksum.value(), row.blob(7))) {
    return sys::fail(ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION, "the password record is damaged");
  }
  if (settings.salt.size() != cms::kPbeSaltLength ||
      settings.keySalt.size() != cms::kPbeSaltLength) {
    return sys::fail(ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION, "a salt is %zu or %zu bytes long",
                     settings.salt.size(), settings.keySalt.size());
  }
  if (settings.iterations < kFewestIterations || settings.iterations > kMostIterations) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_VERSION, "%lld iterations are out of bounds",
                     static_cast<long long>(settings.iterations));
  }
  Parameters parameters;
  parameters.approvedOnly = settings.approvedOnly != 0;
  parameters.expiresAt = settings.expiresAt;
  parameters.iterations = static_cast<std::uint32_t>(settings.iterations);
  parameters.salt = copyOf(settings.salt);
  parameters.keySalt = copyOf(settings.keySalt);
  parameters.masterKey = copyOf(row.blob(5));
  parameters.privateKeyKey = copyOf(row.blob(6));
  return parameters;
}

sys::Status writeParameters(Connection& connection, const Parameters& parameters) {
  sys::Result<Digest> checksum =
      checksumOf(settingsOf(parameters), parameters.masterKey, parameters.privateKeyKey);
  if (!checksum) return checksum.failure();
  sys::Result<Statement> insert = connection.prepare(
      "INSERT OR REPLACE INTO parameters (id, approved_only, expires_at, iterations, salt, "
      "key_salt, master_key, private_key_key, checksum) VALUES (1, ?1, ?2, ?3, ?4, ?5, ?6, ?7, "
      "?8)");
  if (!insert) return insert.failure();
  return insert.value()
      .bind(1, std::int64_t{parameters.approvedOnly})
      .bind(2, parameters.expiresAt)
      .bind(3, std::int64_t{parameters.iterations})
      .bind(4, sys::ByteView(parameters.salt))
      .bind(5, sys::ByteView(parameters.keySalt))
      .bind(6, sys::ByteView(parameters.masterKey))
      .bind(7, sys::ByteView(parameters.privateKeyKey))
      .bind(8, sys::ByteView(checksum.value()))
      .run();
}

sys::Result<DatabaseKeys> DatabaseKeys::fromMaster(sys::ByteView masterKey) {
  DatabaseKeys keys;
  const std::span<std::uint8_t> block = keys.block_.bytes();
  constexpr const char* kPurposes[] = {"records", "directory", "membership"};
  std::size_t offset = 0;
  for (const char* purpose : kPurposes) {
    sys::Status derived = deriveKey(masterKey, purpose, block.subspan(offset, kKeyLength));
    if (!derived) return derived.failure();
    offset += kKeyLength;
  }
  return keys;
}

sys::Result<sys::SecretBytes> openMasterKey(const Parameters& parameters,
                                            sys::ByteView passwordKey) {
  sys::Result<sys::SecretBytes> master =
      unseal(passwordKey, masterKeyContext(parameters), parameters.masterKey);
  if (master.code() == ZELKM_ERR_DATABASE_KEY_INTEGRITY) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_PASSWORD, "the password is wrong");
  }
  return master;
}

sys::Status closeMasterKey(Parameters& parameters, sys::ByteView passwordKey,
                           sys::ByteView masterKey) {
  sys::Result<Sealed> sealed = seal(passwordKey, masterKeyContext(parameters), masterKey);
  if (!sealed) return sealed.failure();
  parameters.masterKey = std::move(sealed.value());
  return sys::success();
}

sys::Result<cms::PbeKey> openPrivateKeyKey(const Parameters& parameters, const DatabaseKeys& keys) {
  sys::Result<sys::SecretBytes> key =
      unseal(keys.records(), privateKeyKeyContext(parameters), parameters.privateKeyKey);
  if (!key) return key.failure();
  if (key.value().size() != kKeyLength) {
    return sys::fail(ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION,
                     "the private key key is %zu bytes long", key.value().size());
  }
  return cms::PbeKey{parameters.keySalt, parameters.iterations, std::move(key.value())};
}

sys::Status renewPrivateKeyKey(Parameters& parameters, const DatabaseKeys& keys,
                               sys::ByteView password) {
  parameters.keySalt.resize(cms::kPbeSaltLength);
  sys::Status random = fillRandom(parameters.keySalt);
  if (!random) return random;
  sys::Result<cms::PbeKey> derived =
      cms::derivePbeKey(password, parameters.keySalt, parameters.iterations);
  if (!derived) return derived.failure();
  sys::Result<Sealed> sealed =
      seal(keys.records(), privateKeyKeyContext(parameters), derived.value().key);
  if (!sealed) return sealed.failure();
  parameters.privateKeyKey = std::move(sealed.value());
  return sys::success();
}

}  // namespace zel::km
