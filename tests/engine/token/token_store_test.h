#ifndef ZEL_TESTS_ENGINE_TOKEN_TOKEN_STORE_TEST_H_
#define ZEL_TESTS_ENGINE_TOKEN_TOKEN_STORE_TEST_H_

#include <memory>
#include <string>

#include "engine/km/store/store.h"
#include "engine/km/token/token_access.h"
#include "tests/engine/stores/test_entries.h"
#include "tests/engine/token/test_token.h"

namespace zel::km::token {

/** A test that works on a token as a Store. */
class TokenStoreTest : public TokenTest {
 protected:
  TokenStoreTest();

  Store& store() { return *store_; }
  /** Closes the token and opens it again, as another program would. */
  void reopen();
  void close() { store_.reset(); }
  TokenName tokenName() const { return {moduleName(), Label::ofName(label())}; }
  sys::Result<std::unique_ptr<Store>> openStore() const;

  /** A new key on the token, of 256 bits. */
  GeneratedKey newKey();
  /** A request for the key, signed by the token. */
  sys::Bytes requestFor(const GeneratedKey& key, const std::string& commonName);
  /** A certificate for the key from the test's authority. */
  sys::Bytes certificateFor(const sys::Bytes& publicKey, const std::string& commonName,
                            int days = 10) const;
  /** An entry with a certificate of the authority and a new key on the token. */
  KeyEntry newEntry(const std::string& entryLabel);
  /** An entry with the authority's certificate. */
  KeyEntry signerEntry(const std::string& entryLabel) const;

  /** True when the key's signature over a text holds. */
  bool signs(const PrivateKey& key, const sys::Bytes& publicKey,
             SigningDigest digest = SigningDigest::sha256);

  /** Counts all objects on the token, whatever they are. */
  std::size_t objectCount();

  cms::TestAuthority authority_{"Test Authority"};

 private:
  std::unique_ptr<Store> store_;
};

}  // namespace zel::km::token

#endif  // ZEL_TESTS_ENGINE_TOKEN_TOKEN_STORE_TEST_H_
