#ifndef ZEL_KM_TOKEN_TOKEN_STORE_H_
#define ZEL_KM_TOKEN_TOKEN_STORE_H_

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/km/store/store.h"
#include "engine/km/token/changes.h"
#include "engine/km/token/entry_writer.h"
#include "engine/km/token/inventory.h"
#include "engine/km/token/session.h"

/**
 * @file
 * A PKCS #11 token as a store. docs/tokens.md says what lies on the token for what.
 *
 * Its private keys do not leave it, so their entries carry references; keys that are brought in
 * become references too. It has no default key: that is
 * ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141) where a store would set one. The token is read
 * anew by every call, because other programs may work on it as well.
 */

namespace zel::km::token {

/** StoreOnLoan runs a body on a store that others use too, alone on it meanwhile, or fails. */
using StoreOnLoan = std::function<sys::Status(const std::function<sys::Status(Store&)>&)>;

class TokenStore final : public Store {
 public:
  /** Opens a token; names and password as the C interface has them, the password may be null. */
  static sys::Result<std::unique_ptr<Store>> open(const char* moduleName, const char* tokenLabel,
                                                  const char* password);

  ~TokenStore() override;

  /**
   * Lends the token a key database: issuers are looked for in it too, and signer certificates that
   * come along with others go into it.
   */
  void setSecondary(StoreOnLoan secondary) { secondary_ = std::move(secondary); }
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
  sys::Status onSignerStore(const std::function<sys::Status(Store&)>& body) override;

  sys::Result<GeneratedKey> generateKey(int keySize) override;
  sys::Result<sys::Bytes> sign(const PrivateKey& key, SigningDigest digest,
                               sys::ByteView message) override;
  bool approvedOnly() const override;
  sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) override;
  sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) override;

 private:
  explicit TokenStore(std::unique_ptr<Session> session);

  sys::Result<Inventory> inventory() const {
    return Inventory::take(*session_, changes_.doomed(), writer_.unclaimed());
  }
  sys::Result<RequestEntry> requestEntry(const PendingEntry& pending);

  /** Runs the body as a transaction of the secondary key database too. */
  sys::Status withSecondary(const std::function<sys::Status()>& body);
  void takeBack();
  /** Runs the body on the secondary key database. Only to be called when there is one. */
  sys::Status onSecondary(const std::function<sys::Status(Store&)>& body);

  std::unique_ptr<Session> session_;
  Changes changes_;
  EntryWriter writer_;
  StoreOnLoan secondary_;           /**< empty when none is lent */
  Store* secondaryInUse_ = nullptr; /**< while a transaction is under way */
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_STORE_H_
