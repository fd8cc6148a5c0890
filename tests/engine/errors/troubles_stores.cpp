#include <filesystem>

#include "tests/engine/errors/faults.h"
#include "tests/engine/errors/provocation.h"

// What may happen to any operation; handles; and what is not built, or not installed.

namespace zel::km::errors {

namespace {

/** Every operation that needs memory. */
Names operationsThatAllocate() {
  Names names = {"ZELKM_StartTrace",
                 "ZELKM_CreateNewKeyDb",
                 "ZELKM_CreateNewKeyDbFIPS",
                 "ZELKM_OpenKeyDb",
                 "ZELKM_OpenKeyDbX",
                 "ZELKM_ChangeKeyDbPwd",
                 "ZELKM_ChangeKeyDbPwdX",
                 "ZELKM_StashKeyDbPwd",
                 "ZELKM_IsPasswordRequired",
                 "ZELKM_SetCryptoInfo",
                 "ZELKM_Kyr2Kdb",
                 "ZELKM_Kdb2Kyr",
                 "ZELKM_GetUnsignedCertFromCert",
                 "ZELKM_Base64DecodeFileToBuf",
                 "ZELKM_ExtractCertListFromPKCS7Data",
                 "ZELKM_GetEPKIItemFromPrivateKey",
                 "ZELKM_GetPrivKeyInfoItemFromEPKIItem"};
  const Names onEntries = operationsOnEntries();
  names.insert(names.end(), onEntries.begin(), onEntries.end());
  return names;
}

/** The database looks changed, so that every operation has to examine it first, however late. */
void failCryptography(World& world) {
  std::filesystem::last_write_time(world.file, std::filesystem::file_time_type::clock::now());
  faults::failCryptography();
}

}  // namespace

std::vector<Troubles> troublesOfStores() {
  return {
      {"Any operation that needs memory",
       operationsThatAllocate(),
       {{ZELKM_ERR_MEMORY_ALLOCATE, "memory is exhausted",
         [](World&) { faults::failAllocation(); }}}},

      {nullptr,
       {"ZELKM_CreateNewKeyDb",
        "ZELKM_CreateNewKeyDbFIPS",
        "ZELKM_GetKeyDbLabelList",
        "ZELKM_GetReqKeyDbLabelList",
        "ZELKM_GetKeyItemByLabel",
        "ZELKM_GetKeyItemListByLabel",
        "ZELKM_GetDefaultKeyItem",
        "ZELKM_GetReqKeyItemByLabel",
        "ZELKM_IsPrivateKeyPresent",
        "ZELKM_DeleteKey",
        "ZELKM_DeleteRequestKeyPair",
        "ZELKM_SetDefaultKeyByLabel",
        "ZELKM_SetTrustStatus",
        "ZELKM_CreateSelfSignedCert",
        "ZELKM_CreateSelfSignedCertSigExt",
        "ZELKM_CreateNewCertReq",
        "ZELKM_CreateNewCertReqSigExt",
        "ZELKM_ReCreateCertReq",
        "ZELKM_ReCreateCertReqSig",
        "ZELKM_IssueCert",
        "ZELKM_IssueCertSig",
        "ZELKM_ExportCert",
        "ZELKM_RenewCert",
        "ZELKM_GetEPKIItemFromPrivateKey",
        "ZELKM_ExportKeys",
        "ZELKM_GetKeyItemsByPublicKey"},
       {{ZELKM_ERR_CRYPTO, "OpenSSL does not do its part", failCryptography}}},

      {nullptr,
       {"ZELKM_OpenKeyDb", "ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX",
        "ZELKM_StashKeyDbPwd", "ZELKM_IsPasswordRequired", "ZELKM_ReceiveCert", "ZELKM_StoreCACert",
        "ZELKM_CheckCertAsRenewal", "ZELKM_ValidateCertChain", "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_CRYPTO_DIGEST, "OpenSSL does not do its part: it makes no digest",
         failCryptography}}},

      {"Operations on a handle",
       operationsOnHandles(),
       {{ZELKM_ERR_INVALID_DB_HANDLE, "the handle names nothing that is open",
         [](World& w) { ZELKM_CloseKeyDb(w.handle); }}}},

      {nullptr,
       {"ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwdX"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION, "not built yet: locators of type 3",
         [](World& w) { w.given.locatorType = KEYDB_LOCATOR_WEBDB; }}}},

      {nullptr,
       {"ZELKM_SetCryptoInfo"},
       {{ZELKM_ERR_UNSUPPORTED_OPTION, "OpenSSL's validated `fips` provider is not installed",
         [](World& w) { w.given.cryptoFlags[1] = 1; }}}},
  };
}

}  // namespace zel::km::errors
