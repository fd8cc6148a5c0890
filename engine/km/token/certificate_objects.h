#ifndef ZEL_KM_TOKEN_CERTIFICATE_OBJECTS_H_
#define ZEL_KM_TOKEN_CERTIFICATE_OBJECTS_H_

#include <string_view>

#include "engine/km/token/changes.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Certificates as PKCS #11 objects, with the attributes that other programs look them up by.
 */

namespace zel::km::token {

/** CKA_CERTIFICATE_CATEGORY (PKCS #11, 4.6.2). */
enum CertificateCategory : CK_ULONG { kTokenUser = 1, kAuthority = 2, kOtherEntity = 3 };

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

struct CertificateMarks {
  bool trusted;
  bool hasPrivateKey;
};

/**
 * Puts a certificate on the token. A trusted one is marked as an authority's: CKA_TRUSTED is for
 * the token's security officer to set, not for its user.
 */
sys::Status createCertificateObject(Changes& changes, const CertificateParts& parts,
                                    std::string_view label, sys::ByteView id,
                                    CertificateMarks marks);

/** Marks a certificate that is on the token anew. */
sys::Status changeMarks(Changes& changes, CK_OBJECT_HANDLE certificate, CertificateMarks marks);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_CERTIFICATE_OBJECTS_H_
