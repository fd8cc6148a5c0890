#ifndef ZEL_CMS_KEYS_H_
#define ZEL_CMS_KEYS_H_

#include "engine/cms/api.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Key pairs: making them, and taking them in and out of PKCS #8 (RFC 5958) and
 * SubjectPublicKeyInfo (RFC 5280, 4.1).
 */

namespace zel::cms {

/** The key algorithms as the C interface numbers them. Other algorithms are `unknown`. */
enum class KeyAlgorithm { unknown = 0, rsa = 1, ec = 2, ed25519 = 3 };

/** The largest RSA modulus that is made or read, in bits. */
inline constexpr int kMaxKeySize = 16384;

/**
 * KeyTraits is what a public key tells about itself. The size is in bits; 255 for Ed25519. An RSA
 * key may be bound to PSS (id-RSASSA-PSS, RFC 4055), which nothing here signs with.
 */
struct KeyTraits {
  KeyAlgorithm algorithm = KeyAlgorithm::unknown;
  int size = 0;
  bool isBoundToPss = false;

  bool operator==(const KeyTraits&) const = default;
};

/**
 * generateKey makes a key pair. The size chooses the algorithm: 2048 to 16384 an RSA key of that
 * modulus; 256, 384 and 521 an EC key on the NIST curve of that size; 25519 an Ed25519 key.
 *
 * ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE for any other size.
 */
ZEL_CMS_API sys::Result<KeyPtr> generateKey(int size);

ZEL_CMS_API KeyTraits describeKey(const EVP_PKEY& key);

/** describePublicKey reads a SubjectPublicKeyInfo. ZELKM_ERR_ASN when it is none. */
ZEL_CMS_API sys::Result<KeyTraits> describePublicKey(sys::ByteView spki);

/** publicKeyInfo answers the key's SubjectPublicKeyInfo, DER. */
ZEL_CMS_API sys::Result<sys::Bytes> publicKeyInfo(const EVP_PKEY& key);

/** privateKeyInfo answers the key's PrivateKeyInfo in clear, DER. */
ZEL_CMS_API sys::Result<sys::SecretBytes> privateKeyInfo(const EVP_PKEY& key);

/**
 * readPrivateKey reads a PrivateKeyInfo, or a traditional RSAPrivateKey or ECPrivateKey.
 *
 * ZELKM_ERR_ASN when the bytes are none of these; ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM when the
 * key is not RSA, EC or Ed25519.
 */
ZEL_CMS_API sys::Result<KeyPtr> readPrivateKey(sys::ByteView der);

}  // namespace zel::cms

#endif  // ZEL_CMS_KEYS_H_
