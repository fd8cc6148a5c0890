#ifndef ZEL_KM_STORE_KEY_MATERIAL_H_
#define ZEL_KM_STORE_KEY_MATERIAL_H_

#include "engine/cms/keys.h"
#include "engine/cms/signing.h"
#include "engine/km/store/private_keys.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Private keys on their way into a store, and at work in it.
 */

namespace zel::km {

/**
 * takePrivateKey reads a private key that a caller gives: PrivateKeyInfo, EncryptedPrivateKeyInfo
 * under the store's password, or traditional RSA or EC. The codes of cms::readPrivateKey and of
 * Store::decryptedPrivateKey.
 */
sys::Result<PrivateKey> takePrivateKey(PrivateKeys& store, sys::ByteView bytes);

/** ZELKM_ERR_VALIDATION_KEY_PAIR (62) when the public key does not belong to the private key. */
sys::Status requirePair(const PrivateKey& key, sys::ByteView publicKeyInfo);

/** ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111) when the entry is a certificate alone. */
sys::Status requirePrivateKey(const KeyEntry& entry);

/**
 * generateKeyPair makes a key pair that is kept as PKCS #8, of the sizes of Store::generateKey;
 * approved ones only when that is asked for.
 */
sys::Result<GeneratedKey> generateKeyPair(int keySize, bool approvedOnly);

/** signWith is Store::sign for a key that is kept as PKCS #8. */
sys::Result<sys::Bytes> signWith(const PrivateKey& key, SigningDigest digest,
                                 sys::ByteView message);

/** A signer with a key of the store; both must outlive it. */
cms::Signer signerOf(PrivateKeys& store, const PrivateKey& key);

}  // namespace zel::km

#endif  // ZEL_KM_STORE_KEY_MATERIAL_H_
