#ifndef ZEL_KM_TOKEN_PUBLIC_KEYS_H_
#define ZEL_KM_TOKEN_PUBLIC_KEYS_H_

#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/attributes.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Public keys between PKCS #11's attributes and SubjectPublicKeyInfo. A key's certificate is
 * recognised by its SubjectPublicKeyInfo, whatever IDs other tools have given them.
 */

namespace zel::km::token {

/**
 * publicKeyInfoOf answers the SubjectPublicKeyInfo of a public key object, or of a private key
 * object that tells its public part. No bytes when the attributes do not tell it, or the key is of
 * a kind that is not handled here.
 */
sys::Bytes publicKeyInfoOf(const Attributes& key);

/** Adds what a public key object says about its key: CKA_KEY_TYPE and the key itself. */
sys::Status addPublicKey(Template& attributes, const EVP_PKEY& key);

/** The curve of an EC key as CKA_EC_PARAMS has it: its object identifier, DER. */
sys::Result<sys::Bytes> curveParameters(const EVP_PKEY& key);

/**
 * keyIdentifier is the CKA_ID that objects are given here: the SHA-1 of the public key's bits,
 * which is the subject key identifier that most certificates carry (RFC 5280, 4.2.1.2, method 1).
 */
sys::Result<sys::Bytes> keyIdentifier(sys::ByteView publicKeyInfo);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_PUBLIC_KEYS_H_
