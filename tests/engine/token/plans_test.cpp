#include <gmock/gmock.h>

#include "engine/cms/keys.h"
#include "engine/cms/requests.h"
#include "engine/km/token/entry_plans.h"
#include "engine/km/token/key_references.h"
#include "engine/km/token/public_keys.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/token_picture.h"

// What is to be done to a token for a change, told from what lies on it. No token is needed.

namespace zel::km::token {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSubjectSet = "set 21 subject to 14 bytes | any: nothing";
constexpr const char* kCertificateMade =
    "make certificate web of category 1 | attribute: make certificate web of category 0;";

class TokenPlans : public testing::Test {
 protected:
  KeyEntry entry(const sys::Bytes& certificate, PrivateKey key = {}) const {
    return {.label = "web"_label, .certificate = certificate, .privateKey = std::move(key)};
  }
  static PrivateKey broughtIn(const cms::TestAuthority& owner) {
    PrivateKey key;
    key.pkcs8 = cms::privateKeyInfo(owner.key()).value();
    return key;
  }
  RequestEntry requestEntry(const cms::TestAuthority& owner, PrivateKey key = {}) const {
    const cms::RequestPlan plan{.subject = owner.name(), .publicKeyInfo = publicKeyOf(owner)};
    return {.label = "web"_label,
            .request = cms::buildRequest(plan, cms::describeKey(owner.key()), cms::kByKeyStrength,
                                         [&](SigningDigest digest, sys::ByteView message) {
                                           return cms::signMessage(owner.key(), digest, message);
                                         })
                           .value(),
            .privateKey = std::move(key)};
  }

  TokenPicture token_;
  const cms::TestAuthority web_{"W"};
  const cms::TestAuthority other_{"O"};
};

// Inserting certificates.

TEST_F(TokenPlans, aSignerCertificateIsMadeAlone) {
  KeyEntry signer = entry(web_.certificate());
  EXPECT_THAT(
      inWords(planInsertKey(token_.view(), signer)),
      ElementsAre(
          "make certificate web of category 3 | attribute: make certificate web of category 0;"));
  signer.trusted = true;
  EXPECT_THAT(
      inWords(planInsertKey(token_.view(), signer)),
      ElementsAre(
          "make certificate web of category 2 | attribute: make certificate web of category 0;"));
}

TEST_F(TokenPlans, aNewKeyGetsWhatItLacks) {
  token_.newKeyPair(21, web_);
  EXPECT_THAT(inWords(planInsertKey(token_.view(), entry(web_.certificate(), referenceTo(21)))),
              ElementsAre("use 21", kSubjectSet, "set 31 ID to 20 bytes", "set 31 label to web",
                          "set 21 ID to 20 bytes", "set 21 label to web", kCertificateMade));
}

TEST_F(TokenPlans, keyAndCertificateGetOneId) {
  token_.newKeyPair(21, web_);
  const KeyEntry wanted = entry(web_.certificate(), referenceTo(21));
  const TokenView view = after(token_.view(), planInsertKey(token_.view(), wanted));
  const sys::Bytes id = keyIdentifier(publicKeyOf(web_)).value();
  const CertificateEntry made = view.certificate("web"_label).value();
  EXPECT_EQ(made.certificate->id, id);
  EXPECT_EQ(made.privateKey->id, id);
  EXPECT_FALSE(view.isNew(21));
}

TEST_F(TokenPlans, whatOtherToolsHaveSetIsKept) {
  token_.keyPair(21, "theirs", web_, "their ID");
  const KeyEntry wanted = entry(web_.certificate());
  EXPECT_THAT(inWords(planInsertKey(token_.view(), wanted)), ElementsAre(kCertificateMade));
  const TokenView view = after(token_.view(), planInsertKey(token_.view(), wanted));
  EXPECT_EQ(view.certificate("web"_label)->certificate->id, bytesOfText("their ID"));
}

TEST_F(TokenPlans, aKeyIsBroughtInUnlessItIsThere) {
  const KeyEntry wanted = entry(web_.certificate(), broughtIn(web_));
  EXPECT_THAT(
      inWords(planInsertKey(token_.view(), wanted)),
      ElementsAre("make private key web", "make public key web",
                  "set the private key subject to 14 bytes | any: nothing", kCertificateMade));
  token_.keyPair(21, "web", web_, "ID");
  EXPECT_THAT(inWords(planInsertKey(token_.view(), wanted)), ElementsAre(kCertificateMade));
}

TEST_F(TokenPlans, aKeyThatIsGoneIsAnError) {
  EXPECT_THAT(inWords(planInsertKey(token_.view(), entry(web_.certificate(), referenceTo(21)))),
              ElementsAre("code 149"));
}

TEST_F(TokenPlans, noCertificateIsAnError) {
  EXPECT_THAT(inWords(planInsertKey(token_.view(), entry(bytesOfText("none")))),
              ElementsAre("code 2"));
}

TEST_F(TokenPlans, aLabelIsGivenOnce) {
  token_.certificate(11, "web", other_.certificate(), "ID").request(41, "web", other_);
  EXPECT_THAT(inWords(planInsertKey(token_.view(), entry(web_.certificate()))),
              ElementsAre("code 23"));
  EXPECT_THAT(inWords(planInsertRequest(token_.view(), requestEntry(web_))),
              ElementsAre("code 23"));
}

// Removing entries.

TEST_F(TokenPlans, aKeyGoesWithItsCertificate) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "web", web_, "ID");
  EXPECT_THAT(inWords(planRemoveKey(token_.view(), "web"_label)),
              ElementsAre("remove 11", "remove 31", "remove 21"));
}

TEST_F(TokenPlans, aKeyThatIsNeededStays) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "web", web_, "ID");
  TokenPicture twice = token_;
  twice.certificate(12, "again", other_.issueFor(publicKeyOf(web_), "Web"), "ID");
  EXPECT_THAT(inWords(planRemoveKey(twice.view(), "web"_label)), ElementsAre("remove 11"));
  TokenPicture requested = token_;
  requested.request(41, "again", web_);
  EXPECT_THAT(inWords(planRemoveKey(requested.view(), "web"_label)), ElementsAre("remove 11"));
  EXPECT_THAT(inWords(planRemoveRequest(requested.view(), "again"_label)),
              ElementsAre("remove 41"));
}

TEST_F(TokenPlans, aRequestThatIsOnlyAKeyIsRemovedAsOne) {
  token_.keyPair(21, "web", web_, "ID");
  EXPECT_THAT(inWords(planRemoveRequest(token_.view(), "web"_label)),
              ElementsAre("remove 31", "remove 21"));
}

TEST_F(TokenPlans, whatIsNotThereIsNotChanged) {
  const TokenView view = token_.view();
  EXPECT_THAT(inWords(planRemoveKey(view, "web"_label)), ElementsAre("code 117"));
  EXPECT_THAT(inWords(planRemoveRequest(view, "web"_label)), ElementsAre("code 117"));
  EXPECT_THAT(inWords(planSetTrusted(view, "web"_label, true)), ElementsAre("code 117"));
  EXPECT_THAT(inWords(planReplaceKey(view, entry(web_.certificate()))), ElementsAre("code 117"));
  EXPECT_THAT(inWords(planReplaceRequest(view, requestEntry(web_))), ElementsAre("code 117"));
}

TEST_F(TokenPlans, theKeyOfARemovedRequestLivesOnInItsCertificate) {
  token_.request(41, "web", web_).keyPair(21, "web", web_, "ID");
  const TokenView removed = after(token_.view(), planRemoveRequest(token_.view(), "web"_label));
  EXPECT_THAT(removed.removed(), testing::UnorderedElementsAre(21, 31, 41));
  const sys::Result<Plan> received =
      planInsertKey(removed, entry(web_.certificate(), referenceTo(21)));
  EXPECT_THAT(inWords(received), ElementsAre("restore 21", kCertificateMade));
  EXPECT_THAT(after(removed, received).removed(), ElementsAre(41));
}

TEST_F(TokenPlans, aRemovedKeyDoesNotComeBackUnnamed) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "web", web_, "ID");
  const TokenView removed = after(token_.view(), planRemoveKey(token_.view(), "web"_label));
  EXPECT_THAT(
      inWords(planInsertKey(removed, entry(web_.certificate()))),
      ElementsAre(
          "make certificate web of category 3 | attribute: make certificate web of category 0;"));
}

// Replacing entries, and marking them.

TEST_F(TokenPlans, aRenewalTakesThePlaceOfTheOldCertificate) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "web", web_, "ID");
  const KeyEntry renewed = entry(other_.issueFor(publicKeyOf(web_), "Web"), referenceTo(21));
  EXPECT_THAT(inWords(planReplaceKey(token_.view(), renewed)),
              ElementsAre(kCertificateMade, "remove 11"));
}

TEST_F(TokenPlans, theOldKeyGoesWhenTheNewCertificateHasAnother) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "web", web_, "ID");
  token_.keyPair(22, "other", other_, "ID 2");
  EXPECT_THAT(inWords(planReplaceKey(token_.view(), entry(other_.certificate()))),
              ElementsAre(kCertificateMade, "remove 11", "remove 31", "remove 21"));
}

TEST_F(TokenPlans, aCertificateThatIsTheSameStaysWhereItIs) {
  token_.certificate(11, "web", web_.certificate(), "ID").newKeyPair(21, web_);
  EXPECT_THAT(inWords(planReplaceKey(token_.view(), entry(web_.certificate(), referenceTo(21)))),
              ElementsAre("use 21", kSubjectSet, "set 31 ID to 20 bytes", "set 31 label to web",
                          "set 21 ID to 20 bytes", "set 21 label to web"));
}

TEST_F(TokenPlans, trustIsMarkedOrTheCertificateMadeOnceMore) {
  token_.certificate(11, "web", web_.certificate(), "ID", kOtherEntity);
  EXPECT_THAT(
      inWords(planSetTrusted(token_.view(), "web"_label, true)),
      ElementsAre("set 11 category to 2 | any: remove 11; make certificate web of category 2 | "
                  "attribute: make certificate web of category 0;;"));
  EXPECT_THAT(inWords(planSetTrusted(token_.view(), "web"_label, false)), IsEmpty());
}

// Requests.

TEST_F(TokenPlans, aRequestIsKeptOrItsSubjectByItsKey) {
  token_.newKeyPair(21, web_);
  EXPECT_THAT(inWords(planInsertRequest(token_.view(), requestEntry(web_, referenceTo(21)))),
              ElementsAre("use 21", kSubjectSet, "set 31 ID to 20 bytes", "set 31 label to web",
                          "set 21 ID to 20 bytes", "set 21 label to web",
                          "make request web | kind: set 21 subject to 14 bytes;"));
}

TEST_F(TokenPlans, aRequestWithItsKeyIsBroughtIn) {
  EXPECT_THAT(inWords(planInsertRequest(token_.view(), requestEntry(web_, broughtIn(web_)))),
              ElementsAre("make private key web", "make public key web",
                          "set the private key subject to 14 bytes | any: nothing",
                          "make request web | kind: set the private key subject to 14 bytes;"));
}

TEST_F(TokenPlans, aRequestWithoutKeyHasToBeKept) {
  EXPECT_THAT(inWords(planInsertRequest(token_.view(), requestEntry(web_))),
              ElementsAre("make request web"));
}

TEST_F(TokenPlans, aRequestTakesThePlaceOfTheOldOne) {
  token_.keyPair(21, "web", web_, "ID");
  const RequestEntry again = requestEntry(web_, referenceTo(21));
  const char* made = "make request web | kind: set 21 subject to 14 bytes;";
  EXPECT_THAT(inWords(planReplaceRequest(token_.view(), again)), ElementsAre(made));
  token_.request(41, "web", web_);
  EXPECT_THAT(inWords(planReplaceRequest(token_.view(), again)), ElementsAre(made, "remove 41"));
}

}  // namespace

}  // namespace zel::km::token
