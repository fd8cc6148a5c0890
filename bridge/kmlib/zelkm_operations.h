#ifndef ZELKM_OPERATIONS_H_
#define ZELKM_OPERATIONS_H_

#include <stddef.h>
#include <stdint.h>

#include "zelkm_locator.h"
#include "zelkm_records.h"

/**
 * @file
 * The operations of the key management library.
 *
 * Conventions of every operation, unless it says otherwise:
 *  1. The answer is a result code: 0 or one of the codes of zelkm_codes.h.
 *  2. A handle names an open key database, token or certificate store. It is positive, may be used
 *     on any thread, and is given back to ZELKM_CloseKeyDb. 0 means none.
 *  3. Text and bytes given in are borrowed for the length of the call.
 *  4. Outputs are pointers to variables that the caller has set to null or 0. They are written on
 *     success only; after a failure the library leaves them as the caller set them, since some
 *     callers look at the output and not at the code.
 *  5. What an output owns is released by the operation named with it, or, where a plain buffer is
 *     handed out, by free or ZELKM_Free alike.
 *  6. Flags are single bytes, 0 or 1.
 *  7. No operation throws.
 *
 * Some arguments are fixed by their place and width alone: firstFlag, secondNumber, a key size, a
 * selector. What they mean is the library's own affair, and callers that know only this interface
 * pass on what they were given. A paragraph that begins with "Our engine:" tells what
 * libzel7km_64, the library of this repository, takes such an argument for. Another library may
 * keep the interface and mean something else; everything outside these paragraphs binds it too.
 * Numbers in parentheses are result codes; docs/engine-errors.md lists them all by operation.
 */

#if defined(ZELKM_BUILDING_LIBRARY)
#define ZELKM_API __attribute__((visibility("default")))
#else
#define ZELKM_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Library-wide */

/** ZELKM_Init starts the library. May be called again after ZELKM_CleanAll. */
ZELKM_API int ZELKM_Init(void);

/** ZELKM_CleanAll closes every handle and wipes every secret that the library still holds. */
ZELKM_API int ZELKM_CleanAll(void);

/**
 * ZELKM_StartTrace starts the library's own trace into a file, for the component of the tag.
 *
 * Our engine: firstSetting is how many older files are kept beside the current one (0 to 1,000;
 * with 0 a full file starts afresh), secondSetting the size at which a file is full, in KiB; 0
 * means without limit. What is below zero counts as 0, and more than 1,000 older files as 1,000.
 */
ZELKM_API int ZELKM_StartTrace(const char* componentTag, const char* traceFileName,
                               int64_t firstSetting, int64_t secondSetting);

/**
 * ZELKM_SetCryptoInfo sets the crypto mode; the library keeps the block for good. What the flags
 * mean is told at ZELKMCryptoInfo.
 */
ZELKM_API int ZELKM_SetCryptoInfo(ZELKMCryptoInfo* info);

/**
 * ZELKM_GetMaxCryptoKeySize answers the largest allowed key size in bits, not a result code.
 *
 * Our engine: selector 1 is RSA and answers 16384; any other answers 0.
 */
ZELKM_API uint32_t ZELKM_GetMaxCryptoKeySize(uint32_t selector);

/** ZELKM_Malloc answers a new block of size bytes, not cleared, or null. */
ZELKM_API void* ZELKM_Malloc(size_t size);

/** ZELKM_Realloc answers the block resized, or null with the block left as it was. */
ZELKM_API void* ZELKM_Realloc(void* block, size_t size);

/** ZELKM_Free releases a block of the library's allocator; null is ignored. */
ZELKM_API void ZELKM_Free(void* block);

/** ZELKM_Strdup answers a copy of the text, or null. */
ZELKM_API char* ZELKM_Strdup(const char* text);

/* Key database lifecycle */

/**
 * ZELKM_CreateNewKeyDb creates a key database file and opens it. The password lifetime is in
 * seconds, 0 for none.
 */
ZELKM_API int ZELKM_CreateNewKeyDb(const char* fileName, const char* password, int64_t lifetime,
                                   int* handle);

/** ZELKM_CreateNewKeyDbFIPS is ZELKM_CreateNewKeyDb for approved algorithms only. */
ZELKM_API int ZELKM_CreateNewKeyDbFIPS(const char* fileName, const char* password, int64_t lifetime,
                                       int* handle);

/** ZELKM_OpenKeyDb opens a key database file; a null or empty password, with its stash file. */
ZELKM_API int ZELKM_OpenKeyDb(const char* fileName, const char* password, int* handle);

/** ZELKM_OpenKeyDbX opens what the locator names (KEYDB_LOCATOR_OPEN_EXTENT bytes are read). */
ZELKM_API int ZELKM_OpenKeyDbX(const KeyDbLocator* locator, int* handle);

ZELKM_API int ZELKM_CloseKeyDb(int handle);

/** ZELKM_ChangeKeyDbPwd gives the file a new password with a lifetime in seconds, 0 for none. */
ZELKM_API int ZELKM_ChangeKeyDbPwd(const char* fileName, const char* oldPassword,
                                   const char* newPassword, int64_t lifetime);

/**
 * ZELKM_ChangeKeyDbPwdX changes a password (KEYDB_LOCATOR_CHANGE_EXTENT bytes are read).
 *
 * Our engine: the new password of a key database has no lifetime.
 */
ZELKM_API int ZELKM_ChangeKeyDbPwdX(const KeyDbLocator* locator);

/** ZELKM_StashKeyDbPwd writes the password to the stash file beside the database. */
ZELKM_API int ZELKM_StashKeyDbPwd(const char* fileName, const char* password);

/**
 * ZELKM_IsPasswordRequired sets the byte to 1 when opening needs a password
 * (KEYDB_LOCATOR_QUERY_EXTENT bytes of the locator are read).
 *
 * Our engine: for locators of type 1 and 3, 0 when a stash file that opens the database stands
 * beside it, else 1; of type 2, whether the token wants a PIN from a program; of type 4, always 0.
 */
ZELKM_API int ZELKM_IsPasswordRequired(const KeyDbLocator* locator, unsigned char* required);

/** ZELKM_SetSecondaryKeyDb lends a key database to a token until ZELKM_UnsetSecondaryKeyDb. */
ZELKM_API int ZELKM_SetSecondaryKeyDb(int tokenHandle, int secondaryHandle);

ZELKM_API int ZELKM_UnsetSecondaryKeyDb(int tokenHandle);

/** ZELKM_Kyr2Kdb converts a key ring file into a new key database. */
ZELKM_API int ZELKM_Kyr2Kdb(const char* kyrFileName, const char* kyrPassword,
                            const char* keyDbFileName, const char* keyDbPassword);

/** ZELKM_Kdb2Kyr converts a key database into a new key ring file. */
ZELKM_API int ZELKM_Kdb2Kyr(const char* keyDbFileName, const char* keyDbPassword,
                            const char* kyrFileName, const char* kyrPassword);

/* Labels and key items */

/** ZELKM_GetKeyDbLabelList lists the key labels. Released by ZELKM_FreeLabelList. */
ZELKM_API int ZELKM_GetKeyDbLabelList(int handle, ZELKMLabelList** list);

/** ZELKM_GetReqKeyDbLabelList lists the request labels. Released by ZELKM_FreeLabelList. */
ZELKM_API int ZELKM_GetReqKeyDbLabelList(int handle, ZELKMLabelList** list);

/**
 * ZELKM_GetCryptoTokenLabelList lists the token labels of a PKCS #11 module, or with an empty
 * module name the certificate stores. Released by ZELKM_FreeLabelList.
 */
ZELKM_API int ZELKM_GetCryptoTokenLabelList(const char* moduleName, ZELKMLabelList** list);

/** ZELKM_GetKeyItemByLabel reads a key entry. Released by ZELKM_FreeKeyItem. */
ZELKM_API int ZELKM_GetKeyItemByLabel(int handle, const char* label, ZELKMKeyItem** item);

/**
 * ZELKM_GetKeyItemListByLabel reads all with the label. Released by ZELKM_FreeKeyItemList.
 *
 * Our engine: labels are unique in a store, so the list has one item.
 */
ZELKM_API int ZELKM_GetKeyItemListByLabel(int handle, const char* label, ZELKMKeyItemList** list);

/**
 * ZELKM_GetKeyItemsByPublicKey reads all that hold the public key, a DER SubjectPublicKeyInfo.
 * Released by ZELKM_FreeKeyItemList.
 */
ZELKM_API int ZELKM_GetKeyItemsByPublicKey(int handle, uint32_t keyLength,
                                           const unsigned char* keyBytes, ZELKMKeyItemList** list);

/** ZELKM_GetDefaultKeyItem reads the default key. Released by ZELKM_FreeKeyItem. */
ZELKM_API int ZELKM_GetDefaultKeyItem(int handle, ZELKMKeyItem** item);

/** ZELKM_GetReqKeyItemByLabel reads a pending request. Released by ZELKM_FreeReqKeyItem. */
ZELKM_API int ZELKM_GetReqKeyItemByLabel(int handle, const char* label, ZELKMReqKeyItem** item);

/** ZELKM_IsPrivateKeyPresent sets the byte to 1 when the entry has a private key. */
ZELKM_API int ZELKM_IsPrivateKeyPresent(int handle, const char* label, unsigned char* present);

/**
 * ZELKM_InsertKey stores a certificate, with its key when there is one.
 *
 * Our engine: the certificate is DER. The key is a PrivateKeyInfo (PKCS #8), an
 * EncryptedPrivateKeyInfo under the password of the store, or a traditional RSAPrivateKey or
 * ECPrivateKey, all DER; it has to belong to the certificate (62). firstFlag marks the entry as
 * trusted, secondFlag makes it the default key, which takes a key (111). Tokens (141) and
 * certificate stores (80) have no default key.
 */
ZELKM_API int ZELKM_InsertKey(int handle, const char* label, uint32_t certLength,
                              const unsigned char* certBytes, uint32_t keyLength,
                              const unsigned char* keyBytes, unsigned char firstFlag,
                              unsigned char secondFlag);

/**
 * ZELKM_InsertReqKey stores a pending request with its key.
 *
 * Our engine: the first bytes are the CertificationRequest (PKCS #10), DER, the second the private
 * key, in the forms that ZELKM_InsertKey takes.
 */
ZELKM_API int ZELKM_InsertReqKey(int handle, const char* label, uint32_t firstLength,
                                 const unsigned char* firstBytes, uint32_t secondLength,
                                 const unsigned char* secondBytes);

ZELKM_API int ZELKM_DeleteKey(int handle, const char* label);

ZELKM_API int ZELKM_DeleteRequestKeyPair(int handle, const char* label);

ZELKM_API int ZELKM_SetDefaultKeyByLabel(int handle, const char* label);

ZELKM_API int ZELKM_SetTrustStatus(int handle, const char* label, unsigned char trusted);

/* Certificates and requests */

/** ZELKM_InitDNItem clears the 104-byte record whose pointer it is given the address of. */
ZELKM_API void ZELKM_InitDNItem(ZELKMDNItem** dn);

/**
 * ZELKM_CreateSelfSignedCert makes a key pair and a self-signed certificate under the label, and
 * writes the certificate to a file too when a name is given.
 *
 * Our engine: firstFlag makes the entry the default key. firstNumber is the X.509 version, 1 to 3
 * (45 for another). secondNumber is the key size, which chooses the algorithm as well: 2048 to
 * 16384 an RSA key of so many bits; 256, 384 and 521 an EC key on the NIST curve of that size;
 * 25519 an Ed25519 key; any other size is 41. thirdNumber is the validity in days from now on, at
 * least 1 (48) and not beyond the year 9999 (129). secondFlag writes the file as Base64 in PEM
 * armour, else as DER. The serial number is random, 127 bits. The signature is made by the key's
 * strength: SHA-256, SHA-384 or SHA-512. A certificate of version 3 is an authority's: basic
 * constraints with CA true and no path length, key usages digitalSignature, keyCertSign and
 * cRLSign, both critical, and the subject and authority key identifiers. The entry is trusted.
 */
ZELKM_API int ZELKM_CreateSelfSignedCert(int handle, const char* label, unsigned char firstFlag,
                                         int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                                         int thirdNumber, const char* certFileName,
                                         unsigned char secondFlag);

/**
 * ZELKM_CreateSelfSignedCertSigExt is the same with a signature algorithm and extensions.
 *
 * Our engine: signatureAlgorithm 1 is SHA-256 and 2 is SHA-512, with the algorithm of the key; any
 * other is 133. Ed25519, which hashes for itself, ignores the choice. The extensions are a DER
 * `Extensions` (RFC 5280, 4.1) and stand in the place of an authority's; they take version 3 (45).
 */
ZELKM_API int ZELKM_CreateSelfSignedCertSigExt(
    int handle, const char* label, unsigned char firstFlag, int firstNumber, int secondNumber,
    const ZELKMDNItem* dn, int thirdNumber, int signatureAlgorithm, const unsigned char* extensions,
    uint32_t extensionsLength, const char* certFileName, unsigned char secondFlag);

/*
 * The request and issue operations end in two arguments of which only that they are zero is known.
 * They are 64 bits wide, so that a library that reads a pointer there finds null, and one that
 * reads a smaller number finds zero.
 *
 * Our engine: it does not look at them. Key size, signature algorithm and extensions are what they
 * are for ZELKM_CreateSelfSignedCertSigExt throughout.
 */

/**
 * ZELKM_CreateNewCertReq makes a key pair and a request under the label, and writes its file.
 *
 * Our engine: no file is written when its name is null. Request files are PEM.
 */
ZELKM_API int ZELKM_CreateNewCertReq(int handle, const char* label, int keySize,
                                     const ZELKMDNItem* dn, const char* certReqFileName,
                                     int64_t zero1, int64_t zero2);

/**
 * ZELKM_CreateNewCertReqSigExt is the same with a signature algorithm and extensions.
 *
 * Our engine: the extensions are what the request asks for (`extensionRequest`, RFC 2985, 5.4.2).
 */
ZELKM_API int ZELKM_CreateNewCertReqSigExt(int handle, const char* label, int keySize,
                                           const ZELKMDNItem* dn, int signatureAlgorithm,
                                           const unsigned char* extensions,
                                           uint32_t extensionsLength, const char* certReqFileName,
                                           int64_t zero1, int64_t zero2);

/** ZELKM_ReCreateCertReq writes the label's request to a file again. */
ZELKM_API int ZELKM_ReCreateCertReq(int handle, const char* label, const char* certReqFileName,
                                    int64_t zero1, int64_t zero2);

/**
 * ZELKM_ReCreateCertReqSig does so with a new signature.
 *
 * Our engine: the request that is signed anew takes the place of the pending one.
 */
ZELKM_API int ZELKM_ReCreateCertReqSig(int handle, const char* label, int signatureAlgorithm,
                                       const char* certReqFileName, int64_t zero1, int64_t zero2);

/**
 * ZELKM_IssueCert signs a request with the issuer's key and writes the certificate file.
 *
 * Our engine: firstNumber is the X.509 version, 1 to 3. serialNumber is decimal, or hexadecimal
 * after "0x", above zero and of at most 159 bits (67); null or empty asks for a random one of 127
 * bits. secondNumber is the validity in days, as for ZELKM_CreateSelfSignedCert. The flag writes
 * the file as Base64 in PEM armour, else as DER; it needs a name (85). A certificate of version 3
 * is granted, of the extensions that the request asks for: alternative names and extended key
 * usages, as they stand; key usages, those of an authority for an authority only; the rights of an
 * authority, unless the issuer's path length is 0, and with a path length below the issuer's where
 * that has one. It always has basic constraints and both key identifiers, and never anything else.
 */
ZELKM_API int ZELKM_IssueCert(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                              const char* issuerLabel, int firstNumber, const char* serialNumber,
                              int secondNumber, const char* certFileName, unsigned char flag,
                              int64_t zero1, int64_t zero2);

/** ZELKM_IssueCertSig is the same with a signature algorithm. */
ZELKM_API int ZELKM_IssueCertSig(int handle, const unsigned char* requestBytes,
                                 uint32_t requestLength, const char* issuerLabel, int firstNumber,
                                 const char* serialNumber, int secondNumber, int signatureAlgorithm,
                                 const char* certFileName, unsigned char flag, int64_t zero1,
                                 int64_t zero2);

/**
 * ZELKM_ReceiveCert joins a certificate with the pending request that holds its key.
 *
 * Our engine: the bytes are a certificate, a PKCS #7 message or PEM text with any number of both,
 * of which the issuers are stored too. The flag makes the entry the default key. 108 when no
 * request has the key.
 */
ZELKM_API int ZELKM_ReceiveCert(int handle, const unsigned char* certBytes, uint32_t certLength,
                                unsigned char flag);

/** ZELKM_StoreCACert stores a trusted certificate without a key. */
ZELKM_API int ZELKM_StoreCACert(int handle, const unsigned char* certBytes, uint32_t certLength,
                                const char* label);

/**
 * ZELKM_ExportCert writes the label's certificate to a file.
 *
 * Our engine: the format is 0 for DER, anything else for Base64 in PEM armour.
 */
ZELKM_API int ZELKM_ExportCert(int handle, const char* label, const char* certFileName,
                               unsigned char format);

/** ZELKM_RenewCert puts a certificate in the place of the one that it renews. */
ZELKM_API int ZELKM_RenewCert(int handle, const unsigned char* certBytes, uint32_t certLength);

/** ZELKM_CheckCertAsRenewal sets the byte to 1 when the certificate would renew one. */
ZELKM_API int ZELKM_CheckCertAsRenewal(int handle, const unsigned char* certBytes,
                                       uint32_t certLength, unsigned char* isRenewal);

/** ZELKM_ValidateCertChain sets the byte to 1 when the chain to a trusted entry is valid. */
ZELKM_API int ZELKM_ValidateCertChain(int handle, const unsigned char* certBytes,
                                      uint32_t certLength, unsigned char* isValid);

/** ZELKM_GetUnsignedCertFromCert copies the to-be-signed part out of a certificate. */
ZELKM_API int ZELKM_GetUnsignedCertFromCert(const unsigned char* certBytes, uint32_t certLength,
                                            unsigned char** buffer, uint32_t* length);

/** ZELKM_Base64DecodeFileToBuf reads a Base64 or PEM file. */
ZELKM_API int ZELKM_Base64DecodeFileToBuf(const char* fileName, unsigned char** buffer,
                                          uint32_t* length);

/**
 * ZELKM_ExtractCertListFromPKCS7Data reads the certificates of a PKCS #7 message (RFC 2315).
 * Released by ZELKM_FreeCertItemList.
 */
ZELKM_API int ZELKM_ExtractCertListFromPKCS7Data(const unsigned char* bytes, uint32_t length,
                                                 ZELKMCertItemList** certList);

/* Private keys and PKCS #12 */

/** ZELKM_InitEPKIItem clears the record whose pointer it is given the address of. */
ZELKM_API void ZELKM_InitEPKIItem(ZELKMEPKIItem** epki);

/**
 * ZELKM_GetEPKIItemFromPrivateKey encrypts a private key. Released by ZELKM_FreeEPKIItem.
 *
 * Our engine: the key is in one of the clear forms that ZELKM_InsertKey takes.
 */
ZELKM_API int ZELKM_GetEPKIItemFromPrivateKey(const unsigned char* keyBytes, uint32_t keyLength,
                                              const char* password, ZELKMEPKIItem** epki);

/** ZELKM_GetPrivKeyInfoItemFromEPKIItem decrypts. Released by ZELKM_FreePrivKeyInfoItem. */
ZELKM_API int ZELKM_GetPrivKeyInfoItemFromEPKIItem(const ZELKMEPKIItem* epki, const char* password,
                                                   ZELKMPrivKeyInfoItem** privKeyInfo);

/**
 * ZELKM_ImportKeysFromPFXFile takes in all that a PKCS #12 file holds (RFC 7292).
 *
 * Our engine: a null password is the empty one.
 */
ZELKM_API int ZELKM_ImportKeysFromPFXFile(int handle, const char* pfxFileName,
                                          const char* pfxPassword);

/** ZELKM_ExportKeys writes the labelled entries to a PKCS #12 file; the export type is 1. */
ZELKM_API int ZELKM_ExportKeys(int handle, int exportType, const char* pfxFileName,
                               const char* pfxPassword, const ZELKMLabelList* labels);

/* Release; null is ignored by each. */

ZELKM_API void ZELKM_FreeDNItem(ZELKMDNItem* dn);
ZELKM_API void ZELKM_FreeKeyItem(ZELKMKeyItem* item);
ZELKM_API void ZELKM_FreeKeyItemList(ZELKMKeyItemList* list);
ZELKM_API void ZELKM_FreeCertItemList(ZELKMCertItemList* list);
ZELKM_API void ZELKM_FreeLabelList(ZELKMLabelList* list);
ZELKM_API void ZELKM_FreeReqKeyItem(ZELKMReqKeyItem* item);
ZELKM_API void ZELKM_FreeEPKIItem(ZELKMEPKIItem* epki);
ZELKM_API void ZELKM_FreePrivKeyInfoItem(ZELKMPrivKeyInfoItem* privKeyInfo);

#ifdef __cplusplus
}
#endif

#endif  // ZELKM_OPERATIONS_H_
