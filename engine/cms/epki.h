#ifndef ZEL_CMS_EPKI_H_
#define ZEL_CMS_EPKI_H_

#include <cstdint>

#include "engine/cms/api.h"
#include "engine/cms/pbe.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Private keys under a password: PKCS #8 EncryptedPrivateKeyInfo (RFC 5958).
 *
 * Written with PBES2 (RFC 8018): PBKDF2 with HMAC-SHA-256 and AES-256-CBC. The derivation is the
 * costly step and depends on the password and the salt alone, so a caller with many keys under one
 * password derives once:
 *
 *     Result<PbeKey> pbe = derivePbeKey(password, salt, 600'000);
 *     Result<Bytes> epki = encryptPrivateKey(privateKeyInfo, pbe.value());
 *
 * Every encryption draws an initialisation vector of its own.
 */

namespace zel::cms {

/** encryptPrivateKey answers the EncryptedPrivateKeyInfo of a PrivateKeyInfo, both DER. */
ZEL_CMS_API sys::Result<sys::Bytes> encryptPrivateKey(sys::ByteView privateKeyInfo,
                                                      const PbeKey& pbe);

/** The same under a password, with a random salt. */
ZEL_CMS_API sys::Result<sys::Bytes> encryptPrivateKey(sys::ByteView privateKeyInfo,
                                                      sys::ByteView password,
                                                      std::uint32_t iterations = kPbeIterations);

/** Whether the bytes have the form of an EncryptedPrivateKeyInfo. */
ZEL_CMS_API bool isEncryptedPrivateKey(sys::ByteView der);

/**
 * decryptPrivateKey answers the PrivateKeyInfo in clear, whichever of OpenSSL's password based
 * encryptions was used, RC2 and DES of old included.
 *
 *  - ZELKM_ERR_PBE_ALG_UNSUPPORT: an encryption that is not known, or more than ten million
 *    iterations.
 *  - ZELKM_ERR_DATABASE_KEY_INTEGRITY: damaged. Either the bytes are no EncryptedPrivateKeyInfo,
 *    or they decrypt to something that begins as a PrivateKeyInfo and does not go on as one.
 *  - ZELKM_ERR_DATABASE_INVALID_PASSWORD: what comes out does not even begin as a PrivateKeyInfo.
 *    The encryption carries no checksum, so damage to the first 16 bytes looks like this too.
 */
ZEL_CMS_API sys::Result<sys::SecretBytes> decryptPrivateKey(sys::ByteView epki,
                                                            sys::ByteView password);

/** The same for a decoded EncryptedPrivateKeyInfo, and possibly several under one password. */
sys::Result<sys::SecretBytes> decryptPrivateKey(const X509_SIG& epki, PbeDecryption& decryption);

}  // namespace zel::cms

#endif  // ZEL_CMS_EPKI_H_
