#ifndef ZEL_KM_KEYDB_KEY_DATABASE_H_
#define ZEL_KM_KEYDB_KEY_DATABASE_H_

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "engine/km/keydb/database_file.h"
#include "engine/km/keydb/opening.h"
#include "engine/km/keydb/records.h"
#include "engine/km/store/pkcs8_store.h"

/**
 * @file
 * Key databases as stores: entries on the one side, sealed records on the other.
 */

namespace zel::km {

/** A KeyDatabase is the store of a key database file (locator type 1). */
class KeyDatabase final : public Pkcs8Store {
 public:
  /**
   * opening.h tells the codes; besides, ZELKM_ERR_PASSWORD_EXPIRATION_TIME (70) when the right
   * password's lifetime has passed.
   */
  static sys::Result<std::unique_ptr<Store>> open(const sys::FileName& name,
                                                  const PasswordOrStash& password);
  /** The store of a file that is unlocked, whether or not the password has expired. */
  static sys::Result<std::unique_ptr<Store>> of(UnlockedFile file);

  explicit KeyDatabase(std::shared_ptr<const DatabaseFile> file) : file_(std::move(file)) {}

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

  bool approvedOnly() const override;
  sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) override;
  sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) override;

 private:
  /**
   * Runs the body, a function of (Connection&, Records&), in a transaction of its own or in the one
   * that is under way, and answers the Status or Result that it answers.
   */
  template <typename Body>
  auto reading(Body&& body) {
    return transact(Transaction::Kind::read, body);
  }
  template <typename Body>
  auto writing(Body&& body) {
    return transact(Transaction::Kind::write, body);
  }
  template <typename Body>
  std::invoke_result_t<Body&, Connection&, Records&> transact(Transaction::Kind kind, Body& body);

  sys::Result<std::vector<Label>> labels(Table table);
  sys::Result<std::vector<KeyEntry>> findKeys(const Condition& condition);
  sys::Result<std::vector<RequestEntry>> findRequests(const Condition& condition);
  sys::Status removeRecord(Table table, const Label& label);

  std::shared_ptr<const DatabaseFile> file_;
  Connection* inUse_ = nullptr; /**< while a transaction is under way */
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_KEY_DATABASE_H_
