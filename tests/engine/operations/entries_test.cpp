#include <gmock/gmock.h>

#include "engine/cms/epki.h"
#include "engine/cms/keys.h"
#include "engine/cms/pbe.h"
#include "engine/sys/modified_utf8.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::uint32_t lengthOf(sys::ByteView bytes) { return static_cast<std::uint32_t>(bytes.size()); }

class Entries : public DatabaseTest {
 protected:
  int insert(const char* label, sys::ByteView certificate, sys::ByteView key = {},
             bool trusted = false, bool makeDefault = false) {
    return ZELKM_InsertKey(handle(), label, lengthOf(certificate), certificate.data(),
                           lengthOf(key), key.data(), trusted ? 1 : 0, makeDefault ? 1 : 0);
  }

  sys::SecretBytes pkcs8() const { return cms::privateKeyInfo(owner_.key()).value(); }
  const sys::Bytes& certificate() const { return owner_.certificate(); }

  cms::TestAuthority owner_{"Owner"};
};

TEST_F(Entries, TakeACertificateAlone) {
  ASSERT_EQ(insert("ca", certificate(), {}, true), ZELKM_OK);
  const KeyItem item = this->item("ca");
  EXPECT_EQ(item->hasPrivateKey, 0);
  EXPECT_EQ(item->epki, nullptr);
  EXPECT_EQ(item->booleanValue1, 1);
  unsigned char present = 9;
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(handle(), "ca", &present), ZELKM_OK);
  EXPECT_EQ(present, 0);
}

TEST_F(Entries, TakeAKeyInEveryForm) {
  const sys::SecretBytes password = sys::secretToUtf8(kPassword).value();
  const sys::Bytes encrypted = cms::encryptPrivateKey(pkcs8(), password).value();
  sys::SecretBytes traditional = cms::encodeDer<sys::SecretBytes>(i2d_PrivateKey, &owner_.key());
  ASSERT_EQ(insert("pkcs8", certificate(), pkcs8()), ZELKM_OK);
  ASSERT_EQ(insert("encrypted", certificate(), encrypted), ZELKM_OK);
  ASSERT_EQ(insert("traditional", certificate(), traditional), ZELKM_OK);
  for (const char* label : {"pkcs8", "encrypted", "traditional"}) {
    const KeyItem item = this->item(label);
    EXPECT_EQ(
        cms::decryptPrivateKey(viewOf(item->epki->berData, item->epki->berDataLength), password)
            .value(),
        pkcs8())
        << label;
  }
}

TEST_F(Entries, AreMarkedAsTheFlagsSay) {
  ASSERT_EQ(insert("plain", certificate(), pkcs8()), ZELKM_OK);
  ASSERT_EQ(insert("marked", certificate(), pkcs8(), true, true), ZELKM_OK);
  EXPECT_EQ(item("plain")->booleanValue1, 0);
  EXPECT_EQ(item("plain")->booleanValue2, 0);
  EXPECT_EQ(item("marked")->booleanValue1, 1);
  EXPECT_EQ(item("marked")->booleanValue2, 1);
}

TEST_F(Entries, AreAllFoundByTheirPublicKey) {
  ASSERT_EQ(insert("one", certificate(), pkcs8()), ZELKM_OK);
  ASSERT_EQ(insert("two", certificate()), ZELKM_OK);
  const KeyItem one = item("one");
  ZELKMKeyItemList* list = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemsByPublicKey(handle(), one->berDataLength, one->berData, &list),
            ZELKM_OK);
  const KeyItemList owned(list);
  EXPECT_STREQ(list->item->label, "one");
  EXPECT_STREQ(list->next->item->label, "two");
  EXPECT_EQ(list->next->next, nullptr);
}

TEST_F(Entries, CarryTheirChainLeafFirst) {
  const cms::TestAuthority middle("Middle");
  const cms::TestAuthority leaf("Leaf");
  const sys::Bytes middleCertificate = owner_.issueFor(middle);
  ASSERT_EQ(insert("the root", certificate(), {}, true), ZELKM_OK);
  ASSERT_EQ(insert("the leaf", middle.issueFor(leaf), cms::privateKeyInfo(leaf.key()).value()),
            ZELKM_OK);
  EXPECT_EQ(item("the leaf")->certList->next, nullptr) << "its issuer is not known yet";

  ASSERT_EQ(insert("the middle", middleCertificate), ZELKM_OK);
  const KeyItem item = this->item("the leaf");
  const ZELKMCertItemList* chain = item->certList;
  EXPECT_STREQ(chain->item->label, "the leaf");
  EXPECT_STREQ(chain->next->item->label, "the middle");
  EXPECT_STREQ(chain->next->next->item->label, "the root");
  EXPECT_EQ(chain->next->next->next, nullptr);
}

TEST_F(Entries, RefuseAKeyThatIsNotTheirs) {
  const sys::SecretBytes other = cms::privateKeyInfo(*cms::generateKey(256).value()).value();
  EXPECT_EQ(insert("key", certificate(), other), ZELKM_ERR_VALIDATION_KEY_PAIR);
  EXPECT_EQ(insert("key", certificate(), cms::text("no key")), ZELKM_ERR_ASN);
  const sys::Bytes salt(16, 1);
  const sys::Bytes otherPassword =
      cms::encryptPrivateKey(pkcs8(), cms::derivePbeKey(cms::text("other"), salt, 1000).value())
          .value();
  EXPECT_EQ(insert("key", certificate(), otherPassword), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_THAT(keyLabels(), IsEmpty());
}

TEST_F(Entries, RefuseWhatMakesNoEntry) {
  EXPECT_EQ(insert("key", {}), ZELKM_ERR_KEYREC_CERTIFICATE_NULL);
  EXPECT_EQ(insert("key", cms::text("no certificate")), ZELKM_ERR_ASN);
  EXPECT_EQ(insert(nullptr, certificate()), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(insert("", certificate()), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(insert("key", certificate(), {}, false, true), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  ASSERT_EQ(insert("key", certificate()), ZELKM_OK);
  EXPECT_EQ(insert("key", certificate()), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(keyLabels(), ElementsAre("key"));
}

TEST_F(Entries, GoWhenDeleted) {
  ASSERT_EQ(selfSign("a", true), ZELKM_OK);
  ASSERT_EQ(selfSign("b"), ZELKM_OK);
  EXPECT_EQ(ZELKM_DeleteKey(handle(), "a"), ZELKM_OK);
  EXPECT_THAT(keyLabels(), ElementsAre("b"));
  EXPECT_EQ(ZELKM_DeleteKey(handle(), "a"), ZELKM_ERR_KEY_GET_BY_LABEL);
  ZELKMKeyItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetDefaultKeyItem(handle(), &item), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
  EXPECT_EQ(ZELKM_DeleteKey(handle(), nullptr), ZELKM_ERR_NULL_PARAMETER);
}

TEST_F(Entries, BecomeTheDefaultWhenTheyHaveAKey) {
  ASSERT_EQ(selfSign("a", true), ZELKM_OK);
  ASSERT_EQ(selfSign("b"), ZELKM_OK);
  ASSERT_EQ(insert("certificate", certificate()), ZELKM_OK);
  EXPECT_EQ(ZELKM_SetDefaultKeyByLabel(handle(), "b"), ZELKM_OK);
  EXPECT_EQ(item("a")->booleanValue2, 0);
  EXPECT_EQ(item("b")->booleanValue2, 1);
  EXPECT_EQ(ZELKM_SetDefaultKeyByLabel(handle(), "certificate"), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  EXPECT_EQ(ZELKM_SetDefaultKeyByLabel(handle(), "nobody"), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(item("b")->booleanValue2, 1);
}

TEST_F(Entries, AreTrustedOrNot) {
  ASSERT_EQ(insert("certificate", certificate()), ZELKM_OK);
  EXPECT_EQ(ZELKM_SetTrustStatus(handle(), "certificate", 1), ZELKM_OK);
  EXPECT_EQ(item("certificate")->booleanValue1, 1);
  EXPECT_EQ(ZELKM_SetTrustStatus(handle(), "certificate", 0), ZELKM_OK);
  EXPECT_EQ(item("certificate")->booleanValue1, 0);
  EXPECT_EQ(ZELKM_SetTrustStatus(handle(), "nobody", 1), ZELKM_ERR_KEY_GET_BY_LABEL);
}

}  // namespace
}  // namespace zel::km
