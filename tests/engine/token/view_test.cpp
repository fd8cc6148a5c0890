#include <gmock/gmock.h>

#include "engine/km/token/token_view.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/token_picture.h"

// What lies on a token, as it is sorted into entries and follows changes. No token is needed.

namespace zel::km::token {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TokenViews : public testing::Test {
 protected:
  static std::vector<std::string> keys(const TokenView& view) {
    return labels(view.certificates());
  }
  static std::vector<std::string> requests(const TokenView& view) {
    return labels(view.requests());
  }

  TokenPicture token_;
  const cms::TestAuthority web_{"W"};
  const cms::TestAuthority other_{"O"};

 private:
  template <typename Entry>
  static std::vector<std::string> labels(const std::vector<Entry>& entries) {
    std::vector<std::string> found;
    found.reserve(entries.size());
    for (const Entry& entry : entries) found.push_back(entry.label.text());
    return found;
  }
};

TEST_F(TokenViews, aCertificateHasTheKeyOfItsPublicKeyWhateverTheirIds) {
  token_.certificate(11, "web", web_.certificate(), "one").keyPair(21, "key", web_, "two");
  EXPECT_THAT(keys(token_.view()), ElementsAre("web"));
  EXPECT_EQ(token_.view().certificate("web"_label)->privateKey->handle, 21U);
  EXPECT_THAT(requests(token_.view()), IsEmpty());
}

TEST_F(TokenViews, aNewKeyIsNoEntryUntilOneUsesIt) {
  token_.newKeyPair(21, web_);
  TokenView view = token_.view();
  EXPECT_THAT(requests(view), IsEmpty());
  view.useNewKey(21);
  EXPECT_EQ(requests(view).size(), 1U);
}

TEST_F(TokenViews, itFollowsWhatIsSet) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "key", web_, "ID", "");
  TokenView view = token_.view();
  view.set(11, CKA_LABEL, cms::text("mail"));
  view.set(11, CKA_CERTIFICATE_CATEGORY, numberValue(kAuthority));
  view.set(21, CKA_SUBJECT, cms::text("subject"));
  view.set(31, CKA_ID, cms::text("another"));
  EXPECT_THAT(keys(view), ElementsAre("mail"));
  const CertificateEntry entry = view.certificate("mail"_label).value();
  EXPECT_TRUE(entry.certificate->isTrusted());
  EXPECT_EQ(entry.privateKey->subject, bytesOfText("subject"));
  EXPECT_EQ(view.attribute(31, CKA_ID), bytesOfText("another"));
  EXPECT_EQ(view.attribute(99, CKA_ID), sys::Bytes());
}

TEST_F(TokenViews, anEntryStaysAsItWasFound) {
  token_.certificate(11, "web", web_.certificate(), "ID");
  std::optional<TokenView> view = token_.view();
  const CertificateEntry entry = view->certificate("web"_label).value();
  view->set(11, CKA_LABEL, cms::text("mail"));
  view->remove(11);
  view.reset();
  EXPECT_EQ(entry.certificate->label, "web");
  EXPECT_EQ(entry.certificate->der, web_.certificate());
}

TEST_F(TokenViews, aCopyChangesOnItsOwn) {
  token_.certificate(11, "web", web_.certificate(), "ID");
  const TokenView view = token_.view();
  TokenView copy = view;
  copy.remove(11);
  EXPECT_THAT(keys(copy), IsEmpty());
  EXPECT_THAT(keys(view), ElementsAre("web"));
}

TEST_F(TokenViews, whatIsRemovedIsGoneAndAKeyComesBackWhole) {
  token_.certificate(11, "web", web_.certificate(), "ID").keyPair(21, "web", web_, "ID");
  TokenView view = token_.view();
  for (const CK_OBJECT_HANDLE object : {11UL, 21UL, 31UL}) view.remove(object);
  EXPECT_EQ(view.privateKey(21), nullptr);
  EXPECT_EQ(view.privateKeyOf(publicKeyOf(web_)), nullptr);
  EXPECT_THAT(view.removed(), testing::UnorderedElementsAre(11, 21, 31));
  view.restoreKey(21);
  EXPECT_EQ(view.publicKeysOf(*view.privateKey(21)).size(), 1U);
  EXPECT_THAT(view.removed(), ElementsAre(11));
  EXPECT_THAT(requests(view), ElementsAre("web"));
}

TEST_F(TokenViews, anObjectThatTheTokenHasOnceIsThereOnce) {
  token_.certificate(11, "web", web_.certificate(), "ID");
  TokenView view = token_.view();
  CertificateObject again = certificateObject(web_.certificate());
  again.handle = 11;
  again.label = "again";
  view.add(std::move(again));
  EXPECT_THAT(keys(view), ElementsAre("again"));
}

TEST_F(TokenViews, equalLabelsAreNumbered) {
  token_.certificate(11, "twin", web_.certificate(), "1");
  token_.certificate(12, "twin", other_.certificate(), "2");
  EXPECT_THAT(keys(token_.view()), ElementsAre("twin", "twin (2)"));
}

TEST_F(TokenViews, anIdOfTwoKeysTellsNothing) {
  token_.keyPair(21, "one", web_, "ID").keyPair(22, "two", other_, "ID");
  token_.certificate(11, "cert", web_.certificate(), "ID");
  EXPECT_EQ(token_.view().certificate("cert"_label)->privateKey, nullptr);
  EXPECT_THAT(requests(token_.view()), ElementsAre("one", "two"));
}

}  // namespace

}  // namespace zel::km::token
