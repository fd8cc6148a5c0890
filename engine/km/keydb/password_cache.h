#ifndef ZEL_KM_KEYDB_PASSWORD_CACHE_H_
#define ZEL_KM_KEYDB_PASSWORD_CACHE_H_

#include <cstdint>
#include <list>
#include <optional>
#include <type_traits>

#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/bytes.h"
#include "engine/sys/mutex.h"
#include "engine/sys/proof_of_secret.h"
#include "engine/sys/result.h"
#include "engine/sys/secrets.h"

/**
 * @file
 * The password keys that this process has derived. Every call of a Java program opens its database
 * anew, and would pay the derivation again, a fifth of a second each time:
 *
 *     Result<SecretBytes> master = PasswordCache::instance().open(
 *         identity, parameters, password,
 *         [&](ByteView passwordKey) { return openMasterKey(parameters, passwordKey); });
 *
 * Only keys that opened their database are kept, in locked memory, the least recently used going
 * first. Passwords are not kept, but the proofs of them. A password that is not in the cache, a
 * wrong one above all, always costs the whole derivation.
 */

namespace zel::km {

class PasswordCache {
 public:
  static PasswordCache& instance();

  /**
   * Answers what tryKey, a function from the password key to a Result, makes of the key: the one
   * that is kept for the password, or else one derived now, which is kept when tryKey succeeds.
   */
  template <typename TryKey>
  std::invoke_result_t<TryKey&, sys::ByteView> open(FileIdentity file, const Parameters& parameters,
                                                    sys::ByteView password, TryKey&& tryKey) {
    const std::optional<sys::SecretBytes> known = find(file, parameters.salt, password);
    if (known) return tryKey(sys::ByteView(*known));
    const sys::Result<sys::SecretBytes> derived = derive(parameters, password);
    if (!derived) return derived.failure();
    auto opened = tryKey(sys::ByteView(derived.value()));
    if (opened) keep(file, parameters.salt, password, derived.value());
    return opened;
  }

  /** Wipes what was kept for a file, and keeps the key of the password that it has been given. */
  void replace(FileIdentity file, const Parameters& parameters, sys::ByteView password,
               sys::ByteView passwordKey);

  /** Wipes everything. */
  void forgetAll();

  /** How many derivations this process has paid for. */
  std::uint64_t derivations();

 private:
  struct Kept {
    FileIdentity file;
    sys::Bytes salt;
    sys::ProofOfSecret password;
    sys::SecretBlock passwordKey;

    bool isFor(FileIdentity otherFile, sys::ByteView otherSalt, sys::ByteView given) const;
  };

  std::optional<sys::SecretBytes> find(FileIdentity file, sys::ByteView salt,
                                       sys::ByteView password);
  sys::Result<sys::SecretBytes> derive(const Parameters& parameters, sys::ByteView password);
  void keep(FileIdentity file, sys::ByteView salt, sys::ByteView password,
            sys::ByteView passwordKey);

  sys::Mutex mutex_;
  std::list<Kept> kept_ ZEL_GUARDED_BY(mutex_); /**< the most recently used first */
  std::uint64_t derivations_ ZEL_GUARDED_BY(mutex_) = 0;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_PASSWORD_CACHE_H_
