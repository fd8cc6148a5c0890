#include "engine/km/work/pfx.h"

#include <gmock/gmock.h>

#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class PfxTest : public WorkTest {
 protected:
  sys::Status exported(const std::vector<Label>& labels) {
    return exportPfx(store(), labels, file("keys.p12"), secret_);
  }
  std::vector<cms::Pkcs12Entry> entriesOfFile() {
    return cms::readPkcs12(folder().read("keys.p12"), secret_.bytes()).value();
  }
  void clear() {
    const auto labels = store().keyLabels();
    for (const Label& label : labels.value()) EXPECT_TRUE(store().removeKey(label));
  }

  const sys::Password secret_ = password("secret");
  const cms::TestAuthority web_{"Web"};
  const cms::TestAuthority mail_{"Mail"};
  const KeyEntry webEntry_ = entryOf("web", web_);
  const KeyEntry mailEntry_ = entryOf("mail", mail_);
};

TEST_F(PfxTest, CarriesEntriesFromStoreToStore) {
  insert(webEntry_);
  insert(mailEntry_);
  ASSERT_TRUE(exported({"web"_label, "mail"_label}));
  clear();
  ASSERT_TRUE(importPfx(store(), file("keys.p12"), secret_));
  EXPECT_THAT(content(), UnorderedElementsAre(lineOf(webEntry_), lineOf(mailEntry_)));
}

TEST_F(PfxTest, ExportsAnEntryOnceHoweverOftenItIsNamed) {
  insert(webEntry_);
  ASSERT_TRUE(exported({"web"_label, "web"_label}));
  EXPECT_THAT(entriesOfFile(), SizeIs(1));
}

TEST_F(PfxTest, ExportsAllThatIsNamedOrNothing) {
  insert(webEntry_);
  EXPECT_EQ(exported({"web"_label, "nobody"_label}).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_FALSE(exists("keys.p12"));
  expectAllOrNothing([&](Store& failing) {
    const sys::Status done = exportPfx(failing, {"web"_label}, file("keys.p12"), secret_);
    EXPECT_EQ(exists("keys.p12"), static_cast<bool>(done));
    return done;
  });
}

TEST_F(PfxTest, NumbersTheLabelsThatAreInUse) {
  insert(webEntry_);
  ASSERT_TRUE(exported({"web"_label}));
  ASSERT_TRUE(importPfx(store(), file("keys.p12"), secret_));
  KeyEntry again = webEntry_;
  again.label = "web (2)"_label;
  EXPECT_THAT(content(), ElementsAre(lineOf(webEntry_), lineOf(again)));
}

TEST_F(PfxTest, TakesNoCertificateAloneTwice) {
  KeyEntry alone = webEntry_;
  alone.privateKey = {};
  insert(alone);
  ASSERT_TRUE(exported({"web"_label}));
  ASSERT_TRUE(importPfx(store(), file("keys.p12"), secret_));
  EXPECT_THAT(content(), ElementsAre(lineOf(alone)));
}

TEST_F(PfxTest, ImportsAllEntriesOrNone) {
  insert(webEntry_);
  insert(mailEntry_);
  ASSERT_TRUE(exported({"web"_label, "mail"_label}));
  clear();
  expectAllOrNothing([&](Store& failing) { return importPfx(failing, file("keys.p12"), secret_); });
  EXPECT_THAT(content(), SizeIs(2));
}

TEST_F(PfxTest, SaysWhenThePasswordIsAnother) {
  insert(webEntry_);
  ASSERT_TRUE(exported({"web"_label}));
  EXPECT_EQ(importPfx(store(), file("keys.p12"), password("other")).code(),
            ZELKM_ERR_PKCS12_PWD_CORRUPTION);
}

}  // namespace
}  // namespace zel::km
