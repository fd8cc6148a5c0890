#ifndef ZEL_KM_KEYDB_KEY_HIERARCHY_H_
#define ZEL_KM_KEYDB_KEY_HIERARCHY_H_

#include <cstdint>

#include "engine/cms/pbe.h"
#include "engine/km/keydb/sealing.h"
#include "engine/km/keydb/sqlite.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"
#include "engine/sys/secrets.h"

/**
 * @file
 * From a password to the keys of a database.
 *
 *     password --PBKDF2, salt--> password key --opens--> master key --HKDF--> records, directory,
 *                                                                            membership
 *     password --PBKDF2, key salt--> private key key   (kept under the records key)
 *
 * A new password means new salts and the same master key: one row of the file changes.
 */

namespace zel::km {

/** Parameters are the one row of the parameters table. */
struct Parameters {
  bool approvedOnly = false;
  std::int64_t expiresAt = 0; /**< seconds since 1970; 0 means never */
  std::uint32_t iterations = cms::kPbeIterations;
  sys::Bytes salt = {};
  sys::Bytes keySalt = {};
  Sealed masterKey = {};     /**< under the password key */
  Sealed privateKeyKey = {}; /**< under the records key */
};

/**
 * Reads the row.
 *  - ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION (19): damaged.
 *  - ZELKM_ERR_DATABASE_INVALID_VERSION (15): numbers that no version of this library writes.
 */
sys::Result<Parameters> readParameters(Connection& connection);

/** Writes the row, in the place of one that is there. */
sys::Status writeParameters(Connection& connection, const Parameters& parameters);

/** The keys of an open database, in one block of locked memory. */
class DatabaseKeys {
 public:
  /** Derives them from the master key. */
  static sys::Result<DatabaseKeys> fromMaster(sys::ByteView masterKey);

  sys::ByteView records() const { return block_.bytes().first(kKeyLength); }
  sys::ByteView directory() const { return block_.bytes().subspan(kKeyLength, kKeyLength); }
  sys::ByteView membership() const { return block_.bytes().subspan(2 * kKeyLength, kKeyLength); }

 private:
  DatabaseKeys() : block_(3 * kKeyLength) {}

  sys::SecretBlock block_;
};

/** ZELKM_ERR_DATABASE_INVALID_PASSWORD (16) when it is not the key of the right password. */
sys::Result<sys::SecretBytes> openMasterKey(const Parameters& parameters,
                                            sys::ByteView passwordKey);

/** Seals the master key under the key of a password; all other parameters are set before. */
sys::Status closeMasterKey(Parameters& parameters, sys::ByteView passwordKey,
                           sys::ByteView masterKey);

/**
 * The key that private keys are handed out under, which the password gives anybody else too.
 * ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION (19) when what is sealed is no such key.
 */
sys::Result<cms::PbeKey> openPrivateKeyKey(const Parameters& parameters, const DatabaseKeys& keys);

/** Draws a key salt and derives the private key key of a new password. */
sys::Status renewPrivateKeyKey(Parameters& parameters, const DatabaseKeys& keys,
                               sys::ByteView password);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_KEY_HIERARCHY_H_
