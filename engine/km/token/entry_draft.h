#ifndef ZEL_KM_TOKEN_ENTRY_DRAFT_H_
#define ZEL_KM_TOKEN_ENTRY_DRAFT_H_

#include <optional>
#include <string_view>

#include "engine/km/store/store.h"
#include "engine/km/token/plan.h"
#include "engine/km/token/token_view.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * A plan in the making, and the view as it will be then:
 *
 *     Draft draft(view);
 *     if (Status done = draft.writeCertificate(entry); !done) return done.failure();
 *     draft.removeCertificate(old);
 *     return std::move(draft).plan();
 */

namespace zel::km::token {

class Draft {
 public:
  explicit Draft(const TokenView& view) : view_(view) {}

  sys::Status writeCertificate(const KeyEntry& entry);
  sys::Status writeRequest(const RequestEntry& entry);
  /** Gives a certificate that stays what is new to it. */
  sys::Status completeCertificate(const CertificateEntry& old, const KeyEntry& entry);
  sys::Status changeTrust(const CertificateEntry& entry, bool isTrusted);
  void removeCertificate(const CertificateEntry& entry);
  void removeRequest(const PendingEntry& entry);

  Plan plan() && { return std::move(plan_); }

 private:
  /** The key pair of the entry that is written. */
  struct EntryKey {
    CK_OBJECT_HANDLE privateKey;
    sys::Bytes id;
  };

  /** What an entry's key has to fit, and is named after. */
  struct EntryNames {
    std::string_view label; /**< real UTF-8 */
    const sys::Bytes& publicKey;
    const sys::Bytes& subject;
  };

  void add(Step step);
  void addCreation(Template attributes, TokenObject object);
  void removeKeyIfUnused(const PrivateKeyRef& key);

  /** Nothing for an entry without a key. */
  sys::Result<std::optional<EntryKey>> writeKey(const PrivateKey& key, const EntryNames& names);
  /** The key on the token that the entry means; null when it has none yet. */
  sys::Result<PrivateKeyRef> findKey(const PrivateKey& key, sys::ByteView publicKey);
  sys::Result<EntryKey> nameKey(const PrivateKeyObject& key, const EntryNames& names);
  sys::Result<EntryKey> importKey(sys::ByteView pkcs8, const EntryNames& names);

  /** A handle for an object that is still to be made; modules give small ones. */
  CK_OBJECT_HANDLE nextHandle() { return --lastHandle_; }

  TokenView view_;
  Plan plan_;
  CK_OBJECT_HANDLE lastHandle_ = CK_UNAVAILABLE_INFORMATION;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_ENTRY_DRAFT_H_
