#include "engine/km/work/receiving.h"

#include <gmock/gmock.h>

#include "engine/cms/pem.h"
#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ReceivingTest : public WorkTest {
 protected:
  ReceivingTest() { insert(requestOf("web", web_)); }

  /** PEM text with the certificates. */
  static sys::Bytes bundle(const std::vector<sys::Bytes>& certificates) {
    sys::Bytes text;
    for (const sys::Bytes& certificate : certificates) {
      const auto pem = cms::encodePem(cms::kCertificateArmour, certificate);
      text.insert(text.end(), pem.value().begin(), pem.value().end());
    }
    return text;
  }
  static KeyEntry issuerEntry(const char* label, const sys::Bytes& certificate) {
    KeyEntry entry;
    entry.label = Label::ofName(label);
    entry.certificate = certificate;
    return entry;
  }
  KeyEntry received() const {
    KeyEntry entry = entryOf("web", web_);
    entry.certificate = certificate_;
    return entry;
  }

  const cms::TestAuthority root_{"Root"};
  const cms::TestAuthority middle_{"Middle"};
  const cms::TestAuthority web_{"Web"};
  const cms::TestAuthority stranger_{"Stranger"};
  const sys::Bytes middleCertificate_ = root_.issueFor(middle_);
  const sys::Bytes certificate_ = middle_.issueFor(web_);
};

TEST_F(ReceivingTest, TurnsTheRequestIntoAnEntry) {
  ASSERT_TRUE(receive(store(), certificate_, false));
  EXPECT_THAT(content(), ElementsAre(lineOf(received())));
}

TEST_F(ReceivingTest, MarksTheEntryAsDefaultWhenAsked) {
  ASSERT_TRUE(receive(store(), certificate_, true));
  EXPECT_EQ(store().defaultKey().value().label, "web");
}

TEST_F(ReceivingTest, KeepsTheIssuersThatCameAlongAndNobodyElse) {
  ASSERT_TRUE(receive(
      store(),
      bundle({stranger_.certificate(), root_.certificate(), certificate_, middleCertificate_}),
      false));
  EXPECT_THAT(content(), UnorderedElementsAre(lineOf(received()),
                                              lineOf(issuerEntry("Middle", middleCertificate_)),
                                              lineOf(issuerEntry("Root", root_.certificate()))));
}

TEST_F(ReceivingTest, KeepsNoIssuerTwice) {
  insert(issuerEntry("my root", root_.certificate()));
  ASSERT_TRUE(
      receive(store(), bundle({certificate_, middleCertificate_, root_.certificate()}), false));
  EXPECT_THAT(content(), UnorderedElementsAre(lineOf(received()),
                                              lineOf(issuerEntry("Middle", middleCertificate_)),
                                              lineOf(issuerEntry("my root", root_.certificate()))));
}

TEST_F(ReceivingTest, NeedsARequest) {
  const auto before = content();
  EXPECT_EQ(receive(store(), stranger_.certificate(), false).code(),
            ZELKM_ERR_REQKEY_FOR_CERT_NULL);
  EXPECT_EQ(content(), before);
}

TEST_F(ReceivingTest, ChangesNothingWhenTheStoreFails) {
  const sys::Bytes all = bundle({certificate_, middleCertificate_, root_.certificate()});
  expectAllOrNothing([&](Store& failing) { return receive(failing, all, true); });
  EXPECT_THAT(content(), testing::SizeIs(3));
}

TEST_F(ReceivingTest, TrustsAnAuthorityThatIsStored) {
  ASSERT_TRUE(storeAuthority(store(), "root"_label, root_.certificate()));
  EXPECT_TRUE(store().findKey("root"_label).value().trusted);
  EXPECT_EQ(storeAuthority(store(), "root"_label, middleCertificate_).code(),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_EQ(storeAuthority(store(), "none"_label, {}).code(), ZELKM_ERR_ASN);
}

}  // namespace
}  // namespace zel::km
