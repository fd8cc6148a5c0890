#include "tests/contract/contract.h"

// Labels and items: whole records, released by the operation that is named for them.

namespace zel::contract {
namespace {

using Items = DatabaseContract;

void expectWhole(const ZELKMCertItemList* list) {
  ASSERT_NE(list, nullptr);
  for (; list != nullptr && list->item != nullptr; list = list->next) {
    const ZELKMCertItem& certificate = *list->item;
    EXPECT_NE(certificate.certDer, nullptr);
    EXPECT_GT(certificate.certDerLength, 0U);
    if (certificate.label == nullptr) continue;
    EXPECT_NE(certificate.subjectDN, nullptr);
    EXPECT_NE(certificate.issuerDN, nullptr);
    EXPECT_NE(certificate.sigAlgIdOID, nullptr);
  }
}

void expectWhole(const ZELKMKeyItem* item) {
  ASSERT_NE(item, nullptr);
  EXPECT_NE(item->label, nullptr);
  EXPECT_TRUE(item->hasPrivateKey == 0 || item->epki != nullptr);
  EXPECT_TRUE(item->hasBerData == 0 || item->berData != nullptr);
  ASSERT_NE(item->hasCertList, 0);
  expectWhole(item->certList);
}

int lengthOf(const ZELKMLabelList* list) {
  int length = 0;
  for (; list != nullptr && list->label != nullptr; list = list->next) ++length;
  return length;
}

TEST_F(Items, AreListedByTheirLabels) {
  ZELKMLabelList* labels = nullptr;
  ASSERT_EQ(ZELKM_GetKeyDbLabelList(handle_, &labels), ZELKM_OK);
  EXPECT_EQ(lengthOf(labels), 3);
  ZELKM_FreeLabelList(labels);

  labels = nullptr;
  ASSERT_EQ(ZELKM_GetReqKeyDbLabelList(handle_, &labels), ZELKM_OK);
  EXPECT_EQ(lengthOf(labels), 1);
  ZELKM_FreeLabelList(labels);
}

TEST_F(Items, AreHandedOutWhole) {
  ZELKMKeyItem* item = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemByLabel(handle_, Loan("server"), &item), ZELKM_OK);
  expectWhole(item);
  EXPECT_STREQ(item->label, "server");
  ZELKM_FreeKeyItem(item);

  item = nullptr;
  ASSERT_EQ(ZELKM_GetDefaultKeyItem(handle_, &item), ZELKM_OK);
  expectWhole(item);
  ZELKM_FreeKeyItem(item);
}

TEST_F(Items, AreHandedOutInLists) {
  ZELKMKeyItemList* list = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemListByLabel(handle_, Loan("server"), &list), ZELKM_OK);
  ASSERT_NE(list, nullptr);
  expectWhole(list->item);
  ZELKM_FreeKeyItemList(list);

  list = nullptr;
  const Loan key(given_.publicKey);
  ASSERT_EQ(ZELKM_GetKeyItemsByPublicKey(handle_, key.length(), key.bytes(), &list), ZELKM_OK);
  ASSERT_NE(list, nullptr);
  expectWhole(list->item);
  ZELKM_FreeKeyItemList(list);
}

TEST_F(Items, OutliveTheHandleTheyCameFrom) {
  const int other = open();
  ZELKMKeyItem* item = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemByLabel(other, Loan("server"), &item), ZELKM_OK);
  EXPECT_EQ(ZELKM_CloseKeyDb(other), ZELKM_OK);
  expectWhole(item);
  ZELKM_FreeKeyItem(item);
}

TEST_F(Items, OfRequestsHaveTheRequest) {
  ZELKMReqKeyItem* item = nullptr;
  ASSERT_EQ(ZELKM_GetReqKeyItemByLabel(handle_, Loan("pending"), &item), ZELKM_OK);
  ASSERT_NE(item, nullptr);
  EXPECT_STREQ(item->label, "pending");
  ASSERT_NE(item->certReq, nullptr);
  EXPECT_NE(item->certReq->certReqInfoItem, nullptr);
  ZELKM_FreeReqKeyItem(item);
}

TEST_F(Items, TellWhetherTheyHaveAPrivateKey) {
  unsigned char present = 0;
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(handle_, Loan("server"), &present), ZELKM_OK);
  EXPECT_EQ(present, 1);
}

TEST_F(Items, ThatAreNotThereAreACode) {
  for (const char* operation : {"ZELKM_GetKeyItemByLabel", "ZELKM_DeleteKey"}) refuse(operation);
  ZELKMKeyItem* item = nullptr;
  EXPECT_TRUE(isErrorCode(ZELKM_GetKeyItemByLabel(handle_, Loan("nothing"), &item)));
  EXPECT_TRUE(isErrorCode(ZELKM_DeleteKey(handle_, Loan("nothing"))));
}

TEST_F(Items, ArePutInAndTakenOut) {
  const Loan key(given_.strangersKey);
  {
    const Loan certificate(given_.stranger);
    EXPECT_EQ(ZELKM_InsertKey(handle_, Loan("inserted"), certificate.length(), certificate.bytes(),
                              key.length(), key.bytes(), 0, 0),
              ZELKM_OK);
    EXPECT_EQ(ZELKM_InsertKey(handle_, Loan("alone"), certificate.length(), certificate.bytes(), 0,
                              nullptr, 0, 0),
              ZELKM_OK);
  }
  const Loan request(given_.strangersRequest);
  EXPECT_EQ(ZELKM_InsertReqKey(handle_, Loan("asked"), request.length(), request.bytes(),
                               key.length(), key.bytes()),
            ZELKM_OK);
  EXPECT_EQ(ZELKM_SetDefaultKeyByLabel(handle_, Loan("inserted")), ZELKM_OK);
  EXPECT_EQ(ZELKM_SetTrustStatus(handle_, Loan("alone"), 1), ZELKM_OK);
  EXPECT_EQ(ZELKM_DeleteKey(handle_, Loan("inserted")), ZELKM_OK);
  EXPECT_EQ(ZELKM_DeleteRequestKeyPair(handle_, Loan("asked")), ZELKM_OK);
}

}  // namespace
}  // namespace zel::contract
