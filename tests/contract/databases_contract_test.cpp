#include "tests/contract/contract.h"

// Key databases and tokens: opened, closed, converted, and their passwords.

namespace zel::contract {
namespace {

TEST_F(Contract, OpensADatabaseAgainAndAgain) {
  const int first = open();
  const int second = open();
  EXPECT_NE(first, second);
  EXPECT_EQ(ZELKM_CloseKeyDb(first), ZELKM_OK);
  EXPECT_EQ(ZELKM_CloseKeyDb(second), ZELKM_OK);
}

TEST_F(Contract, OpensANewDatabase) {
  int handle = 0;
  EXPECT_EQ(ZELKM_CreateNewKeyDb(Loan(newFile("new.kdb")), Loan(given_.password), 3600, &handle),
            ZELKM_OK);
  EXPECT_GT(handle, 0);
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);

  handle = 0;
  EXPECT_EQ(
      ZELKM_CreateNewKeyDbFIPS(Loan(newFile("approved.kdb")), Loan("correct horse 1"), 0, &handle),
      ZELKM_OK);
  EXPECT_GT(handle, 0);
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
}

TEST_F(Contract, ReadsALocatorNoFurtherThanItsExtent) {
  const Loan file(given_.file);
  const Loan password(given_.password);
  const Loan newPassword(given_.otherPassword);
  KeyDbLocator fields = databaseLocator(file, password);
  int handle = 0;
  EXPECT_EQ(ZELKM_OpenKeyDbX(Locator(fields, KEYDB_LOCATOR_OPEN_EXTENT), &handle), ZELKM_OK);
  EXPECT_GT(handle, 0);
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);

  unsigned char required = 0;
  EXPECT_EQ(ZELKM_IsPasswordRequired(Locator(fields, KEYDB_LOCATOR_QUERY_EXTENT), &required),
            ZELKM_OK);
  EXPECT_EQ(required, 1);

  fields.newPassword = newPassword;
  EXPECT_EQ(ZELKM_ChangeKeyDbPwdX(Locator(fields, KEYDB_LOCATOR_CHANGE_EXTENT)), ZELKM_OK);
}

TEST_F(Contract, KeepsNoPasswordOfItsCaller) {
  EXPECT_EQ(
      ZELKM_ChangeKeyDbPwd(Loan(given_.file), Loan(given_.password), Loan(given_.otherPassword), 0),
      ZELKM_OK);
  EXPECT_EQ(ZELKM_StashKeyDbPwd(Loan(given_.file), Loan(given_.otherPassword)), ZELKM_OK);
  int handle = 0;
  EXPECT_EQ(ZELKM_OpenKeyDb(Loan(given_.file), Loan(given_.otherPassword), &handle), ZELKM_OK);
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
}

TEST_F(Contract, AnswersACodeWhenItDoesNotOpen) {
  refuse("ZELKM_OpenKeyDb");
  int handle = 0;
  EXPECT_TRUE(
      isErrorCode(ZELKM_OpenKeyDb(Loan(newFile("nothing.kdb")), Loan(given_.password), &handle)));
}

TEST_F(Contract, ConvertsToKeyRingsAndBack) {
  EXPECT_EQ(ZELKM_Kdb2Kyr(Loan(given_.file), Loan(given_.password), Loan(newFile("keys.kyr")),
                          Loan(given_.otherPassword)),
            ZELKM_OK);
  EXPECT_EQ(ZELKM_Kyr2Kdb(Loan(newFile("keys.kyr")), Loan(given_.otherPassword),
                          Loan(newFile("again.kdb")), Loan(given_.password)),
            ZELKM_OK);
}

TEST_F(Contract, LendsADatabaseToAToken) {
  const Loan module(given_.moduleName);
  ZELKMLabelList* labels = nullptr;
  ASSERT_EQ(ZELKM_GetCryptoTokenLabelList(module, &labels), ZELKM_OK);
  ASSERT_NE(labels, nullptr);
  EXPECT_EQ(labels->label, given_.tokenLabel);
  ZELKM_FreeLabelList(labels);

  const Loan label(given_.tokenLabel);
  const Loan pin(given_.pin);
  KeyDbLocator fields{};
  fields.type = KEYDB_LOCATOR_TOKEN;
  fields.moduleName = module;
  fields.tokenLabel = label;
  fields.password = pin;
  int token = 0;
  ASSERT_EQ(ZELKM_OpenKeyDbX(Locator(fields, KEYDB_LOCATOR_OPEN_EXTENT), &token), ZELKM_OK);
  const int database = open();
  EXPECT_EQ(ZELKM_SetSecondaryKeyDb(token, database), ZELKM_OK);
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(token), ZELKM_OK);
  EXPECT_EQ(ZELKM_CloseKeyDb(database), ZELKM_OK);
  EXPECT_EQ(ZELKM_CloseKeyDb(token), ZELKM_OK);
}

}  // namespace
}  // namespace zel::contract
