#include <gmock/gmock.h>

#include <algorithm>

#include "engine/cms/certificates.h"
#include "engine/cms/keys.h"
#include "engine/cms/requests.h"
#include "engine/km/token/public_keys.h"
#include "engine/km/token/token_access.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/token_store_test.h"

// Entries: certificates with and without keys, and requests.

namespace zel::km::token {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class TokenEntries : public TokenStoreTest {
 protected:
  std::vector<Label> keys() { return store().keyLabels().value(); }
  std::vector<Label> requests() { return store().requestLabels().value(); }

  RequestEntry newRequest(const std::string& entryLabel) {
    GeneratedKey key = newKey();
    sys::Bytes request = requestFor(key, "www.example.com");
    return {.label = Label::ofName(entryLabel),
            .request = std::move(request),
            .privateKey = std::move(key.privateKey)};
  }
};

TEST_P(TokenEntries, aRequestBecomesAnEntryWithItsCertificate) {
  const RequestEntry made = newRequest("web");
  ASSERT_EQ(store().insertRequest(made).code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(requests(), ElementsAre("web"));
  EXPECT_THAT(keys(), IsEmpty());

  const sys::Bytes publicKey = cms::readRequest(made.request).value().publicKeyInfo;
  const std::vector<RequestEntry> pending = store().findRequestsByPublicKey(publicKey).value();
  ASSERT_EQ(pending.size(), 1U);
  const KeyEntry received{.label = "web"_label,
                          .certificate = certificateFor(publicKey, "www.example.com"),
                          .privateKey = pending.front().privateKey};
  const sys::Status done = inTransaction(store(), [&]() -> sys::Status {
    sys::Status removed = store().removeRequest("web"_label);
    return removed ? store().insertKey(received) : removed;
  });
  ASSERT_EQ(done.code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(keys(), ElementsAre("web"));
  const KeyEntry found = store().findKey("web"_label).value();
  EXPECT_EQ(found.certificate, received.certificate);
  EXPECT_TRUE(signs(found.privateKey, publicKey));
}

TEST_P(TokenEntries, whatBelongsTogetherHasOneIdAndOneLabel) {
  const KeyEntry entry = newEntry("web");
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  const sys::Result<std::unique_ptr<Session>> session = openToken(tokenName(), password(kPin));
  Template wanted;
  wanted.addBytes(CKA_ID, keyIdentifier(publicKeyOf(entry.certificate)).value());
  const std::vector<CK_OBJECT_HANDLE> objects = session.value()->find(wanted).value();
  std::vector<CK_ULONG> classes;
  for (const CK_OBJECT_HANDLE object : objects) {
    static constexpr CK_ATTRIBUTE_TYPE kTypes[] = {CKA_CLASS, CKA_LABEL};
    const Attributes attributes = session.value()->read(object, kTypes).value();
    classes.push_back(attributes.number(CKA_CLASS, 0));
    EXPECT_TRUE(std::ranges::equal(attributes.bytes(CKA_LABEL), cms::text("web")));
  }
  EXPECT_THAT(classes, UnorderedElementsAre(CKO_CERTIFICATE, CKO_PRIVATE_KEY, CKO_PUBLIC_KEY));
}

TEST_P(TokenEntries, aRequestIsKeptOrMadeAgain) {
  const RequestEntry made = newRequest("web");
  ASSERT_EQ(store().insertRequest(made).code(), ZELKM_OK);
  const RequestEntry found = store().findRequest("web"_label).value();
  EXPECT_TRUE(found.privateKey.present());
  EXPECT_EQ(cms::verifyRequest(found.request).code(), ZELKM_OK);
  if (GetParam() == Vendor::softHsm) {
    EXPECT_EQ(found.request, made.request);
  } else {  // NSS takes no data objects: ECDSA signs anew, with another random number
    const cms::RequestFields before = cms::readRequest(made.request).value();
    const cms::RequestFields after = cms::readRequest(found.request).value();
    EXPECT_EQ(after.info, before.info);
    EXPECT_NE(found.request, made.request);
  }
}

TEST_P(TokenEntries, aRequestIsBroughtInWithItsKey) {
  const cms::TestAuthority other("Elsewhere");
  const cms::RequestPlan plan{.subject = other.name(),
                              .publicKeyInfo = cms::publicKeyInfo(other.key()).value()};
  RequestEntry entry{.label = "elsewhere"_label, .request = {}, .privateKey = {}};
  entry.request = cms::buildRequest(plan, cms::describeKey(other.key()), cms::kByKeyStrength,
                                    [&](SigningDigest digest, sys::ByteView message) {
                                      return cms::signMessage(other.key(), digest, message);
                                    })
                      .value();
  entry.privateKey.pkcs8 = cms::privateKeyInfo(other.key()).value();
  ASSERT_EQ(store().insertRequest(entry).code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(requests(), ElementsAre("elsewhere"));
  const RequestEntry found = store().findRequest("elsewhere"_label).value();
  EXPECT_TRUE(signs(found.privateKey, plan.publicKeyInfo));
  EXPECT_EQ(cms::readRequest(found.request).value().info,
            cms::readRequest(entry.request).value().info);
}

TEST_P(TokenEntries, aRequestIsReplaced) {
  ASSERT_EQ(store().insertRequest(newRequest("web")).code(), ZELKM_OK);
  RequestEntry entry = store().findRequest("web"_label).value();
  entry.request = cms::signRequestAgain(entry.request, cms::kSha512,
                                        [&](SigningDigest digest, sys::ByteView message) {
                                          return store().sign(entry.privateKey, digest, message);
                                        })
                      .value();
  ASSERT_EQ(store().replaceRequest(entry).code(), ZELKM_OK);
  EXPECT_THAT(requests(), ElementsAre("web"));
  const RequestEntry found = store().findRequest("web"_label).value();
  EXPECT_EQ(cms::verifyRequest(found.request).code(), ZELKM_OK);
  if (GetParam() == Vendor::softHsm) {
    EXPECT_EQ(found.request, entry.request);
  }
}

TEST_P(TokenEntries, removingARequestRemovesItsKey) {
  const std::size_t before = objectCount();
  ASSERT_EQ(store().insertRequest(newRequest("web")).code(), ZELKM_OK);
  ASSERT_EQ(store().removeRequest("web"_label).code(), ZELKM_OK);
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_EQ(objectCount(), before);
  EXPECT_EQ(store().removeRequest("web"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_P(TokenEntries, removingAnEntryRemovesItsKey) {
  const std::size_t before = objectCount();
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  EXPECT_THAT(keys(), ElementsAre("ca", "web"));
  ASSERT_EQ(store().removeKey("web"_label).code(), ZELKM_OK);
  EXPECT_THAT(keys(), ElementsAre("ca"));
  EXPECT_EQ(objectCount(), before + 1);
  EXPECT_EQ(store().removeKey("web"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_P(TokenEntries, aKeyThatTwoCertificatesShareStaysWithTheSecond) {
  const KeyEntry first = newEntry("first");
  const sys::Bytes publicKey = publicKeyOf(first.certificate);
  ASSERT_EQ(store().insertKey(first).code(), ZELKM_OK);
  const KeyEntry second{.label = "second"_label,
                        .certificate = certificateFor(publicKey, "www.example.com", 20),
                        .privateKey = {}};
  ASSERT_EQ(store().insertKey(second).code(), ZELKM_OK);
  EXPECT_EQ(store().findKeysByPublicKey(publicKey).value().size(), 2U);
  ASSERT_EQ(store().removeKey("first"_label).code(), ZELKM_OK);
  const KeyEntry found = store().findKey("second"_label).value();
  EXPECT_TRUE(signs(found.privateKey, publicKey));
}

TEST_P(TokenEntries, aSignerCertificateHasNoKey) {
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  const KeyEntry found = store().findKey("ca"_label).value();
  EXPECT_EQ(found.certificate, authority_.certificate());
  EXPECT_FALSE(found.privateKey.present());
}

TEST_P(TokenEntries, trustIsKeptOnTheToken) {
  KeyEntry entry = signerEntry("ca");
  entry.trusted = true;
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  reopen();
  EXPECT_TRUE(store().findKey("ca"_label).value().trusted);
  ASSERT_EQ(store().setTrusted("ca"_label, false).code(), ZELKM_OK);
  reopen();
  EXPECT_FALSE(store().findKey("ca"_label).value().trusted);
  EXPECT_THAT(keys(), ElementsAre("ca"));
}

TEST_P(TokenEntries, aCertificateIsReplacedByItsRenewal) {
  const KeyEntry entry = newEntry("web");
  const sys::Bytes publicKey = publicKeyOf(entry.certificate);
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  const std::size_t before = objectCount();
  KeyEntry renewed = store().findKey("web"_label).value();
  renewed.certificate = certificateFor(publicKey, "www.example.com", 30);
  ASSERT_EQ(store().replaceKey(renewed).code(), ZELKM_OK);
  EXPECT_THAT(keys(), ElementsAre("web"));
  const KeyEntry found = store().findKey("web"_label).value();
  EXPECT_EQ(found.certificate, renewed.certificate);
  EXPECT_TRUE(signs(found.privateKey, publicKey));
  EXPECT_EQ(objectCount(), before);
}

TEST_P(TokenEntries, issuersAreFoundByTheirSubject) {
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  const sys::Bytes subject = cms::canonicalName(authority_.name()).value();
  const std::vector<KeyEntry> found = store().findKeysBySubject(subject).value();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().label, "ca");
}

TEST_P(TokenEntries, aLabelIsGivenOnce) {
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  EXPECT_EQ(store().insertKey(signerEntry("web")).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  ASSERT_EQ(store().insertRequest(newRequest("web")).code(), ZELKM_OK);
  EXPECT_EQ(store().insertRequest(newRequest("web")).code(),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(keys(), ElementsAre("web"));
  EXPECT_THAT(requests(), ElementsAre("web"));
}

TEST_P(TokenEntries, thereIsNoDefaultKey) {
  EXPECT_EQ(store().defaultKey().code(), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
  EXPECT_EQ(store().setDefault("web"_label).code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
  KeyEntry entry = signerEntry("ca");
  entry.isDefault = true;
  EXPECT_EQ(store().insertKey(entry).code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_P(TokenEntries, whatATransactionDidIsTakenBackWhenItFails) {
  ASSERT_EQ(store().insertKey(newEntry("stays")).code(), ZELKM_OK);
  ASSERT_EQ(store().insertRequest(newRequest("waits")).code(), ZELKM_OK);
  const std::size_t before = objectCount();
  const RequestEntry lost = newRequest("lost");
  const sys::Status done = inTransaction(store(), [&]() -> sys::Status {
    EXPECT_EQ(store().insertRequest(lost).code(), ZELKM_OK);
    EXPECT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
    EXPECT_EQ(store().removeKey("stays"_label).code(), ZELKM_OK);
    EXPECT_EQ(store().removeRequest("waits"_label).code(), ZELKM_OK);
    EXPECT_THAT(keys(), ElementsAre("ca"));
    EXPECT_THAT(requests(), ElementsAre("lost"));
    return sys::Failure{ZELKM_ERR_FILE_OPEN_TO_WRITE};
  });
  EXPECT_EQ(done.code(), ZELKM_ERR_FILE_OPEN_TO_WRITE);
  reopen();
  EXPECT_EQ(objectCount(), before);
  EXPECT_THAT(keys(), ElementsAre("stays"));
  EXPECT_THAT(requests(), ElementsAre("waits"));
  EXPECT_TRUE(store().findKey("stays"_label).value().privateKey.present());
  EXPECT_TRUE(store().findRequest("waits"_label).value().privateKey.present());
}

TEST_P(TokenEntries, whatATransactionDidIsTakenBackWhenItThrows) {
  const std::size_t before = objectCount();
  const auto body = [&]() -> sys::Status {
    EXPECT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
    throw std::bad_alloc();
  };
  EXPECT_THROW((void)inTransaction(store(), body), std::bad_alloc);
  EXPECT_EQ(objectCount(), before);
  EXPECT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
}

INSTANTIATE_TEST_SUITE_P(, TokenEntries, testing::ValuesIn(kVendors), vendorName);

}  // namespace

}  // namespace zel::km::token
