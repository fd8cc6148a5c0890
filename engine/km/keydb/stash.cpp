#include "engine/km/keydb/stash.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "engine/km/keydb/output_files.h"
#include "engine/km/keydb/sealing.h"
#include "engine/sys/files.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

// A file begins with it; the digit is the version.
constexpr std::string_view kMagic = "ZELSTASH1";
constexpr std::size_t kLongest = 65536;
constexpr std::string_view kExtension = ".sth";

using StashKey = std::array<std::uint8_t, kKeyLength>;

// No secret: everybody who can read the database can make it.
sys::Result<StashKey> stashKey(sys::ByteView salt) {
  StashKey key;
  sys::Status derived = deriveKey(salt, "stash", key);
  if (!derived) return derived.failure();
  return key;
}

}  // namespace

std::string stashNameOf(const std::string& databaseName) {
  const std::size_t slash = databaseName.rfind('/');
  const std::size_t start = slash == std::string::npos ? 0 : slash + 1;
  const std::size_t dot = databaseName.rfind('.');
  const bool hasExtension = dot != std::string::npos && dot > start;
  // A database may have the extension itself, and its stash file must not take its place.
  const bool isReplaced = hasExtension && databaseName.substr(dot) != kExtension;
  return databaseName.substr(0, isReplaced ? dot : databaseName.size()).append(kExtension);
}

sys::Status writeStash(const std::string& databaseName, sys::ByteView salt,
                       sys::ByteView password) {
  sys::Result<StashKey> key = stashKey(salt);
  if (!key) return key.failure();
  // Everybody can make the key, so these bytes are as good as the password.
  sys::SecretBytes file(kMagic.size() + kSealLength + password.size());
  std::ranges::copy(kMagic, file.begin());
  sys::Status sealed =
      sealInto(std::span(file).subspan(kMagic.size()), key.value(), sys::bytesOf(kMagic), password);
  if (!sealed) return sealed;
  return writeOutput(sys::FileName::derived(stashNameOf(databaseName)), file,
                     sys::FileAccess::ownerOnly);
}

sys::Result<sys::SecretBytes> readStash(const std::string& databaseName, sys::ByteView salt) {
  const std::string name = stashNameOf(databaseName);
  sys::Result<sys::SecretBytes> file = sys::readOwnSecretFile(name, kLongest);
  if (file.code() == ZELKM_ERR_FILE_OPEN_NOT_EXIST) {
    return sys::Failure{ZELKM_ERR_PWDFILE_NOT_EXIST};
  }
  if (!file) return file;
  sys::Result<StashKey> key = stashKey(salt);
  if (!key) return key.failure();
  const sys::ByteView bytes = file.value();
  if (bytes.size() >= kMagic.size() &&
      std::ranges::equal(bytes.first(kMagic.size()), sys::bytesOf(kMagic))) {
    sys::Result<sys::SecretBytes> password =
        unseal(key.value(), sys::bytesOf(kMagic), bytes.subspan(kMagic.size()));
    if (password.code() != ZELKM_ERR_DATABASE_KEY_INTEGRITY) return password;
  }
  return sys::fail(ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION,
                   "%s is damaged or older than the database's password", name.c_str());
}

}  // namespace zel::km
