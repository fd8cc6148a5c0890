#ifndef ZEL_KM_TOKEN_ENTRY_WRITER_H_
#define ZEL_KM_TOKEN_ENTRY_WRITER_H_

#include <optional>
#include <set>
#include <vector>

#include "engine/km/store/store.h"
#include "engine/km/token/changes.h"
#include "engine/km/token/inventory.h"

/**
 * @file
 * Entries, written as the objects that they are made of. A key and its certificate get the same
 * CKA_ID and label; what other tools have set is kept.
 */

namespace zel::km::token {

class EntryWriter {
 public:
  EntryWriter(const Session& session, Changes& changes) : session_(session), changes_(changes) {}

  /** A new key pair, in no entry yet. */
  sys::Result<GeneratedKey> generateKey(int keySize);
  /** The private keys of the new key pairs that are in no entry. */
  Handles unclaimed() const;
  /** Destroys the new key pairs that have not become part of an entry. */
  void dropUnclaimed();
  /** To be called at the end of a transaction: new key pairs that it used are kept, or are not. */
  void settle(bool kept);

  /** Writes the entry's certificate, and its key when the token does not have it. */
  sys::Status writeCertificate(const KeyEntry& entry);
  /**
   * Writes the entry's request, and its key when the token does not have it. On a token that takes
   * no data objects only the key remembers what was requested: its subject, not its extensions.
   */
  sys::Status writeRequest(const RequestEntry& entry);
  /** Marks a certificate that is on the token as trusted, or not. */
  sys::Status changeTrust(const CertificateEntry& entry, bool trusted);
  /** Puts the entry in the place of the old one. */
  sys::Status replaceCertificate(const CertificateEntry& old, const KeyEntry& entry);
  sys::Status removeCertificate(const CertificateEntry& entry);
  sys::Status removeRequest(const PendingEntry& entry);

  /** The name of a private key on the token, for PrivateKey::reference. */
  static sys::Bytes referenceTo(CK_OBJECT_HANDLE privateKey);
  /** CK_INVALID_HANDLE when the bytes are no such name. */
  static CK_OBJECT_HANDLE referredTo(const sys::Bytes& reference);

 private:
  /** A key pair on the token that an entry is being written for. */
  struct KeyObjects {
    CK_OBJECT_HANDLE privateKey = CK_INVALID_HANDLE;
    std::vector<CK_OBJECT_HANDLE> publicKeys;
    std::string label;
    sys::Bytes id;
    sys::Bytes subject;
  };

  sys::Result<Inventory> inventory() const {
    return Inventory::take(session_, changes_.doomed(), unclaimed());
  }
  sys::Result<std::optional<KeyObjects>> keyFor(const PrivateKey& key, sys::ByteView publicKey);
  static KeyObjects objectsOf(const Inventory& inventory, const PrivateKeyObject& key);
  bool claimNew(CK_OBJECT_HANDLE privateKey);
  /** Gives the key pair the label, ID and subject that it does not have yet. */
  sys::Status claim(KeyObjects& key, std::string_view label, sys::ByteView publicKey,
                    sys::ByteView subject);
  sys::Status rememberSubject(const KeyObjects& key, sys::ByteView subject);
  sys::Status spareKey(CK_OBJECT_HANDLE privateKey);
  /** Dooms a key pair that no entry needs any more. */
  sys::Status dropKeyIfUnused(CK_OBJECT_HANDLE privateKey);

  const Session& session_;
  Changes& changes_;
  std::vector<KeyPairHandles> unclaimed_;
  std::vector<KeyPairHandles> claimed_; /**< by the transaction that is under way */
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_ENTRY_WRITER_H_
