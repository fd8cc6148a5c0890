#ifndef ZEL_CMS_SIGNING_H_
#define ZEL_CMS_SIGNING_H_

#include <functional>

#include "engine/cms/api.h"
#include "engine/cms/keys.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Signatures as certificates and requests carry them. Keys may live where OpenSSL does not reach
 * them, so signing is given as a function; for a key at hand it is
 *
 *     Signer signer = [&](SigningDigest digest, ByteView message) {
 *       return signMessage(*key, digest, message);
 *     };
 */

namespace zel::cms {

/** The digest that is signed; Ed25519 keys sign the message itself and take none. */
enum class SigningDigest { none, sha256, sha384, sha512 };

/** A Signer signs a message: RSA PKCS #1 v1.5, ECDSA as DER, Ed25519. */
using Signer = std::function<sys::Result<sys::Bytes>(SigningDigest, sys::ByteView message)>;

/** The signature algorithm selectors of the C interface; 0 where it has none. */
enum SignatureSelector : int { kByKeyStrength = 0, kSha256 = 1, kSha512 = 2 };

/**
 * chooseDigest answers what the selector means for a key. By key strength: SHA-256 up to 128 bits
 * of security (RSA 3072, P-256), SHA-384 up to 192 (RSA 7680, P-384), SHA-512 above.
 *
 * ZELKM_ERR_SIGNATURE_ALGORITHM for a selector that does not exist,
 * ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM for a key that is not RSA, EC or Ed25519, or
 * that is bound to PSS.
 */
ZEL_CMS_API sys::Result<SigningDigest> chooseDigest(const KeyTraits& key,
                                                    SignatureSelector selector);

/** signatureAlgorithm answers the AlgorithmIdentifier (RFC 4055, 5758, 8410), DER. */
ZEL_CMS_API sys::Result<sys::Bytes> signatureAlgorithm(KeyAlgorithm algorithm,
                                                       SigningDigest digest);

/** signMessage signs with a key at hand. ZELKM_ERR_CRYPTO_SIGN on failure. */
ZEL_CMS_API sys::Result<sys::Bytes> signMessage(const EVP_PKEY& key, SigningDigest digest,
                                                sys::ByteView message);

/** Whether the SubjectPublicKeyInfo is the public half of the key. */
ZEL_CMS_API bool isPair(const EVP_PKEY& key, sys::ByteView spki);

}  // namespace zel::cms

#endif  // ZEL_CMS_SIGNING_H_
