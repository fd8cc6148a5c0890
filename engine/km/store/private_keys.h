#ifndef ZEL_KM_STORE_PRIVATE_KEYS_H_
#define ZEL_KM_STORE_PRIVATE_KEYS_H_

#include "engine/cms/signing.h"
#include "engine/km/store/entry.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::km {

using cms::SigningDigest;

/**
 * PrivateKeys is what a store does with private keys: it makes them, signs with them, and wraps
 * them under its password. What a key may be is the store's to say.
 */
class PrivateKeys {
 public:
  /** True for a store that accepts approved (FIPS 140) algorithms and sizes only. */
  virtual bool approvedOnly() const = 0;

  /**
   * A new key pair: 2048 to 16384 bits RSA; 256, 384, 521 EC on the NIST curve; 25519 Ed25519.
   * ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE (41) for any other size;
   * ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM (39) for Ed25519 where approved keys alone are made.
   */
  virtual sys::Result<GeneratedKey> generateKey(int keySize) = 0;
  /** Signs the message as certificates carry signatures: RSA PKCS #1 v1.5, ECDSA DER, Ed25519. */
  virtual sys::Result<sys::Bytes> sign(const PrivateKey& key, SigningDigest digest,
                                       sys::ByteView message) = 0;

  /**
   * The key as EncryptedPrivateKeyInfo under the store's password.
   * ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111) for a key that is absent or does not leave the store.
   */
  virtual sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) = 0;
  /**
   * The other way: PKCS #8 bytes from an EncryptedPrivateKeyInfo under the store's password. When
   * it is under another, ZELKM_ERR_DATABASE_INVALID_PASSWORD (16) of a key database, and
   * ZELKM_ERR_PKCS12_PWD_CORRUPTION (120) of the others.
   */
  virtual sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) = 0;

 protected:
  ~PrivateKeys() = default;
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_PRIVATE_KEYS_H_
