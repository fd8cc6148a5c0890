#include <gmock/gmock.h>

#include "tests/engine/operations/database.h"
#include "tests/engine/token/test_token.h"

// Which tokens there are, and who gets in.

namespace zel::km::token {

namespace {

using testing::Contains;
using testing::ElementsAre;

class TokenAccess : public TokenTest {
 protected:
  int changePin(const char* oldPin, const char* newPin) const {
    KeyDbLocator named = locator(oldPin);
    named.newPassword = newPin;
    return ZELKM_ChangeKeyDbPwdX(&named);
  }
};

TEST_P(TokenAccess, listsTheTokensOfAModule) {
  EXPECT_THAT(tokenLabels(moduleName()), Contains(label()));
}

TEST_P(TokenAccess, opensWithThePin) {
  const int handle = open(kPin);
  ASSERT_GT(handle, 0);
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, handle), ElementsAre());
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, handle), ElementsAre());
}

TEST_P(TokenAccess, saysThatAPinIsRequired) {
  const KeyDbLocator named = locator(nullptr);
  unsigned char required = 0;
  EXPECT_EQ(ZELKM_IsPasswordRequired(&named, &required), ZELKM_OK);
  EXPECT_EQ(required, 1);
}

TEST_P(TokenAccess, doesNotOpenWithoutAPin) {
  EXPECT_EQ(open(nullptr), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED);
  EXPECT_EQ(open(""), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED);
}

TEST_P(TokenAccess, tellsAWrongPin) {
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_GT(open(kPin), 0);
}

TEST_P(TokenAccess, letsNobodyInOnTheLoginOfAnother) {
  ASSERT_GT(open(kPin), 0);
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_GT(open(kPin), 0);
}

TEST_P(TokenAccess, endsTheLoginWithTheLastHandle) {
  const int first = open(kPin);
  const int second = open(kPin);
  close(first);
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  close(second);
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
}

TEST_P(TokenAccess, tellsAModuleATokenAndNothingApart) {
  KeyDbLocator named = locator(kPin);
  int handle = 0;
  named.tokenLabel = "no such token";
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST);
  named.moduleName = "/no/such/module.so";
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED);
  named.moduleName = "libcrypto.so.3";
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED);
  named.moduleName = nullptr;
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(handle, 0);
}

TEST_P(TokenAccess, changesThePin) {
  EXPECT_EQ(changePin(kPin, "abcdef"), ZELKM_OK);
  EXPECT_EQ(open(kPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_GT(open("abcdef"), 0);
}

TEST_P(TokenAccess, changesThePinUnderOpenHandles) {
  ASSERT_GT(open(kPin), 0);
  EXPECT_EQ(changePin(kPin, "abcdef"), ZELKM_OK);
  EXPECT_EQ(open(kPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_GT(open("abcdef"), 0);
}

TEST_P(TokenAccess, keepsThePinWhenTheOldOneIsWrong) {
  EXPECT_EQ(changePin(kWrongPin, "abcdef"), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(changePin(nullptr, "abcdef"), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED);
  EXPECT_EQ(changePin(kPin, nullptr), ZELKM_ERR_NEW_PASSWORD);
  EXPECT_GT(open(kPin), 0);
}

INSTANTIATE_TEST_SUITE_P(, TokenAccess, testing::ValuesIn(kVendors), vendorName);

class SoftHsmTokens : public testing::Test {
 protected:
  cms::TemporaryFolder folder_;
  SoftHsm softHsm_{folder_};
};

TEST_F(SoftHsmTokens, aModuleWithoutTokensListsNone) {
  // SoftHSM always has a slot with a token that waits to be initialised.
  EXPECT_THAT(tokenLabels(kSoftHsmModule), ElementsAre());
  const std::string module = kSoftHsmModule;
  const KeyDbLocator named = tokenLocator(module, "any", kPin);
  int handle = 0;
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_NO_TOKEN_PRESENT);
}

TEST_F(SoftHsmTokens, tokensWithOneLabelAreNumbered) {
  softHsm_.addToken("twin");
  softHsm_.addToken("twin");
  softHsm_.addToken("other");
  EXPECT_THAT(tokenLabels(kSoftHsmModule), ElementsAre("other", "twin", "twin (2)"));
}

TEST_F(SoftHsmTokens, aTokenThatAnotherProcessAddsIsSeen) {
  softHsm_.addToken("first");
  EXPECT_THAT(tokenLabels(kSoftHsmModule), ElementsAre("first"));
  softHsm_.addToken("second");
  EXPECT_THAT(tokenLabels(kSoftHsmModule), ElementsAre("first", "second"));
}

TEST_F(SoftHsmTokens, modulesAreKnownByTheNamesOfP11Kit) {
  softHsm_.addToken("named");
  EXPECT_THAT(tokenLabels("softhsm2"), ElementsAre("named"));
}

TEST_F(SoftHsmTokens, thePinThatAnotherProcessChangedIsAskedFor) {
  softHsm_.addToken("shared");
  const std::string module = kSoftHsmModule;
  KeyDbLocator named = tokenLocator(module, "shared", kPin);
  int handle = 0;
  ASSERT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_OK);
  ZELKM_CloseKeyDb(handle);
  const cms::CommandResult changed =
      cms::run(std::string("pkcs11-tool --module ") + kSoftHsmModule +
               " --token-label shared --login --pin 123456 --change-pin --new-pin abcdef");
  ASSERT_EQ(changed.exitCode, 0) << changed.output;
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  named.password = "abcdef";
  ASSERT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_OK);
  ZELKM_CloseKeyDb(handle);
}

TEST(NssTokens, aTokenWithoutPinTakesNone) {
  const cms::TemporaryFolder folder;
  const std::string module = NssDatabase(folder, NssDatabase::Pin::none).moduleName();
  KeyDbLocator named = tokenLocator(module, kNssLabel, nullptr);
  unsigned char required = 1;
  EXPECT_EQ(ZELKM_IsPasswordRequired(&named, &required), ZELKM_OK);
  EXPECT_EQ(required, 0);

  int handle = 0;
  ASSERT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_OK);
  EXPECT_EQ(ZELKM_CreateSelfSignedCertSigExt(handle, "self", 0, 3, 256, name("Self").get(), 10, 1,
                                             nullptr, 0, nullptr, 0),
            ZELKM_OK);
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, handle), ElementsAre("self"));
  ZELKM_CloseKeyDb(handle);

  named.password = kPin;
  EXPECT_EQ(ZELKM_OpenKeyDbX(&named, &handle), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED);
}

TEST(NssTokens, aModuleIsUsedWithOneSetOfArgumentsAtATime) {
  const cms::TemporaryFolder folder;
  const std::string first = NssDatabase(folder, NssDatabase::Pin::wanted, "first").moduleName();
  const std::string second = NssDatabase(folder, NssDatabase::Pin::wanted, "second").moduleName();
  const KeyDbLocator inFirst = tokenLocator(first, kNssLabel, kPin);
  const KeyDbLocator inSecond = tokenLocator(second, kNssLabel, kPin);
  int handle = 0;
  int other = 0;
  ASSERT_EQ(ZELKM_OpenKeyDbX(&inFirst, &handle), ZELKM_OK);
  EXPECT_EQ(ZELKM_OpenKeyDbX(&inSecond, &other), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
  ZELKM_CloseKeyDb(handle);
  ASSERT_EQ(ZELKM_OpenKeyDbX(&inSecond, &other), ZELKM_OK);
  ZELKM_CloseKeyDb(other);
}

}  // namespace

}  // namespace zel::km::token
