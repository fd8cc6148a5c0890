#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "engine/cms/pem.h"
#include "tests/engine/errors/faults.h"
#include "tests/engine/errors/provocation.h"

// Certificate stores: what they do not have, and folders that are not the user's alone.

namespace zel::km::errors {

namespace {

namespace fs = std::filesystem;

/** A home folder of its own for as long as a world lives. */
struct Home {
  Home() = default;
  ~Home() {
    std::error_code none;
    fs::permissions(store(), fs::perms::owner_all, none);
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  cms::TemporaryFolder folder;
  cms::HomeVariable variable{folder.path("").c_str()};

  std::string store() const { return folder.path(".dotnet/corefx/cryptography/x509stores/my"); }
};

/** Goes on with a store in the place of the key database file. */
Home& nameStore(World& world) {
  auto home = std::make_shared<Home>();
  world.keepAlive(home);
  world.given.locatorType = KEYDB_LOCATOR_CERTIFICATE_STORE;
  world.given.tokenLabel = "CurrentUser/My";
  world.given.password = nullptr;
  return *home;
}

/** Goes on with the store's handle in the place of the database's. */
Home& openStore(World& world) {
  Home& home = nameStore(world);
  ZELKM_CloseKeyDb(world.handle);
  const KeyDbLocator locator = world.locator();
  EXPECT_EQ(ZELKM_OpenKeyDbX(&locator, &world.handle), ZELKM_OK);
  world.given.password.reset();
  return home;
}

/** The same with "server" in the store, a key that stands for any. */
Home& fillStore(World& world) {
  Home& home = openStore(world);
  EXPECT_EQ(
      ZELKM_CreateSelfSignedCert(world.handle, "server", 0, 3, 256, world.name(), 30, nullptr, 0),
      ZELKM_OK);
  return home;
}

void letOthersWrite(World& world) { fs::permissions(fillStore(world).store(), fs::perms::all); }

/** The store may be read, and nobody may write to it. */
void letAllReadOnly(World& world) {
  const Home& home = fillStore(world);
  constexpr fs::perms kRead = fs::perms::owner_read;
  constexpr fs::perms kSearch = fs::perms::owner_exec;
  fs::permissions(home.folder.path(""), kRead | kSearch);
  for (const auto& entry : fs::recursive_directory_iterator(home.folder.path(""))) {
    fs::permissions(entry.path(), entry.is_directory() ? kRead | kSearch : kRead);
  }
  faults::bindByModes();
}

/** Puts two certificates in one file, the first of them the other's. */
void shareAFile(World& world) {
  const Home& home = openStore(world);
  fs::create_directories(home.store());
  sys::Bytes both =
      cms::encodePem(cms::kCertificateArmour, materials().other.certificate()).value();
  const sys::Bytes second = cms::encodePem(cms::kCertificateArmour, materials().server).value();
  both.insert(both.end(), second.begin(), second.end());
  home.folder.write(".dotnet/corefx/cryptography/x509stores/my/both.pfx", both);
  world.given.label = "Other";
}

void insertStranger(World& world) {
  openStore(world);
  const sys::Bytes& certificate = materials().stranger.certificate();
  EXPECT_EQ(ZELKM_StoreCACert(world.handle, certificate.data(),
                              static_cast<uint32_t>(certificate.size()), "there already"),
            ZELKM_OK);
}

}  // namespace

std::vector<Troubles> troublesOfCertificateStores() {
  return {
      {nullptr,
       {"ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwdX", "ZELKM_IsPasswordRequired"},
       {{ZELKM_ERR_NULL_PARAMETER, "a certificate store: its name is missing",
         [](World& w) {
           nameStore(w);
           w.given.tokenLabel = nullptr;
         }},
        {ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST, "no certificate store has the name",
         [](World& w) {
           nameStore(w);
           w.given.tokenLabel = "CurrentUser/None";
         }}}},

      {nullptr,
       {"ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwdX"},
       {{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED,
         "a certificate store: it has no password, and one is given",
         [](World& w) {
           nameStore(w);
           w.given.password = kPassword;
         }}}},

      {nullptr,
       {"ZELKM_OpenKeyDbX"},
       {{ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "a certificate store: others may write to its folder",
         [](World& w) {
           const Home& home = nameStore(w);
           fs::create_directories(home.store());
           fs::permissions(home.store(), fs::perms::all);
         }}}},

      {"Operations on the handle of a certificate store",
       {"ZELKM_GetKeyDbLabelList", "ZELKM_GetKeyItemByLabel", "ZELKM_GetKeyItemListByLabel",
        "ZELKM_GetKeyItemsByPublicKey", "ZELKM_IsPrivateKeyPresent", "ZELKM_InsertKey",
        "ZELKM_DeleteKey", "ZELKM_SetTrustStatus", "ZELKM_CreateSelfSignedCert",
        "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_StoreCACert", "ZELKM_ExportCert",
        "ZELKM_RenewCert", "ZELKM_CheckCertAsRenewal", "ZELKM_ValidateCertChain",
        "ZELKM_ImportKeysFromPFXFile", "ZELKM_ExportKeys"},
       {{ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "others may write to the store's folder",
         letOthersWrite}}},

      {nullptr,
       {"ZELKM_InsertReqKey", "ZELKM_CreateNewCertReq", "ZELKM_CreateNewCertReqSigExt"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION, "a certificate store: it has no requests",
         [](World& w) { openStore(w); }}}},

      {nullptr,
       {"ZELKM_SetDefaultKeyByLabel"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION, "a certificate store: it has no default key",
         [](World& w) { fillStore(w); }}}},

      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION, "a certificate store: it has no default key",
         [](World& w) {
           openStore(w);
           w.given.makeDefault = 1;
         }}}},

      {nullptr,
       {"ZELKM_SetTrustStatus"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION,
         "a certificate store: only what lies in `CurrentUser/Root` is trusted",
         [](World& w) { fillStore(w); }}}},

      {nullptr,
       {"ZELKM_DeleteKey"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION, "a certificate store: the file holds other entries too",
         shareAFile},
        {ZELKM_ERR_FILE_REMOVE, "a certificate store: the file cannot be removed",
         letAllReadOnly}}},

      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_StoreCACert"},
       {{ZELKM_ERR_DATABASE_DUPLICATE_KEY, "a certificate store: the certificate is there already",
         insertStranger}}},

      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_StoreCACert", "ZELKM_CreateSelfSignedCert",
        "ZELKM_CreateSelfSignedCertSigExt"},
       {{ZELKM_ERR_PARAMETER, "a certificate store: the label holds U+0000",
         [](World& w) {
           openStore(w);
           w.given.label = "a\xC0\x80";
         }}}},

      {nullptr,
       {"ZELKM_InsertKey"},
       {{ZELKM_ERR_PKCS12_PWD_CORRUPTION, "a certificate store: the key is under a password",
         [](World& w) {
           openStore(w);
           w.given.key = materials().encryptedKey;
         }}}},
  };
}

}  // namespace zel::km::errors
