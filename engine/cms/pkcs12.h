#ifndef ZEL_CMS_PKCS12_H_
#define ZEL_CMS_PKCS12_H_

#include <string>
#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * PKCS #12 files (RFC 7292).
 *
 *     std::vector<Pkcs12Entry> entries = {{.friendlyName = "server", .privateKeyInfo = key,
 *                                          .chain = {certificate, issuer}}};
 *     Result<Bytes> file = writePkcs12(entries, password);
 */

namespace zel::cms {

/** Pkcs12Entry is a certificate with its issuers, and its private key when there is one. */
struct Pkcs12Entry {
  std::string friendlyName = {};        /**< real UTF-8 */
  sys::SecretBytes privateKeyInfo = {}; /**< PKCS #8 in clear; empty for a certificate alone */
  std::vector<sys::Bytes> chain = {};   /**< the certificate first, then its issuers; DER */
  bool trusted = false;                 /**< of a certificate alone: an authority to be trusted */
};

/** Iterations of the key derivations and of the integrity check. */
inline constexpr int kPkcs12Iterations = 100'000;

/**
 * writePkcs12 answers a PKCS #12 file under the password (real UTF-8). Keys and certificates are
 * encrypted with PBES2 (PBKDF2-HMAC-SHA-256, AES-256-CBC), the whole is protected by HMAC-SHA-256.
 *
 * Each entry's certificate carries its friendly name, and with a key the local key identifier that
 * joins the two. An issuer that is no entry itself follows without a name. A trusted certificate
 * alone carries the trusted key usage attribute by which the JDK knows a trusted certificate entry.
 *
 * ZELKM_ERR_ASN when a certificate is none, ZELKM_ERR_CRYPTO when the encryption fails.
 */
ZEL_CMS_API sys::Result<sys::Bytes> writePkcs12(const std::vector<Pkcs12Entry>& entries,
                                                sys::ByteView password);

/**
 * readPkcs12 answers the keys of a PKCS #12 file with their certificates, then the certificates
 * that belong to no key, issuers included; each entry's chain is its certificate alone. Everything
 * that OpenSSL decrypts is read, RC2 and DES of old included; an empty password opens files without
 * one too.
 *
 *  - ZELKM_ERR_PKCS12_PWD_CORRUPTION: the password is wrong.
 *  - ZELKM_ERR_INVALID_PKCS12_DATA: the file is none, or damaged: its password opens it, but its
 *    content is not what was written.
 *  - ZELKM_ERR_PBE_ALG_UNSUPPORT: an encryption or integrity check that is not known.
 *  - ZELKM_ERR_KEYREC_CERTIFICATE_NULL: a key without a certificate.
 *  - ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM: a key that is not RSA, EC or Ed25519.
 */
ZEL_CMS_API sys::Result<std::vector<Pkcs12Entry>> readPkcs12(sys::ByteView file,
                                                             sys::ByteView password);

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_H_
