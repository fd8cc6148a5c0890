#ifndef ZEL_KM_WORK_KEY_RINGS_H_
#define ZEL_KM_WORK_KEY_RINGS_H_

#include "engine/km/keydb/opening.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * Whole key databases into key ring files, and back. The file that is made has its name only once
 * it is whole, and never takes the place of another: ZELKM_ERR_DATABASE_ALREADY_EXISTS (9).
 */

namespace zel::km {

/** A key ring file, and the password that its content is under. */
struct KeyRingFile {
  sys::FileName name;
  sys::Password password;
};

/**
 * toKeyRing writes a new key ring with all that a database holds.
 *
 *  - ZELKM_ERR_KDB2KYR: the key ring would be larger than what is read again.
 *  - the codes of KeyDatabase::open, checkNewPassword and cms::writeKeyRing.
 */
sys::Status toKeyRing(const sys::FileName& database, const PasswordOrStash& password,
                      const KeyRingFile& ring);

/**
 * fromKeyRing makes a database that holds all of a key ring, or of another PKCS #12 file. Labels
 * that other programs gave, or left out, are made to fit.
 *
 *  - ZELKM_ERR_INVALID_PKCS12_DATA: the file is a key database.
 *  - the codes of cms::readKeyRing and createKeyDatabase.
 */
sys::Status fromKeyRing(const KeyRingFile& ring, const sys::FileName& database,
                        const sys::Password& password);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_KEY_RINGS_H_
