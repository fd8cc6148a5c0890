#include "engine/km/keydb/password_cache.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <utility>

#include "engine/cms/pbe.h"

namespace zel::km {

namespace {

constexpr std::size_t kMostKept = 64;
constexpr std::size_t kFingerprintLength = std::tuple_size_v<Digest>;

}  // namespace

PasswordCache& PasswordCache::instance() {
  // Never destroyed: a thread may still open a database while the process exits.
  static auto* cache = new PasswordCache;
  return *cache;
}

sys::Result<sys::SecretBytes> PasswordCache::passwordKey(FileIdentity file, sys::ByteView salt,
                                                         std::uint32_t iterations,
                                                         sys::ByteView password) {
  {
    std::lock_guard lock(mutex_);
    if (std::optional<sys::SecretBytes> key = find(file, salt, password)) return std::move(*key);
    ++derivations_;
  }
  sys::Result<cms::PbeKey> derived = cms::derivePbeKey(password, salt, iterations);
  if (!derived) return derived.failure();
  return std::move(derived.value().key);
}

void PasswordCache::keep(FileIdentity file, sys::ByteView salt, sys::ByteView password,
                         sys::ByteView key) {
  std::lock_guard lock(mutex_);
  if (find(file, salt, password)) return;
  sys::SecretBlock secrets(kFingerprintLength + key.size());
  sys::Result<Digest> print = fingerprint(password);
  if (!secrets.locked() || !print) return;
  std::ranges::copy(print.value(), secrets.bytes().begin());
  std::ranges::copy(key, secrets.bytes().begin() + kFingerprintLength);
  kept_.push_front(Kept{file, {salt.begin(), salt.end()}, std::move(secrets)});
  if (kept_.size() > kMostKept) kept_.pop_back();
}

void PasswordCache::forget(FileIdentity file) {
  std::lock_guard lock(mutex_);
  kept_.remove_if([&](const Kept& each) { return each.file == file; });
}

void PasswordCache::forgetAll() {
  std::lock_guard lock(mutex_);
  kept_.clear();
  processKey_.reset();
}

std::uint64_t PasswordCache::derivations() {
  std::lock_guard lock(mutex_);
  return derivations_;
}

std::optional<sys::SecretBytes> PasswordCache::find(FileIdentity file, sys::ByteView salt,
                                                    sys::ByteView password) {
  sys::Result<Digest> print = fingerprint(password);
  if (!print) return std::nullopt;
  for (auto each = kept_.begin(); each != kept_.end(); ++each) {
    if (each->file != file || !std::ranges::equal(each->salt, salt)) continue;
    const sys::ByteView secrets = std::as_const(each->secrets).bytes();
    if (CRYPTO_memcmp(secrets.data(), print.value().data(), kFingerprintLength) != 0) continue;
    kept_.splice(kept_.begin(), kept_, each);
    const sys::ByteView key = secrets.subspan(kFingerprintLength);
    return sys::SecretBytes(key.begin(), key.end());
  }
  return std::nullopt;
}

sys::Result<Digest> PasswordCache::fingerprint(sys::ByteView password) {
  if (!processKey_) {
    sys::SecretBlock key(kKeyLength);
    sys::Status random = fillRandom(key.bytes());
    if (!random) return random.failure();
    processKey_ = std::move(key);
  }
  return authenticate(std::as_const(*processKey_).bytes(), password);
}

}  // namespace zel::km
