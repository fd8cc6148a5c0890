#ifndef ZEL_KM_KEYDB_PASSWORD_CACHE_H_
#define ZEL_KM_KEYDB_PASSWORD_CACHE_H_

#include <cstdint>
#include <list>
#include <mutex>
#include <optional>

#include "engine/km/keydb/sealing.h"
#include "engine/km/store/file_state.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"
#include "engine/sys/secrets.h"

/**
 * @file
 * The password keys that this process has derived. Every call of a Java program opens its database
 * anew, and would pay the derivation again, a fifth of a second each time.
 *
 *     Result<SecretBytes> key = PasswordCache::instance().passwordKey(identity, salt, iterations,
 *                                                                     password);
 *     if (opensTheDatabase(key)) PasswordCache::instance().keep(identity, salt, password, key);
 *
 * Only keys that opened their database are kept, in locked memory, the least recently used going
 * first. Passwords are not kept but their HMAC under a key that lives and dies with the process. A
 * password that is not in the cache, a wrong one above all, always costs the whole derivation.
 */

namespace zel::km {

class PasswordCache {
 public:
  static PasswordCache& instance();

  /** The key of the password, derived unless it was kept. */
  sys::Result<sys::SecretBytes> passwordKey(FileIdentity file, sys::ByteView salt,
                                            std::uint32_t iterations, sys::ByteView password);

  void keep(FileIdentity file, sys::ByteView salt, sys::ByteView password, sys::ByteView key);

  /** Wipes what was kept for a file. */
  void forget(FileIdentity file);
  /** Wipes everything, the process's own key too. */
  void forgetAll();

  /** How many derivations this process has paid for. */
  std::uint64_t derivations();

 private:
  struct Kept {
    FileIdentity file;
    sys::Bytes salt;
    sys::SecretBlock secrets; /**< the password's HMAC, then the password key */
  };

  std::optional<sys::SecretBytes> find(FileIdentity file, sys::ByteView salt,
                                       sys::ByteView password);
  sys::Result<Digest> fingerprint(sys::ByteView password);

  std::mutex mutex_;
  std::list<Kept> kept_; /**< the most recently used first */
  std::optional<sys::SecretBlock> processKey_;
  std::uint64_t derivations_ = 0;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_PASSWORD_CACHE_H_
