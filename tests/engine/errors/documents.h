#ifndef ZEL_TESTS_ENGINE_ERRORS_DOCUMENTS_H_
#define ZEL_TESTS_ENGINE_ERRORS_DOCUMENTS_H_

#include <openssl/x509.h>

#include <string>

#include "engine/cms/keys.h"
#include "tests/engine/cms/tools.h"

/**
 * @file
 * Certificates, requests and keys that are not as they should be.
 */

namespace zel::km::errors {

/** A private key, PKCS #8. */
sys::Bytes privateKeyOf(const EVP_PKEY& key);
/** A key that is neither RSA, EC nor Ed25519. */
cms::KeyPtr foreignKey();

/** A request, signed by the key for its own public key. */
sys::Bytes requestOf(const EVP_PKEY& key, const std::string& commonName);

/** The certificate of an authority as strict validation wants it: with all identifiers. */
sys::Bytes authorityCertificate(const cms::TestAuthority& authority);
/** A certificate for the subject's name and key, with what is granted to anybody. */
sys::Bytes certificateFrom(const cms::TestAuthority& issuer, const sys::Bytes& issuerCertificate,
                           const cms::TestAuthority& subject);

/** The certificate after a change, signed anew by the issuer. */
sys::Bytes changed(const sys::Bytes& certificate, const cms::TestAuthority& issuer,
                   void (*change)(X509& certificate));
void removeExtension(X509& certificate, int nid);
void addExtension(X509& certificate, int nid, const char* value);

/** The bytes with every AES-256-CBC made an algorithm that nobody knows. */
sys::Bytes underUnknownCipher(sys::Bytes bytes);

}  // namespace zel::km::errors

#endif  // ZEL_TESTS_ENGINE_ERRORS_DOCUMENTS_H_
