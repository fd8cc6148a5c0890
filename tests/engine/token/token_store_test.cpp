#include "tests/engine/token/token_store_test.h"

#include "engine/cms/certificates.h"
#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/requests.h"
#include "engine/km/token/token_access.h"
#include "engine/km/token/token_store.h"
#include "tests/engine/stores/labels.h"

namespace zel::km::token {

namespace {

const EVP_MD* messageDigest(SigningDigest digest) {
  switch (digest) {
    case SigningDigest::sha384:
      return EVP_sha384();
    case SigningDigest::sha512:
      return EVP_sha512();
    default:
      return EVP_sha256();
  }
}

}  // namespace

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
  const cms::RequestPlan plan{.subject = cms::encodeName({.cn = commonName}).value(),
                              .publicKeyInfo = key.publicKey};
  sys::Result<sys::Bytes> request =
      cms::buildRequest(plan, cms::describePublicKey(key.publicKey).value(), cms::kByKeyStrength,
                        [&](SigningDigest digest, sys::ByteView message) {
                          return store().sign(key.privateKey, digest, message);
                        });
  EXPECT_EQ(request.code(), ZELKM_OK);
  return std::move(request).value();
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
  return {.label = Label::ofName(entryLabel),
          .certificate = authority_.certificate(),
          .privateKey = {}};
}

bool TokenStoreTest::signs(const PrivateKey& key, const sys::Bytes& publicKey,
                           SigningDigest digest) {
  const sys::ByteView message = cms::text("what is to be signed");
  const sys::Result<sys::Bytes> signature = store().sign(key, digest, message);
  if (!signature) return false;
  const unsigned char* at = publicKey.data();
  const cms::KeyPtr verifier(d2i_PUBKEY(nullptr, &at, static_cast<long>(publicKey.size())));
  const std::unique_ptr<EVP_MD_CTX, cms::Releaser<EVP_MD_CTX_free>> context(EVP_MD_CTX_new());
  return EVP_DigestVerifyInit(context.get(), nullptr, messageDigest(digest), nullptr,
                              verifier.get()) == 1 &&
         EVP_DigestVerify(context.get(), signature.value().data(), signature.value().size(),
                          message.data(), message.size()) == 1;
}

std::size_t TokenStoreTest::objectCount() {
  sys::Result<std::unique_ptr<Session>> session = openToken(tokenName(), password(kPin));
  EXPECT_EQ(session.code(), ZELKM_OK);
  Template all;
  all.addFlag(CKA_TOKEN, true);
  return session.value()->find(all).value().size();
}

sys::Bytes publicKeyOf(const sys::Bytes& certificate) {
  return cms::readCertificateKeys(certificate).value().publicKeyInfo;
}

}  // namespace zel::km::token
