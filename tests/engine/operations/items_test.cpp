#include <gmock/gmock.h>

#include <ctime>

#include "engine/cms/certificates.h"
#include "engine/cms/epki.h"
#include "engine/cms/keys.h"
#include "engine/sys/modified_utf8.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

class KeyItems : public DatabaseTest {};

TEST_F(KeyItems, TellAllOfASelfSignedKey) {
  ASSERT_EQ(selfSign("root", true, 2048), ZELKM_OK);
  const KeyItem item = this->item("root");
  EXPECT_EQ(item->shortValue1, 1);
  EXPECT_STREQ(item->label, "root");
  EXPECT_EQ(item->keySize, 2048);
  EXPECT_EQ(item->hasPrivateKey, 1);
  EXPECT_EQ(item->hasCertList, 1);
  EXPECT_EQ(item->hasBerData, 1);
  EXPECT_EQ(item->booleanValue1, 1) << "trusted";
  EXPECT_EQ(item->booleanValue2, 1) << "default";

  const ZELKMCertItem& certificate = *item->certList->item;
  EXPECT_EQ(item->certList->next, nullptr);
  EXPECT_STREQ(certificate.label, "root");
  EXPECT_EQ(certificate.shortValue1, 3);
  EXPECT_EQ(certificate.shortValue2, 2048);
  EXPECT_STREQ(certificate.subjectDN->cn, "root");
  EXPECT_STREQ(certificate.subjectDN->o, "Sea");
  EXPECT_STREQ(certificate.subjectDN->c, "DE");
  EXPECT_STREQ(certificate.issuerDN->cn, "root");
  EXPECT_GT(certificate.subjectDN->derLength, 0U);
  EXPECT_NEAR(static_cast<double>(certificate.effectTime), static_cast<double>(std::time(nullptr)),
              60);
  EXPECT_EQ(certificate.expireTime - certificate.effectTime, 30 * 24 * 60 * 60);
  EXPECT_EQ(certificate.sigLength, 256U);
  EXPECT_STREQ(certificate.sigAlgIdOID, "1.2.840.113549.1.1.11");
  EXPECT_STREQ(certificate.sigAlgIdOIDName, "sha256WithRSAEncryption");
  EXPECT_GT(certificate.sigAlgIdLength, 0U);
  EXPECT_EQ(certificate.extraObject, nullptr);
  EXPECT_EQ(bytesOf(certificate.spki, certificate.spkiLength),
            bytesOf(item->berData, item->berDataLength));
}

TEST_F(KeyItems, NumberTheAlgorithms) {
  ASSERT_EQ(selfSign("ec", false, 384), ZELKM_OK);
  ASSERT_EQ(selfSign("ed", false, 25519), ZELKM_OK);
  EXPECT_EQ(item("ec")->shortValue1, 2);
  EXPECT_EQ(item("ec")->keySize, 384);
  EXPECT_EQ(item("ed")->shortValue1, 3);
  EXPECT_EQ(item("ed")->keySize, 255);
}

TEST_F(KeyItems, CarryTheKeyUnderTheDatabasePassword) {
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  const KeyItem item = this->item("key");
  const sys::ByteView epki = viewOf(item->epki->berData, item->epki->berDataLength);
  const sys::SecretBytes password = sys::secretToUtf8(kPassword).value();
  const sys::Result<sys::SecretBytes> pkcs8 = cms::decryptPrivateKey(epki, password);
  ASSERT_TRUE(pkcs8);
  const cms::KeyPtr key = std::move(cms::readPrivateKey(pkcs8.value())).value();
  EXPECT_EQ(cms::publicKeyInfo(*key).value(), bytesOf(item->berData, item->berDataLength));
}

TEST_F(KeyItems, AreReadWhateverCharactersTheLabelHas) {
  const char* label = "Schl\xC3\xBCssel \xED\xA0\xBD\xED\xB4\x91 \xC0\x80";
  ASSERT_EQ(selfSign(label), ZELKM_OK);
  EXPECT_STREQ(item(label)->label, label);
  EXPECT_STREQ(item(label)->certList->item->subjectDN->cn, label);
}

TEST_F(KeyItems, ComeAsAListOfOneByLabel) {
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  ZELKMKeyItemList* list = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemListByLabel(handle(), "key", &list), ZELKM_OK);
  const KeyItemList owned(list);
  EXPECT_STREQ(list->item->label, "key");
  EXPECT_EQ(list->next, nullptr);
}

TEST_F(KeyItems, AreFoundByTheirPublicKey) {
  ASSERT_EQ(selfSign("one"), ZELKM_OK);
  ASSERT_EQ(selfSign("other"), ZELKM_OK);
  const KeyItem one = item("one");
  ZELKMKeyItemList* list = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemsByPublicKey(handle(), one->berDataLength, one->berData, &list),
            ZELKM_OK);
  const KeyItemList owned(list);
  EXPECT_STREQ(list->item->label, "one");
  EXPECT_EQ(list->next, nullptr);
}

TEST_F(KeyItems, MakeTheLatestDefaultTheOnlyOne) {
  ZELKMKeyItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetDefaultKeyItem(handle(), &item), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
  ASSERT_EQ(selfSign("first", true), ZELKM_OK);
  ASSERT_EQ(selfSign("second", true), ZELKM_OK);
  ASSERT_EQ(selfSign("third"), ZELKM_OK);
  ASSERT_EQ(ZELKM_GetDefaultKeyItem(handle(), &item), ZELKM_OK);
  const KeyItem owned(item);
  EXPECT_STREQ(item->label, "second");
  EXPECT_EQ(this->item("first")->booleanValue2, 0);
}

TEST_F(KeyItems, SayWhetherThereIsAPrivateKey) {
  ASSERT_EQ(selfSign("key"), ZELKM_OK);
  unsigned char present = 0;
  ASSERT_EQ(ZELKM_IsPrivateKeyPresent(handle(), "key", &present), ZELKM_OK);
  EXPECT_EQ(present, 1);
}

TEST_F(KeyItems, ThatAreNotThereAre117) {
  ZELKMKeyItemList* list = nullptr;
  unsigned char present = 0;
  EXPECT_EQ(codeOfItem("nobody"), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_GetKeyItemListByLabel(handle(), "nobody", &list), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(handle(), "nobody", &present), ZELKM_ERR_KEY_GET_BY_LABEL);
  const sys::Bytes stranger = cms::publicKeyInfo(*cms::generateKey(256).value()).value();
  EXPECT_EQ(ZELKM_GetKeyItemsByPublicKey(handle(), static_cast<std::uint32_t>(stranger.size()),
                                         stranger.data(), &list),
            ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(present, 0);
}

TEST_F(KeyItems, RefuseArgumentsThatAreMissingOrMalformed) {
  ZELKMKeyItem* item = nullptr;
  ZELKMKeyItemList* list = nullptr;
  const unsigned char noKey[] = {1, 2, 3};
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle(), nullptr, &item), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle(), "x", nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle(), "", &item), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle(), std::string(512, 'x').c_str(), &item),
            ZELKM_ERR_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle(), "\xFF", &item), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemListByLabel(handle(), "x", nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemsByPublicKey(handle(), 0, noKey, &list), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemsByPublicKey(handle(), 3, nullptr, &list), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemsByPublicKey(handle(), 3, noKey, &list), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_GetDefaultKeyItem(handle(), nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(handle(), "x", nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(0, "x", &item), ZELKM_ERR_INVALID_DB_HANDLE);
}

}  // namespace
}  // namespace zel::km
