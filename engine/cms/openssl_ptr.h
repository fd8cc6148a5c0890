#ifndef ZEL_CMS_OPENSSL_PTR_H_
#define ZEL_CMS_OPENSSL_PTR_H_

#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pkcs12.h>
#include <openssl/pkcs7.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Owners of OpenSSL's objects, and the two ways in and out of DER that every file here shares:
 *
 *     X509Ptr certificate = decodeDer<X509Ptr>(d2i_X509, der);
 *     if (!certificate) return cryptoFailure(ZELKM_ERR_ASN, "read a certificate");
 *     Bytes again = encodeDer(i2d_X509, certificate.get());
 */

namespace zel::cms {

template <auto release>
struct Releaser {
  template <typename T>
  void operator()(T* object) const {
    release(object);
  }
};

using BigNumberPtr = std::unique_ptr<BIGNUM, Releaser<BN_clear_free>>;
using BioPtr = std::unique_ptr<BIO, Releaser<BIO_free_all>>;
using CipherContextPtr = std::unique_ptr<EVP_CIPHER_CTX, Releaser<EVP_CIPHER_CTX_free>>;
using ExtensionPtr = std::unique_ptr<X509_EXTENSION, Releaser<X509_EXTENSION_free>>;
using KeyContextPtr = std::unique_ptr<EVP_PKEY_CTX, Releaser<EVP_PKEY_CTX_free>>;
using KeyPtr = std::unique_ptr<EVP_PKEY, Releaser<EVP_PKEY_free>>;
using NamePtr = std::unique_ptr<X509_NAME, Releaser<X509_NAME_free>>;
using Pkcs7Ptr = std::unique_ptr<PKCS7, Releaser<PKCS7_free>>;
using Pkcs12Ptr = std::unique_ptr<PKCS12, Releaser<PKCS12_free>>;
using Pkcs8Ptr = std::unique_ptr<PKCS8_PRIV_KEY_INFO, Releaser<PKCS8_PRIV_KEY_INFO_free>>;
using PublicKeyPtr = std::unique_ptr<X509_PUBKEY, Releaser<X509_PUBKEY_free>>;
using RequestPtr = std::unique_ptr<X509_REQ, Releaser<X509_REQ_free>>;
using Pkcs12BagPtr = std::unique_ptr<PKCS12_SAFEBAG, Releaser<PKCS12_SAFEBAG_free>>;
using X509Ptr = std::unique_ptr<X509, Releaser<X509_free>>;
using X509SigPtr = std::unique_ptr<X509_SIG, Releaser<X509_SIG_free>>;

struct BagsReleaser {
  void operator()(STACK_OF(PKCS12_SAFEBAG) * bags) const {
    sk_PKCS12_SAFEBAG_pop_free(bags, PKCS12_SAFEBAG_free);
  }
};
using Pkcs12BagsPtr = std::unique_ptr<STACK_OF(PKCS12_SAFEBAG), BagsReleaser>;

struct SafesReleaser {
  void operator()(STACK_OF(PKCS7) * safes) const { sk_PKCS7_pop_free(safes, PKCS7_free); }
};
using Pkcs12SafesPtr = std::unique_ptr<STACK_OF(PKCS7), SafesReleaser>;

struct ExtensionsReleaser {
  void operator()(STACK_OF(X509_EXTENSION) * extensions) const {
    sk_X509_EXTENSION_pop_free(extensions, X509_EXTENSION_free);
  }
};
using ExtensionsPtr = std::unique_ptr<STACK_OF(X509_EXTENSION), ExtensionsReleaser>;

/**
 * cryptoFailure traces what was tried with OpenSSL's reason, leaves no OpenSSL error behind for the
 * next caller, and gives the Failure to answer with: the code, or ZELKM_ERR_MEMORY_ALLOCATE when
 * OpenSSL had no memory.
 */
ZEL_CMS_API sys::Failure cryptoFailure(int code, const char* attempt);

/** decodeDer decodes one object; null when the bytes are not exactly one such object. */
template <typename Ptr, typename Decode>
Ptr decodeDer(Decode decode, sys::ByteView der) {
  const unsigned char* at = der.data();
  Ptr object(decode(nullptr, &at, static_cast<long>(der.size())));
  if (object && at != der.data() + der.size()) object.reset();
  return object;
}

/** The bytes of a string, borrowed. */
inline sys::ByteView viewOf(const ASN1_STRING* string) {
  return {ASN1_STRING_get0_data(string), static_cast<std::size_t>(ASN1_STRING_length(string))};
}

/** encodeDer encodes an object; empty on failure. Container may be sys::SecretBytes. */
template <typename Container = sys::Bytes, typename Encode, typename T>
Container encodeDer(Encode encode, const T* object) {
  const int length = encode(object, nullptr);
  if (length <= 0) return {};
  Container der(static_cast<std::size_t>(length));
  unsigned char* at = der.data();
  if (encode(object, &at) != length) return {};
  return der;
}

}  // namespace zel::cms

#endif  // ZEL_CMS_OPENSSL_PTR_H_
