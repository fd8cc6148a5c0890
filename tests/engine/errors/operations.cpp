#include <array>

#include "tests/engine/errors/provocation.h"

// Every operation with arguments that are right, as far as nothing else is given.

namespace zel::km::errors {

namespace {

/** Calls an operation that hands a record out, and releases the record. */
template <auto release, typename Record, typename Call>
int handOut(const World& world, Call&& call) {
  Record* record = nullptr;
  const int code = call(world.output(record));
  if (record != nullptr) release(record);
  return code;
}

template <typename Call>
int handOutLabels(const World& world, Call&& call) {
  return handOut<ZELKM_FreeLabelList, ZELKMLabelList>(world, call);
}

template <typename Call>
int handOutHandle(const World& world, Call&& call) {
  int handle = 0;
  const int code = call(world.output(handle));
  if (handle != 0) ZELKM_CloseKeyDb(handle);
  return code;
}

template <typename Call>
int setFlag(const World& world, Call&& call) {
  unsigned char flag = 0;
  return call(world.output(flag));
}

template <typename Call>
int handOutBuffer(const World& world, Call&& call) {
  unsigned char* buffer = nullptr;
  uint32_t length = 0;
  const int code = call(world.output(buffer), world.output(length));
  ZELKM_Free(buffer);
  return code;
}

template <typename Call>
int withLocator(const World& world, Call&& call) {
  const KeyDbLocator locator = world.locator();
  return call(world.given.locator ? &locator : nullptr);
}

int setCryptoInfo(World& world) {
  if (!world.given.locator) return ZELKM_SetCryptoInfo(nullptr);
  auto* info = static_cast<ZELKMCryptoInfo*>(ZELKM_Malloc(sizeof(ZELKMCryptoInfo)));
  // Given away for good. The library cannot note that it keeps it when memory is exhausted.
  static std::array<ZELKMCryptoInfo*, 64> given;
  static std::size_t count = 0;
  given.at(count++) = info;
  info->firstFlag = world.given.cryptoFlags[0];
  info->secondFlag = world.given.cryptoFlags[1];
  return ZELKM_SetCryptoInfo(info);
}

int startTrace(World& world) {
  const int code = ZELKM_StartTrace(world.label("KM"), world.fileName(world.outFile), 0, 0);
  ZELKM_CleanAll();
  return code;
}

int createSelfSigned(World& w) {
  return ZELKM_CreateSelfSignedCert(w.handle, w.label("new"), w.given.makeDefault, w.given.version,
                                    w.given.keySize, w.name(), w.given.days, w.fileName(w.outFile),
                                    1);
}

int createSelfSignedSigExt(World& w) {
  const World::Block extensions = w.extensions();
  return ZELKM_CreateSelfSignedCertSigExt(w.handle, w.label("new"), w.given.makeDefault,
                                          w.given.version, w.given.keySize, w.name(), w.given.days,
                                          w.given.signatureAlgorithm, extensions.bytes,
                                          extensions.length, w.fileName(w.outFile), 1);
}

int createRequestSigExt(World& w) {
  const World::Block extensions = w.extensions();
  return ZELKM_CreateNewCertReqSigExt(w.handle, w.label("new"), w.given.keySize, w.name(),
                                      w.given.signatureAlgorithm, extensions.bytes,
                                      extensions.length, w.fileName(w.outFile), 0, 0);
}

int insertKey(World& w) {
  const World::Block certificate = w.document(materials().stranger.certificate());
  const World::Block key = w.key(materials().key);
  return ZELKM_InsertKey(w.handle, w.label("new"), certificate.length, certificate.bytes,
                         key.length, key.bytes, 0, w.given.makeDefault);
}

int insertRequest(World& w) {
  const World::Block request = w.document(materials().request);
  const World::Block key = w.key(materials().key);
  return ZELKM_InsertReqKey(w.handle, w.label("new"), request.length, request.bytes, key.length,
                            key.bytes);
}

int issue(World& w) {
  const World::Block request = w.document(materials().request);
  return ZELKM_IssueCert(w.handle, request.bytes, request.length, w.label("ca"), w.given.version,
                         w.given.serialNumber.value_or(""), w.given.days, w.fileName(w.outFile), 0,
                         0, 0);
}

int issueSig(World& w) {
  const World::Block request = w.document(materials().request);
  return ZELKM_IssueCertSig(w.handle, request.bytes, request.length, w.label("ca"), w.given.version,
                            w.given.serialNumber.value_or(""), w.given.days,
                            w.given.signatureAlgorithm, w.fileName(w.outFile), 0, 0, 0);
}

int exportKeys(World& w) {
  ZELKMLabelList labels{const_cast<char*>(w.label("server")), nullptr};
  return ZELKM_ExportKeys(w.handle, w.given.exportType, w.fileName(w.outFile),
                          w.password(kPfxPassword), &labels);
}

int decrypt(World& w) {
  const World::Block bytes = w.document(materials().encryptedKey);
  const ZELKMEPKIItem epki{const_cast<unsigned char*>(bytes.bytes), bytes.length, 0};
  return handOut<ZELKM_FreePrivKeyInfoItem, ZELKMPrivKeyInfoItem>(w, [&](auto out) {
    return ZELKM_GetPrivKeyInfoItemFromEPKIItem(w.given.locator ? &epki : nullptr,
                                                w.password(kPassword), out);
  });
}

int encrypt(World& w) {
  const World::Block key = w.document(materials().key);
  return handOut<ZELKM_FreeEPKIItem, ZELKMEPKIItem>(w, [&](auto out) {
    return ZELKM_GetEPKIItemFromPrivateKey(key.bytes, key.length, w.password(kPassword), out);
  });
}

int extractCertificates(World& w) {
  const World::Block message = w.document(materials().server);
  return handOut<ZELKM_FreeCertItemList, ZELKMCertItemList>(w, [&](auto out) {
    return ZELKM_ExtractCertListFromPKCS7Data(message.bytes, message.length, out);
  });
}

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all = {
      // Library-wide
      {"ZELKM_Init", [](World&) { return ZELKM_Init(); }},
      {"ZELKM_CleanAll", [](World&) { return ZELKM_CleanAll(); }},
      {"ZELKM_StartTrace", startTrace},
      {"ZELKM_SetCryptoInfo", setCryptoInfo},
      {"ZELKM_GetMaxCryptoKeySize", nullptr},
      {"ZELKM_Malloc", nullptr},
      {"ZELKM_Realloc", nullptr},
      {"ZELKM_Free", nullptr},
      {"ZELKM_Strdup", nullptr},
      // Key database lifecycle
      {"ZELKM_CreateNewKeyDb",
       [](World& w) {
         return handOutHandle(w, [&](int* out) {
           return ZELKM_CreateNewKeyDb(w.fileName(w.newFile), w.password(kPassword),
                                       w.given.lifetime, out);
         });
       }},
      {"ZELKM_CreateNewKeyDbFIPS",
       [](World& w) {
         return handOutHandle(w, [&](int* out) {
           return ZELKM_CreateNewKeyDbFIPS(w.fileName(w.newFile), w.password("correct horse 1"),
                                           w.given.lifetime, out);
         });
       }},
      {"ZELKM_OpenKeyDb",
       [](World& w) {
         return handOutHandle(w, [&](int* out) {
           return ZELKM_OpenKeyDb(w.fileName(w.file), w.password(kPassword), out);
         });
       }},
      {"ZELKM_OpenKeyDbX",
       [](World& w) {
         return withLocator(w, [&](const KeyDbLocator* locator) {
           return handOutHandle(w, [&](int* out) { return ZELKM_OpenKeyDbX(locator, out); });
         });
       }},
      {"ZELKM_CloseKeyDb", [](World& w) { return ZELKM_CloseKeyDb(w.handle); }},
      {"ZELKM_ChangeKeyDbPwd",
       [](World& w) {
         return ZELKM_ChangeKeyDbPwd(w.fileName(w.file), w.password(kPassword), w.newPassword(),
                                     w.given.lifetime);
       }},
      {"ZELKM_ChangeKeyDbPwdX", [](World& w) { return withLocator(w, ZELKM_ChangeKeyDbPwdX); }},
      {"ZELKM_StashKeyDbPwd",
       [](World& w) { return ZELKM_StashKeyDbPwd(w.fileName(w.file), w.password(kPassword)); }},
      {"ZELKM_IsPasswordRequired",
       [](World& w) {
         return withLocator(w, [&](const KeyDbLocator* locator) {
           return setFlag(
               w, [&](unsigned char* out) { return ZELKM_IsPasswordRequired(locator, out); });
         });
       }},
      {"ZELKM_SetSecondaryKeyDb",
       [](World& w) { return ZELKM_SetSecondaryKeyDb(w.handle, w.secondary); }},
      {"ZELKM_UnsetSecondaryKeyDb", [](World& w) { return ZELKM_UnsetSecondaryKeyDb(w.handle); }},
      {"ZELKM_Kyr2Kdb",
       [](World& w) {
         return ZELKM_Kyr2Kdb(w.fileName(w.pfxFile), w.password(kPfxPassword), w.target(w.newFile),
                              w.newPassword());
       }},
      {"ZELKM_Kdb2Kyr",
       [](World& w) {
         return ZELKM_Kdb2Kyr(w.fileName(w.file), w.password(kPassword), w.target(w.outFile),
                              w.newPassword());
       }},
      // Labels and key items
      {"ZELKM_GetKeyDbLabelList",
       [](World& w) {
         return handOutLabels(w, [&](auto out) { return ZELKM_GetKeyDbLabelList(w.handle, out); });
       }},
      {"ZELKM_GetReqKeyDbLabelList",
       [](World& w) {
         return handOutLabels(w,
                              [&](auto out) { return ZELKM_GetReqKeyDbLabelList(w.handle, out); });
       }},
      {"ZELKM_GetCryptoTokenLabelList",
       [](World& w) {
         return handOutLabels(
             w, [&](auto out) { return ZELKM_GetCryptoTokenLabelList(w.given.moduleName, out); });
       }},
      {"ZELKM_GetKeyItemByLabel",
       [](World& w) {
         return handOut<ZELKM_FreeKeyItem, ZELKMKeyItem>(w, [&](auto out) {
           return ZELKM_GetKeyItemByLabel(w.handle, w.label("server"), out);
         });
       }},
      {"ZELKM_GetKeyItemListByLabel",
       [](World& w) {
         return handOut<ZELKM_FreeKeyItemList, ZELKMKeyItemList>(w, [&](auto out) {
           return ZELKM_GetKeyItemListByLabel(w.handle, w.label("server"), out);
         });
       }},
      {"ZELKM_GetKeyItemsByPublicKey",
       [](World& w) {
         const World::Block key = w.document(materials().publicKey);
         return handOut<ZELKM_FreeKeyItemList, ZELKMKeyItemList>(w, [&](auto out) {
           return ZELKM_GetKeyItemsByPublicKey(w.handle, key.length, key.bytes, out);
         });
       }},
      {"ZELKM_GetDefaultKeyItem",
       [](World& w) {
         return handOut<ZELKM_FreeKeyItem, ZELKMKeyItem>(
             w, [&](auto out) { return ZELKM_GetDefaultKeyItem(w.handle, out); });
       }},
      {"ZELKM_GetReqKeyItemByLabel",
       [](World& w) {
         return handOut<ZELKM_FreeReqKeyItem, ZELKMReqKeyItem>(w, [&](auto out) {
           return ZELKM_GetReqKeyItemByLabel(w.handle, w.label("pending"), out);
         });
       }},
      {"ZELKM_IsPrivateKeyPresent",
       [](World& w) {
         return setFlag(w, [&](unsigned char* out) {
           return ZELKM_IsPrivateKeyPresent(w.handle, w.label("server"), out);
         });
       }},
      {"ZELKM_InsertKey", insertKey},
      {"ZELKM_InsertReqKey", insertRequest},
      {"ZELKM_DeleteKey", [](World& w) { return ZELKM_DeleteKey(w.handle, w.label("server")); }},
      {"ZELKM_DeleteRequestKeyPair",
       [](World& w) { return ZELKM_DeleteRequestKeyPair(w.handle, w.label("pending")); }},
      {"ZELKM_SetDefaultKeyByLabel",
       [](World& w) { return ZELKM_SetDefaultKeyByLabel(w.handle, w.label("server")); }},
      {"ZELKM_SetTrustStatus",
       [](World& w) { return ZELKM_SetTrustStatus(w.handle, w.label("server"), 1); }},
      // Certificates and requests
      {"ZELKM_CreateSelfSignedCert", createSelfSigned},
      {"ZELKM_CreateSelfSignedCertSigExt", createSelfSignedSigExt},
      {"ZELKM_CreateNewCertReq",
       [](World& w) {
         return ZELKM_CreateNewCertReq(w.handle, w.label("new"), w.given.keySize, w.name(),
                                       w.fileName(w.outFile), 0, 0);
       }},
      {"ZELKM_CreateNewCertReqSigExt", createRequestSigExt},
      {"ZELKM_ReCreateCertReq",
       [](World& w) {
         return ZELKM_ReCreateCertReq(w.handle, w.label("pending"), w.fileName(w.outFile), 0, 0);
       }},
      {"ZELKM_ReCreateCertReqSig",
       [](World& w) {
         return ZELKM_ReCreateCertReqSig(w.handle, w.label("pending"), w.given.signatureAlgorithm,
                                         w.fileName(w.outFile), 0, 0);
       }},
      {"ZELKM_IssueCert", issue},
      {"ZELKM_IssueCertSig", issueSig},
      {"ZELKM_ReceiveCert",
       [](World& w) {
         const World::Block certificate = w.document(materials().issued);
         return ZELKM_ReceiveCert(w.handle, certificate.bytes, certificate.length, 0);
       }},
      {"ZELKM_StoreCACert",
       [](World& w) {
         const World::Block certificate = w.document(materials().stranger.certificate());
         return ZELKM_StoreCACert(w.handle, certificate.bytes, certificate.length, w.label("new"));
       }},
      {"ZELKM_ExportCert",
       [](World& w) {
         return ZELKM_ExportCert(w.handle, w.label("server"), w.fileName(w.outFile), 1);
       }},
      {"ZELKM_RenewCert",
       [](World& w) {
         const World::Block certificate = w.document(materials().renewal);
         return ZELKM_RenewCert(w.handle, certificate.bytes, certificate.length);
       }},
      {"ZELKM_CheckCertAsRenewal",
       [](World& w) {
         const World::Block certificate = w.document(materials().renewal);
         return setFlag(w, [&](unsigned char* out) {
           return ZELKM_CheckCertAsRenewal(w.handle, certificate.bytes, certificate.length, out);
         });
       }},
      {"ZELKM_ValidateCertChain",
       [](World& w) {
         const World::Block certificate = w.document(materials().server);
         return setFlag(w, [&](unsigned char* out) {
           return ZELKM_ValidateCertChain(w.handle, certificate.bytes, certificate.length, out);
         });
       }},
      {"ZELKM_GetUnsignedCertFromCert",
       [](World& w) {
         const World::Block certificate = w.document(materials().server);
         return handOutBuffer(w, [&](unsigned char** buffer, uint32_t* length) {
           return ZELKM_GetUnsignedCertFromCert(certificate.bytes, certificate.length, buffer,
                                                length);
         });
       }},
      {"ZELKM_Base64DecodeFileToBuf",
       [](World& w) {
         return handOutBuffer(w, [&](unsigned char** buffer, uint32_t* length) {
           return ZELKM_Base64DecodeFileToBuf(w.fileName(w.textFile), buffer, length);
         });
       }},
      {"ZELKM_ExtractCertListFromPKCS7Data", extractCertificates},
      // Private keys and PKCS #12
      {"ZELKM_InitEPKIItem", nullptr},
      {"ZELKM_GetEPKIItemFromPrivateKey", encrypt},
      {"ZELKM_GetPrivKeyInfoItemFromEPKIItem", decrypt},
      {"ZELKM_ImportKeysFromPFXFile",
       [](World& w) {
         return ZELKM_ImportKeysFromPFXFile(w.handle, w.fileName(w.pfxFile),
                                            w.password(kPfxPassword));
       }},
      {"ZELKM_ExportKeys", exportKeys},
      // Release
      {"ZELKM_InitDNItem", nullptr},
      {"ZELKM_FreeDNItem", nullptr},
      {"ZELKM_FreeKeyItem", nullptr},
      {"ZELKM_FreeKeyItemList", nullptr},
      {"ZELKM_FreeCertItemList", nullptr},
      {"ZELKM_FreeLabelList", nullptr},
      {"ZELKM_FreeReqKeyItem", nullptr},
      {"ZELKM_FreeEPKIItem", nullptr},
      {"ZELKM_FreePrivKeyInfoItem", nullptr},
  };
  return all;
}

}  // namespace zel::km::errors
