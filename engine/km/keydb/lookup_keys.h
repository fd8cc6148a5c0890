#ifndef ZEL_KM_KEYDB_LOOKUP_KEYS_H_
#define ZEL_KM_KEYDB_LOOKUP_KEYS_H_

#include "engine/km/keydb/records.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What a key database looks certificates and requests up by.
 */

namespace zel::km {

/** A Subject is a public key and whom it belongs to, as hashes for the file's indexes. */
struct Subject {
  LookupKeys lookup;
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo, DER */
};

/** ZELKM_ERR_ASN (2) when the bytes are no certificate. */
sys::Result<Subject> subjectOfCertificate(sys::ByteView certificate);

/** ZELKM_ERR_ASN (2) when the bytes are no PKCS #10 request. */
sys::Result<Subject> subjectOfRequest(sys::ByteView request);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_LOOKUP_KEYS_H_
