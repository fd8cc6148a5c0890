#include "engine/km/keydb/password_cache.h"

#include <algorithm>
#include <utility>

#include "engine/cms/pbe.h"

namespace zel::km {

namespace {

constexpr std::size_t kMostKept = 64;

}  // namespace

PasswordCache& PasswordCache::instance() {
  // Never destroyed: a thread may still open a database while the process exits.
  static auto* cache = new PasswordCache;
  return *cache;
}

void PasswordCache::replace(FileIdentity file, const Parameters& parameters, sys::ByteView password,
                            sys::ByteView passwordKey) {
  {
    const sys::Lock lock(mutex_);
    kept_.remove_if([&](const Kept& each) { return each.file == file; });
  }
  keep(file, parameters.salt, password, passwordKey);
}

void PasswordCache::forgetAll() {
  const sys::Lock lock(mutex_);
  kept_.clear();
}

std::uint64_t PasswordCache::derivations() {
  const sys::Lock lock(mutex_);
  return derivations_;
}

bool PasswordCache::Kept::isFor(FileIdentity otherFile, sys::ByteView otherSalt,
                                sys::ByteView given) const {
  return file == otherFile && std::ranges::equal(salt, otherSalt) && password.isOf(given);
}

std::optional<sys::SecretBytes> PasswordCache::find(FileIdentity file, sys::ByteView salt,
                                                    sys::ByteView password) {
  const sys::Lock lock(mutex_);
  const auto found = std::ranges::find_if(
      kept_, [&](const Kept& each) { return each.isFor(file, salt, password); });
  if (found == kept_.end()) return std::nullopt;
  kept_.splice(kept_.begin(), kept_, found);
  const sys::ByteView key = std::as_const(found->passwordKey).bytes();
  return sys::SecretBytes(key.begin(), key.end());
}

sys::Result<sys::SecretBytes> PasswordCache::derive(const Parameters& parameters,
                                                    sys::ByteView password) {
  {
    const sys::Lock lock(mutex_);
    ++derivations_;
  }
  sys::Result<cms::PbeKey> derived =
      cms::derivePbeKey(password, parameters.salt, parameters.iterations);
  if (!derived) return derived.failure();
  return std::move(derived.value().key);
}

void PasswordCache::keep(FileIdentity file, sys::ByteView salt, sys::ByteView password,
                         sys::ByteView passwordKey) {
  // Another thread may have derived the same key meanwhile.
  if (find(file, salt, password)) return;
  sys::Result<sys::ProofOfSecret> proof = sys::ProofOfSecret::of(password);
  sys::SecretBlock key(passwordKey.size());
  if (!proof || !proof.value().locked() || !key.locked()) return;
  std::ranges::copy(passwordKey, key.bytes().begin());
  const sys::Lock lock(mutex_);
  kept_.push_front(
      Kept{file, {salt.begin(), salt.end()}, std::move(proof.value()), std::move(key)});
  if (kept_.size() > kMostKept) kept_.pop_back();
}

}  // namespace zel::km
