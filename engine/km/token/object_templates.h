#ifndef ZEL_KM_TOKEN_OBJECT_TEMPLATES_H_
#define ZEL_KM_TOKEN_OBJECT_TEMPLATES_H_

#include <string_view>

#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/attributes.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What the objects are made from that are put on a token: certificates and requests, and keys that
 * were made here or are brought in. They have the attributes that other programs look them up by.
 *
 * Every private key is private, sensitive and not extractable: it does not leave the token.
 */

namespace zel::km::token {

/** CertificateParts are the parts of a certificate that its object names, DER. */
struct CertificateParts {
  sys::Bytes der;
  sys::Bytes subject;
  sys::Bytes issuer;
  sys::Bytes serialNumber; /**< an INTEGER */
  sys::Bytes publicKey;    /**< SubjectPublicKeyInfo */
};

/** ZELKM_ERR_ASN (2) when the bytes are no certificate. */
sys::Result<CertificateParts> readCertificateParts(sys::ByteView der);

Template certificateTemplate(const CertificateParts& parts, std::string_view label,
                             sys::ByteView id);

/** A data object, which only who is logged in can read. */
Template requestTemplate(sys::ByteView request, std::string_view label);

struct KeyPairTemplates {
  Template publicKey;
  Template privateKey;
};

/** What a token makes an RSA key pair from, of that many bits. */
KeyPairTemplates newRsaPair(int bits, sys::ByteView id);
/** What a token makes an EC key pair from, on P-256, P-384 or P-521. */
KeyPairTemplates newEcPair(int bits, sys::ByteView id);

/**
 * What a key that is brought in is made from.
 * ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): neither RSA nor EC.
 */
sys::Result<KeyPairTemplates> importedPair(const EVP_PKEY& key, std::string_view label,
                                           sys::ByteView id);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_OBJECT_TEMPLATES_H_
