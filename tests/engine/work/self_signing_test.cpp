#include "engine/km/work/self_signing.h"

#include <gmock/gmock.h>

#include "engine/cms/certificates.h"
#include "engine/cms/names.h"
#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/failing_store.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SelfSigningTest : public WorkTest {
 protected:
  SelfSigning wanted() const {
    return {.label = "web"_label,
            .subject = cms::encodeName({.cn = "web"}).value(),
            .keySize = 256,
            .days = 30};
  }
  SelfSigning wantedInFile(const sys::FileName& name) const {
    SelfSigning wanted = this->wanted();
    wanted.file = CertificateFile{name, CertificateFormat::der};
    return wanted;
  }
  SelfSigning defaultInFile(const sys::FileName& name) const {
    SelfSigning wanted = wantedInFile(name);
    wanted.makeDefault = true;
    return wanted;
  }

  /** An entry that has the default mark. */
  KeyEntry insertDefault() {
    KeyEntry entry = entryOf("old", cms::TestAuthority("Old"));
    entry.isDefault = true;
    insert(entry);
    return entry;
  }

  cms::CertificateFields fields() {
    return cms::readCertificate(store().findKey("web"_label).value().certificate).value();
  }
};

TEST_F(SelfSigningTest, MakesATrustedEntryWithItsKey) {
  ASSERT_TRUE(selfSign(store(), wanted()));
  const KeyEntry entry = store().findKey("web"_label).value();
  EXPECT_TRUE(entry.privateKey.present());
  EXPECT_TRUE(entry.trusted);
  EXPECT_FALSE(entry.isDefault);
  EXPECT_EQ(fields().subject.cn, "web");
  EXPECT_EQ(fields().issuerDer, fields().subjectDer);
  EXPECT_EQ(fields().key, (cms::KeyTraits{cms::KeyAlgorithm::ec, 256}));
}

TEST_F(SelfSigningTest, SignsAsIsAskedFor) {
  SelfSigning wanted = this->wanted();
  wanted.signature = cms::kSha512;
  ASSERT_TRUE(selfSign(store(), wanted));
  EXPECT_EQ(fields().signatureName, "ecdsa-with-SHA512");
}

TEST_F(SelfSigningTest, MakesOldVersionsWithoutExtensions) {
  SelfSigning wanted = this->wanted();
  wanted.version = 1;
  ASSERT_TRUE(selfSign(store(), wanted));
  EXPECT_EQ(fields().version, 1);
}

TEST_F(SelfSigningTest, WritesTheCertificateOfTheEntry) {
  ASSERT_TRUE(selfSign(store(), wantedInFile(file("web.der"))));
  EXPECT_EQ(folder().read("web.der"), store().findKey("web"_label).value().certificate);
}

TEST_F(SelfSigningTest, TakesALabelOnceOnly) {
  ASSERT_TRUE(selfSign(store(), wanted()));
  const auto before = content();
  SelfSigning again = wanted();
  again.keySize = 1;  // which no key could be made of
  EXPECT_EQ(selfSign(store(), again).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_EQ(content(), before);
}

TEST_F(SelfSigningTest, FindsOutWhatCannotBeBeforeItMakesAKey) {
  SelfSigning wanted = this->wanted();
  wanted.days = 0;
  wanted.keySize = 1;
  EXPECT_EQ(selfSign(store(), wanted).code(), ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD);
  EXPECT_THAT(content(), IsEmpty());
}

TEST_F(SelfSigningTest, ChangesNothingWhenTheStoreFails) {
  insertDefault();
  expectAllOrNothing([&](Store& failing) {
    const sys::Status done = selfSign(failing, defaultInFile(file("web.der")));
    EXPECT_EQ(exists("web.der"), static_cast<bool>(done));
    return done;
  });
  EXPECT_THAT(content(), SizeIs(2));
}

TEST_F(SelfSigningTest, TakesTheEntryOutAgainWhenItsFileCannotBeWritten) {
  EXPECT_EQ(selfSign(store(), wantedInFile(unwritableFile())).code(),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_THAT(content(), IsEmpty());
}

TEST_F(SelfSigningTest, GivesTheDefaultMarkBackWhenTheFileCannotBeWritten) {
  const KeyEntry old = insertDefault();
  EXPECT_EQ(selfSign(store(), defaultInFile(unwritableFile())).code(),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_THAT(content(), ElementsAre(lineOf(old)));
}

/** Fails in every call in turn, those that take the entry back among them. */
TEST_F(SelfSigningTest, LeavesNoEntryWithoutADefaultWhenTakingBackFails) {
  const KeyEntry old = insertDefault();
  int stayed = 0;
  for (int call = 1;; ++call) {
    FailingStore failing(store(), call);
    const int code = selfSign(failing, defaultInFile(unwritableFile())).code();
    if (!failing.hasFailed()) break;
    if (code == FailingStore::kCode) {
      ASSERT_THAT(content(), ElementsAre(lineOf(old))) << "call " << call;
      continue;
    }
    // It was the taking back that failed: the entry stays whole, with the mark.
    EXPECT_EQ(code, ZELKM_ERR_FILE_OPEN_NOT_EXIST) << "call " << call;
    EXPECT_THAT(content(), SizeIs(2)) << "call " << call;
    EXPECT_EQ(store().defaultKey().value().label, "web") << "call " << call;
    ++stayed;
    EXPECT_TRUE(store().removeKey("web"_label));
    EXPECT_TRUE(store().setDefault("old"_label));
  }
  EXPECT_EQ(stayed, 3);  // beginning the transaction, removing, marking
}

}  // namespace
}  // namespace zel::km
