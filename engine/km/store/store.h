#ifndef ZEL_KM_STORE_STORE_H_
#define ZEL_KM_STORE_STORE_H_

#include <functional>
#include <vector>

#include "engine/cms/signing.h"
#include "engine/km/store/label.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * The one face of everything that holds keys: key databases, tokens, certificate stores. An
 * operation of the C interface is written against it and knows no other:
 *
 *     int ZELKM_SetTrustStatus(int handle, const char* label, unsigned char trusted) {
 *       return onStore(__func__, handle, [&](Store& store) -> Status {
 *         return store.setTrusted(label, trusted != 0);
 *       });
 *     }
 *
 * Conventions:
 *  1. A key and a request may carry the same label.
 *     Certificates, requests and public keys are DER.
 *  2. A changing call is all or nothing, and so is a run of them inside inTransaction.
 *  3. A store is used by one thread at a time: onStore sees to it.
 *  4. What a store cannot do is ZELKM_ERR_UNSUPPORTED_OPTION (80), what a token cannot do is
 *     ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141).
 */

namespace zel::km {

/** A PrivateKey is its PKCS #8 bytes, or the name under which a store keeps it to itself. */
struct PrivateKey {
  sys::SecretBytes pkcs8; /**< PrivateKeyInfo, empty when the key does not leave its store */
  sys::Bytes reference;   /**< the store's own name of a key that does not leave it */

  bool present() const { return !pkcs8.empty() || !reference.empty(); }
};

/** A KeyEntry is a certificate, with its private key when the store has it. */
struct KeyEntry {
  Label label;
  sys::Bytes certificate;
  PrivateKey privateKey;
  bool trusted = false;
  bool isDefault = false;
};

/** A certificate with the label under which it is known. */
struct LabelledCertificate {
  Label label;
  sys::Bytes certificate;
};

/** A RequestEntry is a key pair that waits for its certificate. */
struct RequestEntry {
  Label label;
  sys::Bytes request; /**< CertificationRequest (PKCS #10) */
  PrivateKey privateKey;
};

/** A GeneratedKey is a new key pair, in no entry yet. */
struct GeneratedKey {
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo */
  PrivateKey privateKey;
};

using cms::SigningDigest;

class Store {
 public:
  Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
  virtual ~Store() = default;

  /** The labels in the order in which their entries came. A tampered store is found out here. */
  virtual sys::Result<std::vector<Label>> keyLabels() = 0;
  virtual sys::Result<std::vector<Label>> requestLabels() = 0;

  /** ZELKM_ERR_KEY_GET_BY_LABEL (117) when there is none. */
  virtual sys::Result<KeyEntry> findKey(const Label& label) = 0;
  /** ZELKM_ERR_KEY_GET_BY_LABEL (117) when there is none. */
  virtual sys::Result<RequestEntry> findRequest(const Label& label) = 0;
  /** ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL (110) when no entry is the default. */
  virtual sys::Result<KeyEntry> defaultKey() = 0;

  /** All entries whose certificate holds the SubjectPublicKeyInfo; none is an empty answer. */
  virtual sys::Result<std::vector<KeyEntry>> findKeysByPublicKey(sys::ByteView publicKey) = 0;
  /** All requests for the SubjectPublicKeyInfo; none is an empty answer. */
  virtual sys::Result<std::vector<RequestEntry>> findRequestsByPublicKey(
      sys::ByteView publicKey) = 0;
  /** All entries whose certificate has the subject, in cms::canonicalName's form, for chains. */
  virtual sys::Result<std::vector<KeyEntry>> findKeysBySubject(sys::ByteView subject) = 0;

  /**
   * Adds an entry; isDefault takes the mark from the entry that had it.
   * ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23) when the label is in use by a key.
   */
  virtual sys::Status insertKey(const KeyEntry& entry) = 0;
  /** ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23) when the label is in use by a request. */
  virtual sys::Status insertRequest(const RequestEntry& entry) = 0;
  /** Puts the entry in the place of the one with its label: same place in the order. */
  virtual sys::Status replaceKey(const KeyEntry& entry) = 0;
  virtual sys::Status replaceRequest(const RequestEntry& entry) = 0;
  /** ZELKM_ERR_KEY_GET_BY_LABEL (117) when there is none. */
  virtual sys::Status removeKey(const Label& label) = 0;
  virtual sys::Status removeRequest(const Label& label) = 0;
  virtual sys::Status setDefault(const Label& label) = 0;
  virtual sys::Status setTrusted(const Label& label, bool trusted) = 0;

  /**
   * Runs several changes as one: all of them stay when the body answers success, none when it
   * fails or throws. Nested runs belong to the outermost. A store without transactions runs the
   * body as it is.
   */
  virtual sys::Status inTransaction(const std::function<sys::Status()>& body) = 0;

  /**
   * Runs the body on the store as it is at one moment: what others change meanwhile it does not
   * see. A store without transactions runs the body as it is.
   */
  virtual sys::Status inSnapshot(const std::function<sys::Status()>& body) { return body(); }

  /**
   * Runs the body on the store that takes the certificates which come along with an entry: this
   * one, or the secondary key database of a token that was lent one.
   */
  virtual sys::Status onSignerStore(const std::function<sys::Status(Store&)>& body) {
    return body(*this);
  }

  /**
   * A new key pair: 2048 to 16384 bits RSA; 256, 384, 521 EC on the NIST curve; 25519 Ed25519.
   * ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE (41) for any other size, or one that the store's mode
   * does not approve.
   */
  virtual sys::Result<GeneratedKey> generateKey(int keySize) = 0;
  /** Signs the message as certificates carry signatures: RSA PKCS #1 v1.5, ECDSA DER, Ed25519. */
  virtual sys::Result<sys::Bytes> sign(const PrivateKey& key, SigningDigest digest,
                                       sys::ByteView message) = 0;

  /** True for a store that accepts approved (FIPS 140) algorithms and sizes only. */
  virtual bool approvedOnly() const = 0;

  /**
   * The key as EncryptedPrivateKeyInfo under the store's password.
   * ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111) for a key that is absent or does not leave the store.
   */
  virtual sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) = 0;
  /**
   * The other way: PKCS #8 bytes from an EncryptedPrivateKeyInfo under the store's password.
   * ZELKM_ERR_PKCS12_PWD_CORRUPTION (120) when it is under another password.
   */
  virtual sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) = 0;
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_STORE_H_
