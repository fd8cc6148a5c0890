#ifndef ZEL_TESTS_ENGINE_STORES_STORE_TEST_H_
#define ZEL_TESTS_ENGINE_STORES_STORE_TEST_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/km/store/store.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/stores/store_kinds.h"
#include "tests/engine/stores/test_entries.h"

namespace zel::km {

/** A test of what store.h promises, on a new and empty store of some kind. */
class StoreTest : public testing::TestWithParam<const StoreKind*> {
 protected:
  StoreTest();

  const StoreKind& kind() const { return *GetParam(); }
  Store& store() { return *store_; }
  /** Closes the store and opens it again, as another program would. */
  void reopen();
  /** Opens the store once more, as somebody else who uses it meanwhile. */
  std::unique_ptr<Store> openBeside() const;

  /** Runs several changes as one, and answers what the body answers. */
  template <typename Body>
  auto asOne(Body&& body) {
    return inTransaction(store(), std::forward<Body>(body));
  }
  /** Runs the body on the store as it is at one moment, and answers what it answers. */
  template <typename Body>
  auto atOneMoment(Body&& body) {
    return inSnapshot(store(), std::forward<Body>(body));
  }

  std::vector<Label> keys();
  std::vector<Label> requests();
  /** The labels of entries that came in this order, as the store lists them. */
  std::vector<Label> listed(std::vector<Label> arrivals) const;

  /** A new key of the store, with 256 bits. */
  GeneratedKey newKey();
  /** An entry for a new key of the store, with a certificate of the authority. */
  KeyEntry newEntry(const std::string& label, const std::string& commonName = "www.example.com");
  /** A request for a new key of the store. */
  RequestEntry newRequest(const std::string& label);

  /** True when the store signs with the key whose public half is given. */
  bool signs(const PrivateKey& key, const sys::Bytes& publicKey,
             SigningDigest digest = SigningDigest::sha256);

  const cms::TestAuthority authority_{"Authority"};

 private:
  std::unique_ptr<StorePlace> place_;
  std::unique_ptr<Store> store_;
};

/** The public key that a request is for. */
sys::Bytes publicKeyOfRequest(const RequestEntry& entry);

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_STORES_STORE_TEST_H_
