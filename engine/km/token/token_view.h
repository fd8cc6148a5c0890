#ifndef ZEL_KM_TOKEN_TOKEN_VIEW_H_
#define ZEL_KM_TOKEN_TOKEN_VIEW_H_

#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "engine/km/store/label.h"
#include "engine/km/token/token_objects.h"

/**
 * @file
 * What lies on a token, read once and kept up to date by the changes that are made, and sorted into
 * entries: objects that belong together are found together.
 *
 *     Result<TokenView> view = readToken(session, {});  // token_reading.h
 *     std::optional<CertificateEntry> entry = view.value().certificate(label);
 *     if (entry && entry->privateKey) ...
 *
 * A certificate is an entry, with the private key of its public key. A private key without a
 * certificate is a request, whether its request is kept on the token or has to be made again. By
 * the public key it is told which private key belongs to a certificate, and by CKA_ID where a token
 * does not tell the public key. Other objects are not listed, and new keys are not, which were made
 * here for an entry that is still to come.
 *
 * Tokens keep no order, and let several objects have one label or none. Entries are ordered by
 * label and public key, so that the same numbers tell the same entries apart every time.
 */

namespace zel::km::token {

struct CertificateEntry {
  Label label; /**< unlike all others */
  CertificateRef certificate;
  PrivateKeyRef privateKey; /**< null for a signer certificate */
};

struct PendingEntry {
  Label label;
  RequestRef request;       /**< null when it has to be made again */
  PrivateKeyRef privateKey; /**< null when the token does not have it */

  /** SubjectPublicKeyInfo; empty for a key that does not tell it. */
  const sys::Bytes& publicKey() const {
    return request ? request->publicKey : privateKey->publicKey;
  }
};

using Handles = std::set<CK_OBJECT_HANDLE>;

/** A TokenView is a value: a copy of it is cheap, and changes on its own. */
class TokenView {
 public:
  TokenView() = default;
  /** New keys are told by the handles of their private keys. */
  TokenView(TokenObjects objects, Handles newKeys);

  std::vector<CertificateEntry> certificates() const;
  std::vector<PendingEntry> requests() const;

  // Nothing, or null, when there is none.
  std::optional<CertificateEntry> certificate(const Label& label) const;
  std::optional<PendingEntry> request(const Label& label) const;
  PrivateKeyRef privateKey(CK_OBJECT_HANDLE handle) const;
  PrivateKeyRef privateKeyOf(sys::ByteView publicKey) const;

  /** The public key objects of a private key. */
  std::vector<PublicKeyRef> publicKeysOf(const PrivateKeyObject& key) const;
  /** True when a certificate, or a request kept on the token, is for the key. */
  bool isUsed(const PrivateKeyObject& key) const { return isCertified(key) || isRequested(key); }
  bool isNew(CK_OBJECT_HANDLE privateKey) const { return newKeys_.contains(privateKey); }

  /** What TokenObjects::attribute tells. */
  sys::Bytes attribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const {
    return objects_.attribute(object, type);
  }

  // The changes, which the view follows.

  void add(TokenObject object) { objects_.put(std::move(object)); }
  void addNewKey(KeyPairObjects pair);
  void set(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type, sys::ByteView value) {
    objects_.setAttribute(object, type, value);
  }
  /** Takes the object for gone. */
  void remove(CK_OBJECT_HANDLE object) { objects_.moveTo(removed_, object); }
  std::vector<CK_OBJECT_HANDLE> removed() const;
  /** Brings a private key back that was removed, with its public keys. */
  void restoreKey(CK_OBJECT_HANDLE privateKey);
  /** Null when no such private key was removed. */
  PrivateKeyRef removedKey(CK_OBJECT_HANDLE handle) const;
  /** An entry has come for a new key. */
  void useNewKey(CK_OBJECT_HANDLE privateKey) { newKeys_.erase(privateKey); }

 private:
  void completePublicKeys();
  bool belongTogether(const CertificateObject& certificate, const PrivateKeyObject& key) const;
  PrivateKeyRef keyOf(const CertificateObject& certificate) const;
  bool isCertified(const PrivateKeyObject& key) const;
  bool isRequested(const PrivateKeyObject& key) const;

  TokenObjects objects_;
  TokenObjects removed_;
  Handles newKeys_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_VIEW_H_
