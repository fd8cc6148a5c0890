#include "tests/engine/errors/provocation.h"
#include "tests/engine/token/hooks.h"
#include "tests/engine/token/test_token.h"

// Tokens that are not there, do not open, or fail. SoftHSM is behind hooks that make it fail.

namespace zel::km::errors {

namespace {

constexpr const char* kTokenLabel = "token";

/** One token for all worlds. */
void makeToken() {
  static const cms::TemporaryFolder folder;
  [[maybe_unused]] static const bool made = [] {
    token::SoftHsm(folder).addToken(kTokenLabel);
    return true;
  }();
}

/** Goes on with the token in the place of the key database file. */
void nameToken(World& world) {
  makeToken();
  world.given.locatorType = KEYDB_LOCATOR_TOKEN;
  world.given.moduleName = ZEL_HOOKED_MODULE;
  world.given.tokenLabel = kTokenLabel;
  world.given.password = token::kPin;
}

/** Goes on with the token's handle in the place of the database's. */
void openToken(World& world) {
  nameToken(world);
  ZELKM_CloseKeyDb(world.handle);
  const KeyDbLocator locator = world.locator();
  EXPECT_EQ(ZELKM_OpenKeyDbX(&locator, &world.handle), ZELKM_OK);
  world.given.password.reset();
}

void openSecondary(World& world) {
  EXPECT_EQ(ZELKM_OpenKeyDb(world.file.c_str(), kPassword, &world.secondary), ZELKM_OK);
}

/** The module's function answers that, or every function when none is named. */
void answer(World& world, const std::string& function, CK_RV rv) {
  world.keepAlive(std::make_shared<token::Hooks>([=](const std::string& called) -> CK_RV {
    return function.empty() || called == function ? rv : CKR_OK;
  }));
}

void fail(World& world) {
  openToken(world);
  answer(world, "", CKR_FUNCTION_FAILED);
}

void pullOut(World& world) {
  openToken(world);
  answer(world, "", CKR_DEVICE_REMOVED);
}

void login(World& world, CK_RV rv) {
  nameToken(world);
  answer(world, "C_Login", rv);
}

/** A PIN that the token does not take as the new one. */
void changePin(World& world, CK_RV rv) {
  nameToken(world);
  answer(world, "C_SetPIN", rv);
}

/** Makes a key on the token, which cannot be exported. */
void exportFromToken(World& world) {
  openToken(world);
  ZELKM_DeleteKey(world.handle, "of the token");
  EXPECT_EQ(ZELKM_CreateSelfSignedCert(world.handle, "of the token", 0, 3, 256, world.name(), 30,
                                       nullptr, 0),
            ZELKM_OK);
  world.given.label = "of the token";
}

/** NSS has tokens without a PIN. */
void nameTokenWithoutPin(World& world) {
  static const cms::TemporaryFolder folder;
  static const cms::CommandResult made =
      cms::run("certutil -N --empty-password -d sql:" + folder.path(""));
  EXPECT_EQ(made.exitCode, 0) << made.output;
  world.given.locatorType = KEYDB_LOCATOR_TOKEN;
  world.given.moduleName = world.keep("libsoftokn3.so?args=configdir='sql:" + folder.path("") +
                                      "' certPrefix='' keyPrefix='' secmod='secmod.db' flags=");
  world.given.tokenLabel = "NSS Certificate DB";
}

}  // namespace

std::vector<Troubles> troublesOfTokens() {
  return {
      {"Operations on the handle of a token",
       // No token knows a default key.
       without(operationsOnEntries(), {"ZELKM_GetDefaultKeyItem"}),
       {{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED, "the token fails", fail},
        {ZELKM_ERR_NO_TOKEN_PRESENT, "the token was pulled out", pullOut}}},

      {nullptr,
       {"ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwdX", "ZELKM_IsPasswordRequired"},
       {{ZELKM_ERR_NULL_PARAMETER, "a token: the name of the module or the token is missing",
         [](World& w) {
           nameToken(w);
           w.given.tokenLabel = nullptr;
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED,
         "a token: there is no such module, or it is none",
         [](World& w) {
           nameToken(w);
           w.given.moduleName = "/no/such/module.so";
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST, "a token: no token has the label",
         [](World& w) {
           nameToken(w);
           w.given.tokenLabel = "no such token";
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT,
         "a token: its module cannot be used by several threads",
         [](World& w) {
           nameToken(w);
           answer(w, "C_Initialize", CKR_CANT_LOCK);
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED, "a token: its module fails",
         [](World& w) {
           nameToken(w);
           answer(w, "C_GetSlotList", CKR_FUNCTION_FAILED);
         }},
        {ZELKM_ERR_NO_TOKEN_PRESENT, "a token: it was pulled out",
         [](World& w) {
           nameToken(w);
           answer(w, "C_GetSlotList", CKR_DEVICE_REMOVED);
         }}}},

      {nullptr,
       {"ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwdX"},
       {{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED, "a token: it wants a PIN",
         [](World& w) {
           nameToken(w);
           w.given.password = nullptr;
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED,
         "a token: it wants no PIN, and one is given", nameTokenWithoutPin},
        {ZELKM_ERR_DATABASE_INVALID_PASSWORD, "a token: the PIN is wrong",
         [](World& w) {
           nameToken(w);
           w.given.password = token::kWrongPin;
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED, "a token: the PIN is locked",
         [](World& w) { login(w, CKR_PIN_LOCKED); }},
        {ZELKM_ERR_PASSWORD_EXPIRATION_TIME, "a token: the PIN has expired",
         [](World& w) { login(w, CKR_PIN_EXPIRED); }},
        {ZELKM_ERR_NOT_INITIALIZED, "a token: its PIN was never set",
         [](World& w) { login(w, CKR_USER_PIN_NOT_INITIALIZED); }}}},

      {nullptr,
       {"ZELKM_ChangeKeyDbPwdX"},
       {{ZELKM_ERR_NEW_PASSWORD, "a token: it does not take the new PIN",
         [](World& w) { changePin(w, CKR_PIN_INVALID); }},
        {ZELKM_ERR_PWD_TOO_SHORT, "a token: the new PIN is too short for it",
         [](World& w) {
           changePin(w, CKR_PIN_LEN_RANGE);
           w.given.newPassword = "abc";
         }}}},

      {nullptr,
       {"ZELKM_GetCryptoTokenLabelList"},
       {{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, "there is no such module, or it is none",
         [](World& w) { w.given.moduleName = "/no/such/module.so"; }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED, "the module fails",
         [](World& w) {
           nameToken(w);
           answer(w, "C_GetSlotList", CKR_FUNCTION_FAILED);
         }}}},

      {nullptr,
       {"ZELKM_SetSecondaryKeyDb"},
       {{ZELKM_ERR_INVALID_DATABASE_TYPE, "what is lent is a token",
         [](World& w) {
           openToken(w);
           w.secondary = w.handle;
         }},
        {ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER, "it is lent to something else than a token",
         openSecondary}}},

      {nullptr,
       {"ZELKM_UnsetSecondaryKeyDb"},
       {{ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER, "the handle is not a token's", [](World&) {}},
        {ZELKM_ERR_NO_SECONDARY_KEYDB, "nothing is lent to the token", openToken}}},

      {nullptr,
       {"ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_InsertKey"},
       {{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT, "a token: it has no default key",
         [](World& w) {
           openToken(w);
           w.given.makeDefault = 1;
         }}}},

      {nullptr,
       {"ZELKM_ExportKeys"},
       {{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "a token: its private key does not leave it",
         exportFromToken}}},

      {nullptr,
       {"ZELKM_GetDefaultKeyItem"},
       {{ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL, "a token: it has no default key", openToken}}},

      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_InsertReqKey", "ZELKM_StoreCACert", "ZELKM_CreateSelfSignedCert",
        "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReq",
        "ZELKM_CreateNewCertReqSigExt"},
       {{ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED, "a token: it takes no such object",
         [](World& w) {
           openToken(w);
           answer(w, "C_CreateObject", CKR_TOKEN_WRITE_PROTECTED);
         }}}},
  };
}

}  // namespace zel::km::errors
