#include <gmock/gmock.h>

#include <filesystem>
#include <map>

#include "engine/cms/keys.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/hooks.h"
#include "tests/engine/token/token_store_test.h"

// Tokens that fail, at every call.

namespace zel::km::token {

namespace {

using testing::ElementsAre;

/** SoftHSM behind hooks. */
class TokenFaults : public TokenStoreTest {
 protected:
  int openHooked(const char* pin) {
    KeyDbLocator named = locator(pin);
    int handle = 0;
    const int code = ZELKM_OpenKeyDbX(&named, &handle);
    if (code == ZELKM_OK) ZELKM_CloseKeyDb(handle);
    return code;
  }
};

TEST_P(TokenFaults, aWrongPinIsTriedOnce) {
  close();
  std::map<std::string, int> calls;
  const Hooks hooks([&](const std::string& function) -> CK_RV {
    ++calls[function];
    return CKR_OK;
  });
  EXPECT_EQ(openHooked(kWrongPin), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(calls["C_Login"], 1);

  calls.clear();
  KeyDbLocator named = locator(kWrongPin);
  named.newPassword = "abcdef";
  EXPECT_EQ(ZELKM_ChangeKeyDbPwdX(&named), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(calls["C_Login"], 1);
  EXPECT_EQ(calls["C_SetPIN"], 0);

  reopen();
  calls.clear();
  EXPECT_EQ(openHooked(kWrongPin), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(openHooked(kPin), ZELKM_OK);
  EXPECT_EQ(calls["C_Login"], 0);
  EXPECT_EQ(calls["C_Logout"], 0);
}

TEST_P(TokenFaults, aPinIsToldFromItsFaults) {
  close();
  const auto codeFor = [&](CK_RV rv) {
    const Hooks hooks(
        [=](const std::string& function) -> CK_RV { return function == "C_Login" ? rv : CKR_OK; });
    return openHooked(kPin);
  };
  EXPECT_EQ(codeFor(CKR_PIN_LOCKED), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
  EXPECT_EQ(codeFor(CKR_PIN_LEN_RANGE), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(codeFor(CKR_PIN_EXPIRED), ZELKM_ERR_PASSWORD_EXPIRATION_TIME);
  EXPECT_EQ(codeFor(CKR_USER_PIN_NOT_INITIALIZED), ZELKM_ERR_NOT_INITIALIZED);
  EXPECT_EQ(codeFor(CKR_DEVICE_REMOVED), ZELKM_ERR_NO_TOKEN_PRESENT);
  // An answer that proves nothing: somebody's login, and nobody knows whose.
  EXPECT_EQ(codeFor(CKR_USER_ALREADY_LOGGED_IN), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
}

TEST_P(TokenFaults, aNewPinIsToldFromItsFaults) {
  close();
  const auto codeFor = [&](CK_RV rv) {
    const Hooks hooks(
        [=](const std::string& function) -> CK_RV { return function == "C_SetPIN" ? rv : CKR_OK; });
    KeyDbLocator named = locator(kPin);
    named.newPassword = "abc";
    return ZELKM_ChangeKeyDbPwdX(&named);
  };
  EXPECT_EQ(codeFor(CKR_PIN_LEN_RANGE), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(codeFor(CKR_PIN_INVALID), ZELKM_ERR_NEW_PASSWORD);
  EXPECT_EQ(codeFor(CKR_OK), ZELKM_ERR_PWD_TOO_SHORT);  // what SoftHSM itself says of three bytes
}

TEST_P(TokenFaults, aModuleThatThreadsCannotShareIsNotUsed) {
  close();
  const Hooks hooks([](const std::string& function) -> CK_RV {
    return function == "C_Initialize" ? CKR_CANT_LOCK : CKR_OK;
  });
  EXPECT_EQ(openHooked(kPin), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
}

TEST_P(TokenFaults, keysThatTheTokenDoesNotMakeAreTold) {
  const Hooks hooks([](const std::string& function) -> CK_RV {
    return function == "C_GetMechanismInfo" ? CKR_MECHANISM_INVALID : CKR_OK;
  });
  EXPECT_EQ(store().generateKey(256).code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
  EXPECT_EQ(store().generateKey(2048).code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
}

TEST_P(TokenFaults, objectsThatCannotBeReadOrMadeAreTold) {
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  {
    const Hooks hooks([](const std::string& function) -> CK_RV {
      return function == "C_CreateObject" ? CKR_TOKEN_WRITE_PROTECTED : CKR_OK;
    });
    EXPECT_EQ(store().insertKey(signerEntry("cb")).code(),
              ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED);
  }
  const Hooks hooks([](const std::string& function) -> CK_RV {
    return function == "C_DestroyObject" ? CKR_SESSION_READ_ONLY : CKR_OK;
  });
  EXPECT_EQ(store().removeKey("ca"_label).code(), ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED);
  EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca"));
}

TEST_P(TokenFaults, aTokenWhoseFilesAreGoneIsAnErrorAndNoCrash) {
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  std::filesystem::remove_all(path("tokens"));
  EXPECT_NE(store().generateKey(256).code(), ZELKM_OK);
  EXPECT_NE(store().insertKey(signerEntry("cb")).code(), ZELKM_OK);
  close();
  EXPECT_NE(openHooked(kPin), ZELKM_OK);
}

TEST_P(TokenFaults, aTokenPulledOutAtAnyCallIsAnError) {
  const auto work = [&]() -> int {
    close();
    sys::Result<std::unique_ptr<Store>> opened = openStore();
    if (!opened) return opened.code();
    Store& token = *opened.value();
    sys::Result<GeneratedKey> key = token.generateKey(256);
    if (!key) return key.code();
    const KeyEntry entry{.label = "web"_label,
                         .certificate = certificateFor(key.value().publicKey, "web"),
                         .privateKey = key.value().privateKey};
    if (sys::Status done = token.insertKey(entry); !done) return done.code();
    if (auto found = token.findKey("web"_label); !found) return found.code();
    if (auto made = token.sign(entry.privateKey, SigningDigest::sha256, {}); !made) {
      return made.code();
    }
    return token.removeKey("web"_label).code();
  };
  int calls = 0;
  {
    const Hooks hooks([&](const std::string&) -> CK_RV {
      ++calls;
      return CKR_OK;
    });
    ASSERT_EQ(work(), ZELKM_OK);
  }
  for (int last = 0; last < calls; ++last) {
    int at = 0;
    const Hooks hooks(
        [&](const std::string&) -> CK_RV { return at++ < last ? CKR_OK : CKR_DEVICE_REMOVED; });
    EXPECT_EQ(work(), ZELKM_ERR_NO_TOKEN_PRESENT) << "pulled out at call " << last;
  }
}

TEST_P(TokenFaults, anInsertionThatFailsAtAnyCallLeavesTheTokenAsItWas) {
  const cms::TestAuthority other("Imported");
  KeyEntry entry{.label = "imported"_label, .certificate = other.certificate(), .privateKey = {}};
  entry.privateKey.pkcs8 = cms::privateKeyInfo(other.key()).value();
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  const std::size_t before = objectCount();

  bool done = false;
  int failures = 0;
  for (int failing = 0; !done; ++failing) {
    int at = 0;
    std::string failed;
    sys::Status status = sys::success();
    {
      const Hooks hooks([&](const std::string& function) -> CK_RV {
        if (at++ != failing) return CKR_OK;
        failed = function;
        return CKR_FUNCTION_FAILED;
      });
      status = store().insertKey(entry);
      done = at <= failing;
    }
    SCOPED_TRACE("call " + std::to_string(failing) + ", " + failed);
    if (status) {  // the last time, or a call that need not succeed
      EXPECT_EQ(store().keyLabels().value(), (std::vector<Label>{"ca"_label, "imported"_label}));
      ASSERT_EQ(store().removeKey("imported"_label).code(), ZELKM_OK);
    } else {
      ++failures;
      EXPECT_EQ(status.code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
    }
    EXPECT_EQ(objectCount(), before);
    EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca"));
  }
  EXPECT_GT(failures, 10);
}

TEST_P(TokenFaults, aChangeThatFailsWithinATransactionLeavesWhatElseWasDone) {
  const cms::TestAuthority other("Imported");
  KeyEntry entry{.label = "imported"_label, .certificate = other.certificate(), .privateKey = {}};
  entry.privateKey.pkcs8 = cms::privateKeyInfo(other.key()).value();
  const std::size_t before = objectCount();
  const sys::Status done = inTransaction(store(), [&]() -> sys::Status {
    EXPECT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
    {
      int creations = 0;
      const Hooks hooks([&](const std::string& function) -> CK_RV {
        if (function != "C_CreateObject" || ++creations < 3) return CKR_OK;
        return CKR_FUNCTION_FAILED;  // of the certificate, when its key pair is there
      });
      EXPECT_EQ(store().insertKey(entry).code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
      EXPECT_EQ(creations, 3);
    }
    EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca"));
    EXPECT_TRUE(store().requestLabels().value().empty());
    return sys::success();
  });
  EXPECT_EQ(done.code(), ZELKM_OK);
  EXPECT_THAT(store().keyLabels().value(), ElementsAre("ca"));
  EXPECT_EQ(objectCount(), before + 1);
}

INSTANTIATE_TEST_SUITE_P(, TokenFaults, testing::Values(Vendor::hookedSoftHsm), vendorName);

}  // namespace

}  // namespace zel::km::token
