#ifndef ZEL_CMS_PKCS12_PKCS12_H_
#define ZEL_CMS_PKCS12_PKCS12_H_

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

/** How keys and certificates are encrypted. The whole is protected by HMAC-SHA-256 either way. */
enum class Pkcs12Encryption {
  strong,  /**< PBES2 (PBKDF2-HMAC-SHA-256, AES-256-CBC), 100,000 iterations */
  readable /**< pbeWithSHAAnd3-KeyTripleDES-CBC, 2,000 iterations: every program reads it. For files
                without a password, which nothing protects but their mode. */
};

/**
 * writePkcs12 answers a PKCS #12 file under the password (real UTF-8).
 *
 * Each entry's certificate carries its friendly name, and with a key the local key identifier that
 * joins the two. An issuer that is no entry itself follows without a name. A trusted certificate
 * alone carries the trusted key usage attribute by which the JDK knows a trusted certificate entry.
 *
 * ZELKM_ERR_ASN when a certificate is none, ZELKM_ERR_CRYPTO when the encryption fails.
 */
ZEL_CMS_API sys::Result<sys::Bytes> writePkcs12(
    const std::vector<Pkcs12Entry>& entries, sys::ByteView password,
    Pkcs12Encryption encryption = Pkcs12Encryption::strong);

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

#endif  // ZEL_CMS_PKCS12_PKCS12_H_
