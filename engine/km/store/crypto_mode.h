#ifndef ZEL_KM_STORE_CRYPTO_MODE_H_
#define ZEL_KM_STORE_CRYPTO_MODE_H_

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Approved (FIPS 140) algorithms: whether this process keeps to them, and which they are. Every
 * file format of the library uses none but approved algorithms in any mode, certificate stores
 * excepted: those are written for programs that know older ones only, unless the mode forbids it.
 */

namespace zel::km {

/** True since setCryptoMode asked for approved algorithms only. */
bool approvedMode();

/**
 * Sets the mode of the process. With `validated` all cryptography is done by OpenSSL's validated
 * module: ZELKM_ERR_UNSUPPORTED_OPTION (80) when that is not installed, with the mode left as it
 * was.
 */
sys::Status setCryptoMode(bool approved, bool validated);

/**
 * Whether a key is of an approved algorithm and size: RSA from 2048 bits, EC on P-256, P-384 or
 * P-521. Ed25519 is approved since FIPS 186-5, but by no module that OpenSSL 3.0 offers.
 * ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM (39), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE (41).
 */
sys::Status checkApproved(sys::ByteView publicKeyInfo);

}  // namespace zel::km

#endif  // ZEL_KM_STORE_CRYPTO_MODE_H_
