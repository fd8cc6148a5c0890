#include <gmock/gmock.h>

#include "engine/cms/names.h"
#include "tests/engine/stores/store_test.h"

// Certificates, with private keys and without.

namespace zel::km {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

sys::Bytes subjectOf(const std::string& commonName) {
  return cms::canonicalName(cms::encodeName({.cn = commonName}).value()).value();
}

std::vector<Label> labelsOf(const sys::Result<std::vector<KeyEntry>>& found) {
  EXPECT_EQ(found.code(), ZELKM_OK);
  std::vector<Label> labels;
  for (const KeyEntry& entry : found.value()) labels.push_back(entry.label);
  return labels;
}

class Entries : public StoreTest {
 protected:
  void insert(const KeyEntry& entry) { ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK); }
  KeyEntry found(const Label& label) {
    sys::Result<KeyEntry> entry = store().findKey(label);
    EXPECT_EQ(entry.code(), ZELKM_OK);
    return entry ? std::move(entry).value() : KeyEntry{};
  }
};

TEST_P(Entries, AreNoneToBeginWith) {
  EXPECT_THAT(keys(), IsEmpty());
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(Entries, AreListedInTheOrderOfTheStore) {
  insert(newEntry("mail"));
  insert(signerEntryOf("authority", authority_));
  insert(newEntry("web"));
  insert(newEntry("backup"));
  const std::vector<Label> order =
      listed({"mail"_label, "authority"_label, "web"_label, "backup"_label});
  EXPECT_EQ(keys(), order);
  reopen();
  EXPECT_EQ(keys(), order);
}

TEST_P(Entries, AreFoundAsTheyCame) {
  const KeyEntry made = newEntry("web");
  insert(made);
  reopen();
  const KeyEntry entry = found("web"_label);
  EXPECT_EQ(entry.label, "web"_label);
  EXPECT_EQ(entry.certificate, made.certificate);
  EXPECT_FALSE(entry.trusted);
  EXPECT_FALSE(entry.isDefault);
  EXPECT_EQ(entry.privateKey.pkcs8, made.privateKey.pkcs8);
  EXPECT_TRUE(signs(entry.privateKey, publicKeyOf(made.certificate)));
}

TEST_P(Entries, TakeKeysThatAreBroughtIn) {
  insert(entryOf("authority", authority_));
  reopen();
  EXPECT_TRUE(signs(found("authority"_label).privateKey, publicKeyOf(authority_.certificate())));
}

TEST_P(Entries, MayBeCertificatesAlone) {
  insert(signerEntryOf("authority", authority_));
  reopen();
  const KeyEntry entry = found("authority"_label);
  EXPECT_EQ(entry.certificate, authority_.certificate());
  EXPECT_FALSE(entry.privateKey.present());
}

TEST_P(Entries, CarryLabelsOfAllScriptsAndOfEveryLength) {
  const std::string key = "Schl\u00fcssel \U0001F511";
  const std::string longest(511, 'x');
  insert(newEntry(key));
  insert(newEntry(longest));
  reopen();
  EXPECT_EQ(keys(), listed({Label::ofName(key), Label::ofName(longest)}));
  EXPECT_EQ(found(Label::ofName(key)).label.name(), key);
}

TEST_P(Entries, HaveLabelsOfTheirOwn) {
  const KeyEntry made = newEntry("web");
  insert(made);
  EXPECT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(keys(), ElementsAre("web"_label));
  EXPECT_EQ(found("web"_label).certificate, made.certificate);
}

TEST_P(Entries, AreFoundByTheirPublicKey) {
  const KeyEntry made = newEntry("web");
  const sys::Bytes publicKey = publicKeyOf(made.certificate);
  KeyEntry renewed = made;
  renewed.label = "renewed"_label;
  renewed.certificate = authority_.issueFor(publicKey, "www.example.com", 20);
  insert(made);
  insert(newEntry("mail"));
  insert(renewed);
  EXPECT_EQ(labelsOf(store().findKeysByPublicKey(publicKey)),
            listed({"web"_label, "renewed"_label}));
  EXPECT_THAT(labelsOf(store().findKeysByPublicKey(publicKeyOf(authority_.certificate()))),
              IsEmpty());
  EXPECT_THAT(labelsOf(store().findKeysByPublicKey({})), IsEmpty());
}

TEST_P(Entries, AreFoundByTheirSubjectHoweverItIsSpelt) {
  insert(newEntry("web", "The  Server"));
  insert(newEntry("backup", "the server"));
  insert(newEntry("mail", "Another Server"));
  EXPECT_EQ(labelsOf(store().findKeysBySubject(subjectOf("THE SERVER"))),
            listed({"web"_label, "backup"_label}));
  EXPECT_THAT(labelsOf(store().findKeysBySubject(subjectOf("Nobody"))), IsEmpty());
}

TEST_P(Entries, ThatAreNotThereAreToldSo) {
  insert(newEntry("web"));
  EXPECT_EQ(store().findKey("mail"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store().removeKey("mail"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store().replaceKey(newEntry("mail")).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store().setTrusted("mail"_label, true).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_THAT(keys(), ElementsAre("web"_label));
}

TEST_P(Entries, AreReplacedInTheirPlace) {
  const KeyEntry made = newEntry("web");
  insert(made);
  insert(newEntry("mail", "mail.example.com"));
  const KeyEntry replacement = newEntry("web");
  ASSERT_EQ(store().replaceKey(replacement).code(), ZELKM_OK);
  reopen();
  EXPECT_EQ(keys(), listed({"web"_label, "mail"_label}));
  const KeyEntry entry = found("web"_label);
  EXPECT_EQ(entry.certificate, replacement.certificate);
  EXPECT_TRUE(signs(entry.privateKey, publicKeyOf(replacement.certificate)));
  EXPECT_THAT(labelsOf(store().findKeysByPublicKey(publicKeyOf(made.certificate))), IsEmpty());
  EXPECT_THAT(labelsOf(store().findKeysByPublicKey(publicKeyOf(replacement.certificate))),
              ElementsAre("web"_label));
}

TEST_P(Entries, AreRenewedUnderTheirKey) {
  insert(newEntry("web"));
  KeyEntry entry = found("web"_label);
  const sys::Bytes publicKey = publicKeyOf(entry.certificate);
  entry.certificate = authority_.issueFor(publicKey, "www.example.com", 20);
  ASSERT_EQ(store().replaceKey(entry).code(), ZELKM_OK);
  reopen();
  EXPECT_EQ(found("web"_label).certificate, entry.certificate);
  EXPECT_TRUE(signs(found("web"_label).privateKey, publicKey));
}

TEST_P(Entries, AreRemoved) {
  const KeyEntry made = newEntry("web");
  insert(made);
  insert(newEntry("mail"));
  ASSERT_EQ(store().removeKey("web"_label).code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(keys(), ElementsAre("mail"_label));
  EXPECT_EQ(store().findKey("web"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_THAT(labelsOf(store().findKeysByPublicKey(publicKeyOf(made.certificate))), IsEmpty());
  EXPECT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
}

TEST_P(Entries, AreCertificatesInDer) {
  KeyEntry entry = signerEntryOf("web", authority_);
  entry.certificate = {1, 2, 3};
  EXPECT_EQ(store().insertKey(entry).code(), ZELKM_ERR_ASN);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_P(Entries, AreSeenByOthersWhoHaveTheStoreOpen) {
  const std::unique_ptr<Store> other = openBeside();
  insert(newEntry("web"));
  EXPECT_THAT(other->keyLabels().value(), ElementsAre("web"_label));
  ASSERT_EQ(other->removeKey("web"_label).code(), ZELKM_OK);
  EXPECT_THAT(keys(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, Entries, testing::ValuesIn(allStores()), storeName);

class EntriesOfAnySubject : public Entries {};

TEST_P(EntriesOfAnySubject, AreFoundByTheSubjectOfTheReplacement) {
  insert(newEntry("web", "old.example.com"));
  ASSERT_EQ(store().replaceKey(newEntry("web", "new.example.com")).code(), ZELKM_OK);
  EXPECT_THAT(labelsOf(store().findKeysBySubject(subjectOf("old.example.com"))), IsEmpty());
  EXPECT_THAT(labelsOf(store().findKeysBySubject(subjectOf("new.example.com"))),
              ElementsAre("web"_label));
}

INSTANTIATE_TEST_SUITE_P(, EntriesOfAnySubject,
                         testing::ValuesIn(storesThatDo(Operation::replaceByAnotherSubject)),
                         storeName);

}  // namespace

}  // namespace zel::km
