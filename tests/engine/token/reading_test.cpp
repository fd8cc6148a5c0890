#include <gmock/gmock.h>

#include <map>

#include "engine/cms/keys.h"
#include "tests/engine/operations/database.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/hooks.h"
#include "tests/engine/token/token_store_test.h"

// How often a token is read: once for what belongs together.

namespace zel::km::token {

namespace {

using testing::ElementsAre;

constexpr const char* kDatabasePassword = "Correct horse 1!";
constexpr int kClasses = 4;  // of objects; each is searched for once in a reading

/** SoftHSM behind hooks that count. */
class TokenReading : public TokenStoreTest {
 protected:
  /** How often the token was searched through while the body ran. */
  template <typename Body>
  int readings(Body body) {
    calls_.clear();
    const Hooks hooks([this](const std::string& function) -> CK_RV {
      ++calls_[function];
      return CKR_OK;
    });
    body();
    EXPECT_EQ(calls_["C_FindObjectsInit"] % kClasses, 0);
    return calls_["C_FindObjectsInit"] / kClasses;
  }

  std::map<std::string, int> calls_;
};

TEST_P(TokenReading, aListIsOneReading) {
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  EXPECT_EQ(readings([&] { EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca", "web")); }),
            1);
  // Two certificates and two keys, each asked for sizes, then for values.
  EXPECT_EQ(calls_["C_GetAttributeValue"], 8);
  EXPECT_EQ(readings([&] { EXPECT_EQ(store().requestLabels().code(), ZELKM_OK); }), 1);
}

TEST_P(TokenReading, aSearchIsOneReading) {
  const KeyEntry entry = newEntry("web");
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  EXPECT_EQ(readings([&] { EXPECT_EQ(store().findKey("web"_label).code(), ZELKM_OK); }), 1);
  EXPECT_EQ(readings([&] {
              const sys::Bytes publicKey = publicKeyOf(entry.certificate);
              EXPECT_EQ(store().findKeysByPublicKey(publicKey).value().size(), 1U);
            }),
            1);
}

TEST_P(TokenReading, aChangeIsOneReading) {
  const KeyEntry entry = newEntry("web");
  EXPECT_EQ(readings([&] { EXPECT_EQ(store().insertKey(entry).code(), ZELKM_OK); }), 1);
  EXPECT_EQ(readings([&] { EXPECT_EQ(store().setTrusted("web"_label, true).code(), ZELKM_OK); }),
            1);
  EXPECT_EQ(readings([&] { EXPECT_EQ(store().removeKey("web"_label).code(), ZELKM_OK); }), 1);
}

TEST_P(TokenReading, makingAKeyIsNone) {
  EXPECT_EQ(readings([&] { EXPECT_EQ(store().generateKey(256).code(), ZELKM_OK); }), 0);
}

TEST_P(TokenReading, aTransactionIsOneReadingWhateverIsDoneInIt) {
  GeneratedKey key = newKey();
  const sys::Bytes publicKey = key.publicKey;
  const RequestEntry request{.label = "web"_label,
                             .request = requestFor(key, "www.example.com"),
                             .privateKey = std::move(key.privateKey)};
  const int times = readings([&] {
    const sys::Status done = inTransaction(store(), [&]() -> sys::Status {
      EXPECT_EQ(store().insertRequest(request).code(), ZELKM_OK);
      const RequestEntry pending = store().findRequestsByPublicKey(publicKey).value().front();
      EXPECT_EQ(store().removeRequest("web"_label).code(), ZELKM_OK);
      const KeyEntry received{.label = "web"_label,
                              .certificate = certificateFor(publicKey, "www.example.com"),
                              .privateKey = pending.privateKey};
      EXPECT_EQ(store().insertKey(received).code(), ZELKM_OK);
      const KeyEntry issuer = signerEntry("ca");
      EXPECT_TRUE(store().findKeysByPublicKey(publicKeyOf(issuer.certificate)).value().empty());
      EXPECT_EQ(store().insertKey(issuer).code(), ZELKM_OK);
      EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca", "web"));
      return sys::success();
    });
    EXPECT_EQ(done.code(), ZELKM_OK);
  });
  EXPECT_EQ(times, 1);
  reopen();
  EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca", "web"));
  EXPECT_TRUE(signs(store().findKey("web"_label).value().privateKey, publicKey));
}

TEST_P(TokenReading, aKeyMadeInATransactionIsKnownWithoutAnother) {
  const int times = readings([&] {
    const sys::Status done = inTransaction(store(), [&]() -> sys::Status {
      EXPECT_TRUE(store().keyLabels().value().empty());
      return store().insertKey(newEntry("web"));
    });
    EXPECT_EQ(done.code(), ZELKM_OK);
  });
  EXPECT_EQ(times, 1);
}

TEST_P(TokenReading, aSnapshotIsOneReadingAndDoesNotSeeWhatOthersDo) {
  sys::Result<std::unique_ptr<Store>> other = openStore();
  const int times = readings([&] {
    const sys::Status done = inSnapshot(store(), [&]() -> sys::Status {
      EXPECT_TRUE(store().keyLabels().value().empty());
      EXPECT_TRUE(store().requestLabels().value().empty());
      return sys::success();
    });
    EXPECT_EQ(done.code(), ZELKM_OK);
  });
  EXPECT_EQ(times, 1);
  const sys::Status done = inSnapshot(store(), [&]() -> sys::Status {
    EXPECT_TRUE(store().keyLabels().value().empty());
    EXPECT_EQ(other.value()->insertKey(signerEntry("theirs")).code(), ZELKM_OK);
    EXPECT_TRUE(store().keyLabels().value().empty());
    EXPECT_EQ(store().insertKey(signerEntry("ours")).code(), ZELKM_OK);
    EXPECT_THAT(store().keyLabels().value(), ElementsAre("ours", "theirs"));
    return sys::success();
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
}

/** A certificate and its issuer arrive for a request of the token's. */
TEST_P(TokenReading, aReceiptIsTwoReadingsAndToGetItIsOne) {
  close();
  const int handle = open(kPin);
  int authority = 0;
  ASSERT_EQ(ZELKM_CreateNewKeyDb(path("ca.kdb").c_str(), kDatabasePassword, 0, &authority),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_CreateSelfSignedCert(authority, "Root", 0, 3, 256, name("Root").get(), 100,
                                       path("root.pem").c_str(), 1),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_CreateNewCertReqSigExt(handle, "web", 256, name("www.example.com").get(), 1,
                                         nullptr, 0, path("request.pem").c_str(), 0, 0),
            ZELKM_OK);
  ZELKMReqKeyItem* item = nullptr;
  ASSERT_EQ(ZELKM_GetReqKeyItemByLabel(handle, "web", &item), ZELKM_OK);
  const RequestItem pending(item);
  const sys::Bytes request = bytesOf(item->certReq->berData, item->certReq->berDataLength);
  ASSERT_EQ(ZELKM_IssueCert(authority, request.data(), std::uint32_t(request.size()), "Root", 3, "",
                            30, path("cert.pem").c_str(), 1, 0, 0),
            ZELKM_OK);
  ZELKM_CloseKeyDb(authority);
  const cms::CommandResult bundled =
      cms::run("openssl crl2pkcs7 -nocrl -outform DER -certfile " + path("cert.pem") +
               " -certfile " + path("root.pem") + " -out " + path("bundle.p7b"));
  ASSERT_EQ(bundled.exitCode, 0) << bundled.output;
  const sys::Bytes bundle = folder_.read("bundle.p7b");

  // One to find the request; another process may have changed the token when the change begins.
  EXPECT_EQ(readings([&] {
              EXPECT_EQ(ZELKM_ReceiveCert(handle, bundle.data(), std::uint32_t(bundle.size()), 0),
                        ZELKM_OK);
            }),
            2);
  EXPECT_EQ(labels(&ZELKM_GetKeyDbLabelList, handle), (std::vector<std::string>{"Root", "web"}));

  // To get an entry is one, though its issuers are looked for as well.
  ZELKMKeyItem* found = nullptr;
  EXPECT_EQ(readings([&] { EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle, "web", &found), ZELKM_OK); }),
            1);
  const KeyItem owned(found);
  EXPECT_NE(found->certList->next, nullptr);
}

INSTANTIATE_TEST_SUITE_P(, TokenReading, testing::Values(Vendor::hookedSoftHsm), vendorName);

}  // namespace

}  // namespace zel::km::token
