#ifndef ZEL_KM_TOKEN_KEY_PAIRS_H_
#define ZEL_KM_TOKEN_KEY_PAIRS_H_

#include "engine/km/token/changes.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Key pairs on a token: made there, or brought in. Either way the private key is private, sensitive
 * and not extractable: it does not leave the token any more.
 */

namespace zel::km::token {

struct TokenKeyPair {
  KeyPairHandles handles;
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo */
};

/**
 * A new key pair: RSA from 2048 bits, EC on P-256, P-384 or P-521.
 *
 *  - ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE (41): a size that no key has.
 *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): one that this token does not make.
 */
sys::Result<TokenKeyPair> generateKeyPair(const Session& session, Changes& changes, int keySize);

/**
 * Brings a key onto the token, as two objects.
 *
 *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): neither RSA nor EC.
 */
sys::Result<TokenKeyPair> importKeyPair(Changes& changes, sys::ByteView pkcs8);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_KEY_PAIRS_H_
