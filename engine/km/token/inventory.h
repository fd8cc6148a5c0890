#ifndef ZEL_KM_TOKEN_INVENTORY_H_
#define ZEL_KM_TOKEN_INVENTORY_H_

#include <vector>

#include "engine/km/store/label.h"
#include "engine/km/token/token_objects.h"

/**
 * @file
 * What lies on a token, sorted into entries: objects that belong together are found together.
 *
 *     Result<Inventory> inventory = Inventory::take(session, {}, {});
 *     const CertificateEntry* entry = inventory.value().certificate("web");
 *     if (entry != nullptr && entry->privateKey != nullptr) ...
 *
 * A certificate is an entry, with the private key of its public key. A private key without a
 * certificate is a request, whether its request is kept on the token or has to be made again. By
 * the public key it is told which private key belongs to a certificate, and by CKA_ID where a token
 * does not tell the public key. Other objects are not listed.
 *
 * Tokens keep no order, and let several objects have one label or none. Entries are ordered by
 * label and public key, so that the same numbers tell the same entries apart every time.
 */

namespace zel::km::token {

struct CertificateEntry {
  Label label; /**< unlike all others */
  const CertificateObject* certificate = nullptr;
  const PrivateKeyObject* privateKey = nullptr; /**< null for a signer certificate */
};

struct PendingEntry {
  Label label;
  const RequestObject* request = nullptr;       /**< null when it has to be made again */
  const PrivateKeyObject* privateKey = nullptr; /**< null when the token does not have it */

  /** SubjectPublicKeyInfo; empty for a key that does not tell it. */
  sys::ByteView publicKey() const {
    return request != nullptr ? request->publicKey : privateKey->publicKey;
  }
};

class Inventory {
 public:
  /** Reads the token. Private keys that are `unclaimed` are no entries. */
  static sys::Result<Inventory> take(const Session& session, const Handles& doomed,
                                     const Handles& unclaimed);

  Inventory(const Inventory&) = delete;
  Inventory& operator=(const Inventory&) = delete;
  // Entries point to objects, which stay in their places when the vectors move.
  Inventory(Inventory&&) = default;
  Inventory& operator=(Inventory&&) = default;
  ~Inventory() = default;

  const std::vector<CertificateEntry>& certificates() const { return certificates_; }
  const std::vector<PendingEntry>& requests() const { return requests_; }

  /** Null when there is none. */
  const CertificateEntry* certificate(const Label& label) const;
  const PendingEntry* request(const Label& label) const;
  const PrivateKeyObject* privateKey(CK_OBJECT_HANDLE handle) const;
  const PrivateKeyObject* privateKeyOf(sys::ByteView publicKey) const;

  /** True when a certificate holds the key's public key. */
  bool isCertified(const PrivateKeyObject& key) const;
  /** True when a request kept on the token holds the key's public key. */
  bool isRequested(const PrivateKeyObject& key) const;
  /** The public key objects of a private key. */
  std::vector<const PublicKeyObject*> publicKeysOf(const PrivateKeyObject& key) const;

 private:
  Inventory(TokenObjects objects, const Handles& unclaimed);

  void completePublicKeys();
  void enterCertificates();
  void enterRequests(const Handles& unclaimed);
  bool belongTogether(const CertificateObject& certificate, const PrivateKeyObject& key) const;
  const PrivateKeyObject* keyOf(const CertificateObject& certificate) const;

  TokenObjects objects_;
  std::vector<CertificateEntry> certificates_;
  std::vector<PendingEntry> requests_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_INVENTORY_H_
