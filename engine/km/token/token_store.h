#ifndef ZEL_KM_TOKEN_TOKEN_STORE_H_
#define ZEL_KM_TOKEN_TOKEN_STORE_H_

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "engine/km/store/store.h"
#include "engine/km/token/plan.h"
#include "engine/km/token/secondary.h"
#include "engine/km/token/session.h"
#include "engine/km/token/snapshot.h"
#include "engine/km/token/token_access.h"
#include "engine/km/token/token_view.h"
#include "engine/km/token/transaction.h"

/**
 * @file
 * A PKCS #11 token as a store. docs/tokens.md says what lies on the token for what.
 *
 * Its private keys do not leave it, so their entries carry references; keys that are brought in
 * become references too. It has no default key: that is
 * ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141) where a store would set one. The token is read
 * once by every call, because other programs may work on it as well; a transaction reads it once
 * for all the calls in it, and so does a snapshot.
 */

namespace zel::km::token {

class TokenStore final : public Store {
 public:
  /** Opens a token; the codes of openToken. */
  static sys::Result<std::unique_ptr<Store>> open(const TokenName& name, const sys::Password& pin);

  ~TokenStore() override;

  /**
   * Lends the token a key database: issuers are looked for in it too, and signer certificates that
   * come along with others go into it.
   */
  void setSecondary(StoreOnLoan secondary) { secondary_.lend(std::move(secondary)); }
  /** ZELKM_ERR_NO_SECONDARY_KEYDB (136) when none is lent. */
  sys::Status unsetSecondary();

  sys::Result<std::vector<Label>> keyLabels() override;
  sys::Result<std::vector<Label>> requestLabels() override;
  sys::Result<KeyEntry> findKey(const Label& label) override;
  sys::Result<RequestEntry> findRequest(const Label& label) override;
  sys::Result<KeyEntry> defaultKey() override;
  sys::Result<std::vector<KeyEntry>> findKeysByPublicKey(sys::ByteView publicKey) override;
  sys::Result<std::vector<RequestEntry>> findRequestsByPublicKey(sys::ByteView publicKey) override;
  sys::Result<std::vector<KeyEntry>> findKeysBySubject(sys::ByteView subject) override;

  sys::Status insertKey(const KeyEntry& entry) override;
  sys::Status insertRequest(const RequestEntry& entry) override;
  sys::Status replaceKey(const KeyEntry& entry) override;
  sys::Status replaceRequest(const RequestEntry& entry) override;
  sys::Status removeKey(const Label& label) override;
  sys::Status removeRequest(const Label& label) override;
  sys::Status setDefault(const Label& label) override;
  sys::Status setTrusted(const Label& label, bool trusted) override;
  sys::Status runChanges(const Run& run) override;
  sys::Status runReading(const Run& run) override;
  sys::Status onSignerStore(const std::function<sys::Status(Store&)>& body) override;

  sys::Result<GeneratedKey> generateKey(int keySize) override;
  sys::Result<sys::Bytes> sign(const PrivateKey& key, SigningDigest digest,
                               sys::ByteView message) override;
  bool approvedOnly() const override;
  sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) override;
  sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) override;

 private:
  explicit TokenStore(std::unique_ptr<Session> session);

  /** Runs a body on what lies on the token, and answers what it answers. */
  template <typename Body>
  std::invoke_result_t<Body, const TokenView&> onView(Body body);
  /** The snapshot that is to be looked at; null when the token is to be read anew. */
  Snapshot* underWay();
  Handles newKeyHandles() const;
  sys::Result<RequestEntry> requestEntry(const PendingEntry& pending);

  /** Changes the token by what is planned on what lies on it. */
  template <typename Planner>
  sys::Status change(Planner planner);
  sys::Status commit();

  std::unique_ptr<Session> session_;
  Secondary secondary_;
  std::vector<KeyPairHandles> newKeys_; /**< made here, and in no entry yet */
  std::optional<Snapshot> snapshot_;
  std::optional<Transaction> transaction_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_STORE_H_
