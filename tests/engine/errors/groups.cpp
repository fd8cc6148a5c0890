#include <algorithm>
#include <string_view>

#include "tests/engine/errors/provocation.h"

namespace zel::km::errors {

Names operationsOnEntries() {
  return {"ZELKM_GetKeyDbLabelList",
          "ZELKM_GetReqKeyDbLabelList",
          "ZELKM_GetKeyItemByLabel",
          "ZELKM_GetKeyItemListByLabel",
          "ZELKM_GetKeyItemsByPublicKey",
          "ZELKM_GetDefaultKeyItem",
          "ZELKM_GetReqKeyItemByLabel",
          "ZELKM_IsPrivateKeyPresent",
          "ZELKM_InsertKey",
          "ZELKM_InsertReqKey",
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
          "ZELKM_ReceiveCert",
          "ZELKM_StoreCACert",
          "ZELKM_ExportCert",
          "ZELKM_RenewCert",
          "ZELKM_CheckCertAsRenewal",
          "ZELKM_ValidateCertChain",
          "ZELKM_ImportKeysFromPFXFile",
          "ZELKM_ExportKeys"};
}

Names operationsOnHandles() {
  Names names = {"ZELKM_CloseKeyDb", "ZELKM_SetSecondaryKeyDb", "ZELKM_UnsetSecondaryKeyDb"};
  const Names onEntries = operationsOnEntries();
  names.insert(names.end(), onEntries.begin(), onEntries.end());
  return names;
}

Names without(Names names, const std::vector<std::string_view>& left) {
  std::erase_if(names, [&](const char* name) { return std::ranges::count(left, name) != 0; });
  return names;
}

}  // namespace zel::km::errors
