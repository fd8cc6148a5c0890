#ifndef ZEL_KM_TOKEN_KEY_PAIRS_H_
#define ZEL_KM_TOKEN_KEY_PAIRS_H_

#include "engine/km/token/session.h"
#include "engine/km/token/token_objects.h"
#include "engine/sys/result.h"

/**
 * @file
 * Key pairs that a token makes, to stay there.
 */

namespace zel::km::token {

/**
 * A new key pair: RSA from 2048 bits, EC on P-256, P-384 or P-521. Its ID is a random one, for as
 * long as no entry gives it one.
 *
 *  - ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE (41): a size that no key has.
 *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): one that this token does not make.
 */
sys::Result<KeyPairObjects> generateKeyPair(const Session& session, int keySize);

/** Destroys a key pair, as far as that can be done. */
void destroyKeyPair(const Session& session, const KeyPairHandles& pair) noexcept;

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_KEY_PAIRS_H_
