#ifndef ZELKM_RECORDS_H_
#define ZELKM_RECORDS_H_

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

/**
 * @file
 * The records that cross the C interface of the key management library.
 *
 * Conventions of every record:
 *  1. Offsets are part of the contract (LP64, x86-64, little endian) and asserted below.
 *  2. Bytes are a pointer and a 32-bit unsigned length beside it; a null pointer or a zero length
 *     means that they are absent.
 *  3. Text is NUL-terminated modified UTF-8 (the Java Native Interface's encoding), or null.
 *  4. Booleans are 32 bits wide, 0 false and anything else true.
 *  5. A record that an operation returned belongs to the library's allocator and is released by
 *     the ZELKM_Free... operation named with it, once; its fields and sub-records go with it.
 *  6. Reserved fields are never read or written by a caller.
 *
 * Fields that are called shortValue1, booleanValue2 or firstFlag are fixed by their place and width
 * alone. What follows "Our engine:" is what libzel7km_64, the library of this repository, puts
 * there or reads there; another library may keep the layout and mean something else.
 */

#ifdef __cplusplus
extern "C" {
#endif

/** ZELKMDNItem is a distinguished name (RFC 5280, 4.1.2.4). Released by ZELKM_FreeDNItem. */
typedef struct ZELKMDNItem {
  char* cn; /**< common name */
  char* ou; /**< organizational unit */
  char* o;  /**< organization */
  char* l;  /**< locality */
  char* s;  /**< state or province */
  char* pc; /**< postal code */
  char* c;  /**< country, two letters */
  /**
   * Further attributes, each as "type=value".
   * Our engine: the type is a short name ("DC", "emailAddress") or a dotted object identifier. Of a
   * name that is read, what finds no place in any field stands in derData alone.
   */
  char* optionalField1;
  char* optionalField2;
  char* optionalField3;
  char* optionalField4;
  unsigned char* derData; /**< the name's DER encoding; filled by the library only */
  uint32_t derLength;
  uint32_t reserved;
} ZELKMDNItem;

/**
 * ZELKMCertItem is one X.509 certificate. A null label marks a certificate that carries only its
 * DER bytes. Released with the list or key item that holds it.
 */
typedef struct ZELKMCertItem {
  unsigned char* certDer; /**< the whole certificate */
  uint32_t certDerLength;
  int32_t shortValue1; /**< reaches Java as a short. Our engine: the X.509 version, 1 to 3 */
  int32_t shortValue2; /**< reaches Java as a short. Our engine: the public key's size in bits */
  uint32_t reserved1;
  char* label;
  ZELKMDNItem* subjectDN;
  ZELKMDNItem* issuerDN;
  int64_t effectTime; /**< start of validity. Our engine: seconds since 1970-01-01 UTC */
  int64_t expireTime; /**< end of validity. Our engine: seconds since 1970-01-01 UTC */
  unsigned char* sig; /**< the signature's bits, without the unused-bits octet */
  uint32_t sigLength;
  uint32_t reserved2;
  unsigned char* sigAlgId; /**< AlgorithmIdentifier, DER */
  uint32_t sigAlgIdLength;
  uint32_t reserved3;
  char* sigAlgIdOID;     /**< dotted decimal */
  char* sigAlgIdOIDName; /**< the algorithm's usual name. Our engine: else its OID */
  unsigned char reserved4[16];
  unsigned char* spki; /**< SubjectPublicKeyInfo, DER */
  uint32_t spkiLength;
  uint32_t reserved5;
  void* extraObject; /**< Our engine: always null */
} ZELKMCertItem;

/** ZELKMCertItemList is a list of certificates. It ends at a null node or a null item. */
typedef struct ZELKMCertItemList {
  ZELKMCertItem* item;
  struct ZELKMCertItemList* next;
} ZELKMCertItemList;

/** ZELKMLabelList is a list of labels. It ends at a null node or a null label. */
typedef struct ZELKMLabelList {
  char* label;
  struct ZELKMLabelList* next;
} ZELKMLabelList;

/**
 * ZELKMEPKIItem is an EncryptedPrivateKeyInfo (PKCS #8, RFC 5958), DER. Initialised by
 * ZELKM_InitEPKIItem, released by ZELKM_FreeEPKIItem together with its bytes.
 */
typedef struct ZELKMEPKIItem {
  unsigned char* berData;
  uint32_t berDataLength;
  uint32_t reserved;
} ZELKMEPKIItem;

/** ZELKMPrivKeyInfoItem is a PrivateKeyInfo in clear. Released by ZELKM_FreePrivKeyInfoItem. */
typedef struct ZELKMPrivKeyInfoItem {
  unsigned char* berData;
  uint32_t berDataLength;
  uint32_t reserved;
} ZELKMPrivKeyInfoItem;

/** ZELKMKeyItem is one key entry with its certificate and chain. Released by ZELKM_FreeKeyItem. */
typedef struct ZELKMKeyItem {
  /**
   * Reaches Java as a short.
   * Our engine: the key's algorithm, 1 RSA, 2 EC, 3 Ed25519, 0 any other.
   */
  int64_t shortValue1;
  char* label;
  int32_t keySize; /**< bits; reaches Java as a short. Our engine: 255 for Ed25519 */
  /** Our engine: set with a null epki for a key that does not leave its token. */
  int32_t hasPrivateKey;
  int32_t hasCertList;
  int32_t hasBerData;
  int32_t booleanValue1;  /**< Our engine: the entry is trusted */
  int32_t booleanValue2;  /**< Our engine: the entry is the default key */
  ZELKMEPKIItem* epki;    /**< Our engine: under the password of the store */
  unsigned char* berData; /**< Our engine: the SubjectPublicKeyInfo, DER */
  uint32_t berDataLength;
  uint32_t reserved;
  ZELKMCertItemList* certList; /**< the certificate, then its issuers */
} ZELKMKeyItem;

/** ZELKMKeyItemList is a list of key items. It ends at a null node. */
typedef struct ZELKMKeyItemList {
  ZELKMKeyItem* item;
  struct ZELKMKeyItemList* next;
} ZELKMKeyItemList;

/** ZELKMCertReqInfoItem is the signed part of a certification request (PKCS #10, RFC 2986). */
typedef struct ZELKMCertReqInfoItem {
  unsigned char* berData; /**< CertificationRequestInfo, DER */
  uint32_t berDataLength;
  int32_t keySize; /**< bits; reaches Java as a short */
  ZELKMDNItem* subjectName;
  unsigned char* spki; /**< SubjectPublicKeyInfo, DER */
  uint32_t spkiLength;
  uint32_t reserved1;
  unsigned char* optionalBer; /**< Our engine: the attributes, SET OF Attribute, DER */
  uint32_t optionalBerLength; /**< 0 means absent */
  uint32_t reserved2;
} ZELKMCertReqInfoItem;

/** ZELKMCertReqItem is a whole certification request. Released with its ZELKMReqKeyItem. */
typedef struct ZELKMCertReqItem {
  unsigned char* berData; /**< CertificationRequest, DER */
  uint32_t berDataLength;
  uint32_t reserved1;
  unsigned char* sig;
  uint32_t sigLength;
  uint32_t reserved2;
  unsigned char* sigAlgId; /**< AlgorithmIdentifier, DER */
  uint32_t sigAlgIdLength;
  uint32_t reserved3;
  char* sigAlgIdOID;
  char* sigAlgIdOIDName;
  ZELKMCertReqInfoItem* certReqInfoItem;
} ZELKMCertReqItem;

/** ZELKMReqKeyItem is a pending request with its key. Released by ZELKM_FreeReqKeyItem. */
typedef struct ZELKMReqKeyItem {
  int64_t shortValue1; /**< as in ZELKMKeyItem */
  char* label;
  int32_t keySize; /**< bits; reaches Java as a short */
  int32_t hasBerData;
  ZELKMCertReqItem* certReq;
  ZELKMEPKIItem* epki;    /**< as in ZELKMKeyItem */
  unsigned char* berData; /**< as in ZELKMKeyItem */
  uint32_t berDataLength;
  uint32_t reserved;
} ZELKMReqKeyItem;

/**
 * ZELKMCryptoInfo holds the settings given to ZELKM_SetCryptoInfo. The caller sets the two flags
 * and leaves the rest undefined; the library keeps the block for good.
 *
 * Our engine: the first flag is FIPS mode: from then on every store takes approved algorithms and
 * key sizes only (39, 41), and files that need OpenSSL's legacy provider are not read. The second
 * one includes the first and insists on OpenSSL's validated `fips` provider for everything; where
 * that is not installed the answer is 80 and the mode stays as it was. Both 0 ends the first flag's
 * effect; the provider, once loaded, stays in use.
 */
typedef struct ZELKMCryptoInfo {
  unsigned char firstFlag;
  unsigned char secondFlag;
  unsigned char reserved[254];
} ZELKMCryptoInfo;

#ifdef __cplusplus
}
#endif

// clang-format off
#define ZELKM_FIELD_AT(record, field, offset) \
  static_assert(offsetof(record, field) == (offset), #record "." #field " is at " #offset)
#define ZELKM_SIZE_IS(record, size) \
  static_assert(sizeof(record) == (size), #record " is " #size " bytes")

ZELKM_SIZE_IS(ZELKMDNItem, 104);
ZELKM_FIELD_AT(ZELKMDNItem, cn, 0);
ZELKM_FIELD_AT(ZELKMDNItem, ou, 8);
ZELKM_FIELD_AT(ZELKMDNItem, o, 16);
ZELKM_FIELD_AT(ZELKMDNItem, l, 24);
ZELKM_FIELD_AT(ZELKMDNItem, s, 32);
ZELKM_FIELD_AT(ZELKMDNItem, pc, 40);
ZELKM_FIELD_AT(ZELKMDNItem, c, 48);
ZELKM_FIELD_AT(ZELKMDNItem, optionalField1, 56);
ZELKM_FIELD_AT(ZELKMDNItem, optionalField2, 64);
ZELKM_FIELD_AT(ZELKMDNItem, optionalField3, 72);
ZELKM_FIELD_AT(ZELKMDNItem, optionalField4, 80);
ZELKM_FIELD_AT(ZELKMDNItem, derData, 88);
ZELKM_FIELD_AT(ZELKMDNItem, derLength, 96);

ZELKM_SIZE_IS(ZELKMCertItem, 152);
ZELKM_FIELD_AT(ZELKMCertItem, certDer, 0);
ZELKM_FIELD_AT(ZELKMCertItem, certDerLength, 8);
ZELKM_FIELD_AT(ZELKMCertItem, shortValue1, 12);
ZELKM_FIELD_AT(ZELKMCertItem, shortValue2, 16);
ZELKM_FIELD_AT(ZELKMCertItem, label, 24);
ZELKM_FIELD_AT(ZELKMCertItem, subjectDN, 32);
ZELKM_FIELD_AT(ZELKMCertItem, issuerDN, 40);
ZELKM_FIELD_AT(ZELKMCertItem, effectTime, 48);
ZELKM_FIELD_AT(ZELKMCertItem, expireTime, 56);
ZELKM_FIELD_AT(ZELKMCertItem, sig, 64);
ZELKM_FIELD_AT(ZELKMCertItem, sigLength, 72);
ZELKM_FIELD_AT(ZELKMCertItem, sigAlgId, 80);
ZELKM_FIELD_AT(ZELKMCertItem, sigAlgIdLength, 88);
ZELKM_FIELD_AT(ZELKMCertItem, sigAlgIdOID, 96);
ZELKM_FIELD_AT(ZELKMCertItem, sigAlgIdOIDName, 104);
ZELKM_FIELD_AT(ZELKMCertItem, spki, 128);
ZELKM_FIELD_AT(ZELKMCertItem, spkiLength, 136);
ZELKM_FIELD_AT(ZELKMCertItem, extraObject, 144);

ZELKM_SIZE_IS(ZELKMCertItemList, 16);
ZELKM_FIELD_AT(ZELKMCertItemList, item, 0);
ZELKM_FIELD_AT(ZELKMCertItemList, next, 8);

ZELKM_SIZE_IS(ZELKMLabelList, 16);
ZELKM_FIELD_AT(ZELKMLabelList, label, 0);
ZELKM_FIELD_AT(ZELKMLabelList, next, 8);

ZELKM_SIZE_IS(ZELKMEPKIItem, 16);
ZELKM_FIELD_AT(ZELKMEPKIItem, berData, 0);
ZELKM_FIELD_AT(ZELKMEPKIItem, berDataLength, 8);

ZELKM_SIZE_IS(ZELKMPrivKeyInfoItem, 16);
ZELKM_FIELD_AT(ZELKMPrivKeyInfoItem, berData, 0);
ZELKM_FIELD_AT(ZELKMPrivKeyInfoItem, berDataLength, 8);

ZELKM_SIZE_IS(ZELKMKeyItem, 72);
ZELKM_FIELD_AT(ZELKMKeyItem, shortValue1, 0);
ZELKM_FIELD_AT(ZELKMKeyItem, label, 8);
ZELKM_FIELD_AT(ZELKMKeyItem, keySize, 16);
ZELKM_FIELD_AT(ZELKMKeyItem, hasPrivateKey, 20);
ZELKM_FIELD_AT(ZELKMKeyItem, hasCertList, 24);
ZELKM_FIELD_AT(ZELKMKeyItem, hasBerData, 28);
ZELKM_FIELD_AT(ZELKMKeyItem, booleanValue1, 32);
ZELKM_FIELD_AT(ZELKMKeyItem, booleanValue2, 36);
ZELKM_FIELD_AT(ZELKMKeyItem, epki, 40);
ZELKM_FIELD_AT(ZELKMKeyItem, berData, 48);
ZELKM_FIELD_AT(ZELKMKeyItem, berDataLength, 56);
ZELKM_FIELD_AT(ZELKMKeyItem, certList, 64);

ZELKM_SIZE_IS(ZELKMKeyItemList, 16);
ZELKM_FIELD_AT(ZELKMKeyItemList, item, 0);
ZELKM_FIELD_AT(ZELKMKeyItemList, next, 8);

ZELKM_SIZE_IS(ZELKMCertReqInfoItem, 56);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, berData, 0);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, berDataLength, 8);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, keySize, 12);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, subjectName, 16);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, spki, 24);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, spkiLength, 32);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, optionalBer, 40);
ZELKM_FIELD_AT(ZELKMCertReqInfoItem, optionalBerLength, 48);

ZELKM_SIZE_IS(ZELKMCertReqItem, 72);
ZELKM_FIELD_AT(ZELKMCertReqItem, berData, 0);
ZELKM_FIELD_AT(ZELKMCertReqItem, berDataLength, 8);
ZELKM_FIELD_AT(ZELKMCertReqItem, sig, 16);
ZELKM_FIELD_AT(ZELKMCertReqItem, sigLength, 24);
ZELKM_FIELD_AT(ZELKMCertReqItem, sigAlgId, 32);
ZELKM_FIELD_AT(ZELKMCertReqItem, sigAlgIdLength, 40);
ZELKM_FIELD_AT(ZELKMCertReqItem, sigAlgIdOID, 48);
ZELKM_FIELD_AT(ZELKMCertReqItem, sigAlgIdOIDName, 56);
ZELKM_FIELD_AT(ZELKMCertReqItem, certReqInfoItem, 64);

ZELKM_SIZE_IS(ZELKMReqKeyItem, 56);
ZELKM_FIELD_AT(ZELKMReqKeyItem, shortValue1, 0);
ZELKM_FIELD_AT(ZELKMReqKeyItem, label, 8);
ZELKM_FIELD_AT(ZELKMReqKeyItem, keySize, 16);
ZELKM_FIELD_AT(ZELKMReqKeyItem, hasBerData, 20);
ZELKM_FIELD_AT(ZELKMReqKeyItem, certReq, 24);
ZELKM_FIELD_AT(ZELKMReqKeyItem, epki, 32);
ZELKM_FIELD_AT(ZELKMReqKeyItem, berData, 40);
ZELKM_FIELD_AT(ZELKMReqKeyItem, berDataLength, 48);

ZELKM_SIZE_IS(ZELKMCryptoInfo, 256);
ZELKM_FIELD_AT(ZELKMCryptoInfo, firstFlag, 0);
ZELKM_FIELD_AT(ZELKMCryptoInfo, secondFlag, 1);

#undef ZELKM_FIELD_AT
#undef ZELKM_SIZE_IS
// clang-format on

#endif  // ZELKM_RECORDS_H_
