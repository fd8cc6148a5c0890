#ifndef ZEL_TESTS_ENGINE_WORK_FAILING_STORE_H_
#define ZEL_TESTS_ENGINE_WORK_FAILING_STORE_H_

#include "engine/km/store/store.h"

namespace zel::km {

/**
 * A FailingStore is another store, one call of which fails as if the disk did. Calls inside of a
 * transaction count as all others.
 */
class FailingStore final : public Store {
 public:
  /** What the call answers; no use case makes anything of it. */
  static constexpr int kCode = ZELKM_ERR_DATABASE_READ;

  /** The call that fails, counted from 1. */
  FailingStore(Store& store, int failing) : store_(store), left_(failing) {}

  bool hasFailed() const { return left_ <= 0; }

  sys::Result<std::vector<Label>> keyLabels() override {
    if (fails()) return kFailure;
    return store_.keyLabels();
  }
  sys::Result<std::vector<Label>> requestLabels() override {
    if (fails()) return kFailure;
    return store_.requestLabels();
  }
  sys::Result<KeyEntry> findKey(const Label& label) override {
    if (fails()) return kFailure;
    return store_.findKey(label);
  }
  sys::Result<RequestEntry> findRequest(const Label& label) override {
    if (fails()) return kFailure;
    return store_.findRequest(label);
  }
  sys::Result<KeyEntry> defaultKey() override {
    if (fails()) return kFailure;
    return store_.defaultKey();
  }
  sys::Result<std::vector<KeyEntry>> findKeysByPublicKey(sys::ByteView publicKey) override {
    if (fails()) return kFailure;
    return store_.findKeysByPublicKey(publicKey);
  }
  sys::Result<std::vector<RequestEntry>> findRequestsByPublicKey(sys::ByteView publicKey) override {
    if (fails()) return kFailure;
    return store_.findRequestsByPublicKey(publicKey);
  }
  sys::Result<std::vector<KeyEntry>> findKeysBySubject(sys::ByteView subject) override {
    if (fails()) return kFailure;
    return store_.findKeysBySubject(subject);
  }

  sys::Status insertKey(const KeyEntry& entry) override {
    return fails() ? kFailure : store_.insertKey(entry);
  }
  sys::Status insertRequest(const RequestEntry& entry) override {
    return fails() ? kFailure : store_.insertRequest(entry);
  }
  sys::Status replaceKey(const KeyEntry& entry) override {
    return fails() ? kFailure : store_.replaceKey(entry);
  }
  sys::Status replaceRequest(const RequestEntry& entry) override {
    return fails() ? kFailure : store_.replaceRequest(entry);
  }
  sys::Status removeKey(const Label& label) override {
    return fails() ? kFailure : store_.removeKey(label);
  }
  sys::Status removeRequest(const Label& label) override {
    return fails() ? kFailure : store_.removeRequest(label);
  }
  sys::Status setDefault(const Label& label) override {
    return fails() ? kFailure : store_.setDefault(label);
  }
  sys::Status setTrusted(const Label& label, bool trusted) override {
    return fails() ? kFailure : store_.setTrusted(label, trusted);
  }
  sys::Status runChanges(const Run& run) override {
    return fails() ? kFailure : store_.runChanges(run);
  }
  sys::Status runReading(const Run& run) override {
    return fails() ? kFailure : store_.runReading(run);
  }

  sys::Result<GeneratedKey> generateKey(int keySize) override {
    if (fails()) return kFailure;
    return store_.generateKey(keySize);
  }
  sys::Result<sys::Bytes> sign(const PrivateKey& key, SigningDigest digest,
                               sys::ByteView message) override {
    if (fails()) return kFailure;
    return store_.sign(key, digest, message);
  }
  bool approvedOnly() const override { return store_.approvedOnly(); }
  sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) override {
    if (fails()) return kFailure;
    return store_.encryptedPrivateKey(key);
  }
  sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) override {
    if (fails()) return kFailure;
    return store_.decryptedPrivateKey(encrypted);
  }

 private:
  static constexpr sys::Failure kFailure{kCode};

  bool fails() { return --left_ == 0; }

  Store& store_;
  int left_;
};

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_WORK_FAILING_STORE_H_
