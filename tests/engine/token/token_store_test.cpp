#include "tests/engine/token/token_store_test.h"

#include "engine/cms/certificates.h"
#include "engine/cms/names.h"
#include "engine/km/token/token_access.h"
#include "engine/km/token/token_store.h"
#include "tests/engine/stores/labels.h"

namespace zel::km::token {

TokenStoreTest::TokenStoreTest() { reopen(); }

void TokenStoreTest::reopen() {
  store_.reset();
  sys::Result<std::unique_ptr<Store>> opened = openStore();
  EXPECT_EQ(opened.code(), ZELKM_OK);
  if (opened) store_ = std::move(opened).value();
}

sys::Result<std::unique_ptr<Store>> TokenStoreTest::openStore() const {
  return TokenStore::open(tokenName(), password(kPin));
}

GeneratedKey TokenStoreTest::newKey() {
  sys::Result<GeneratedKey> key = store().generateKey(256);
  EXPECT_EQ(key.code(), ZELKM_OK);
  return std::move(key).value();
}

sys::Bytes TokenStoreTest::requestFor(const GeneratedKey& key, const std::string& commonName) {
  return requestBy(store(), key, commonName);
}

sys::Bytes TokenStoreTest::certificateFor(const sys::Bytes& publicKey,
                                          const std::string& commonName, int days) const {
  const cms::CertificatePlan plan{.version = 3,
                                  .days = days,
                                  .subject = cms::encodeName({.cn = commonName}).value(),
                                  .issuer = authority_.name(),
                                  .publicKeyInfo = publicKey};
  return cms::issueCertificate(plan, cms::describeKey(authority_.key()), cms::kByKeyStrength,
                               [&](SigningDigest digest, sys::ByteView message) {
                                 return cms::signMessage(authority_.key(), digest, message);
                               })
      .value();
}

KeyEntry TokenStoreTest::newEntry(const std::string& entryLabel) {
  GeneratedKey key = newKey();
  return {.label = Label::ofName(entryLabel),
          .certificate = certificateFor(key.publicKey, "www.example.com"),
          .privateKey = std::move(key.privateKey)};
}

KeyEntry TokenStoreTest::signerEntry(const std::string& entryLabel) const {
  return signerEntryOf(entryLabel, authority_);
}

bool TokenStoreTest::signs(const PrivateKey& key, const sys::Bytes& publicKey,
                           SigningDigest digest) {
  const sys::ByteView message = cms::text("what is to be signed");
  const sys::Result<sys::Bytes> signature = store().sign(key, digest, message);
  return signature && isSignature(signature.value(), message, digest, publicKey);
}

std::size_t TokenStoreTest::objectCount() {
  sys::Result<std::unique_ptr<Session>> session = openToken(tokenName(), password(kPin));
  EXPECT_EQ(session.code(), ZELKM_OK);
  Template all;
  all.addFlag(CKA_TOKEN, true);
  return session.value()->find(all).value().size();
}

}  // namespace zel::km::token
