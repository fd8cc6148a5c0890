#include "bridge/kmlib/zelkm.h"

// The operations that are not built yet. docs/engine.md lists them too.

static constexpr int kNotBuilt = ZELKM_ERR_UNSUPPORTED_OPTION;

int ZELKM_Kyr2Kdb(const char*, const char*, const char*, const char*) { return kNotBuilt; }

int ZELKM_Kdb2Kyr(const char*, const char*, const char*, const char*) { return kNotBuilt; }

int ZELKM_GetReqKeyItemByLabel(int, const char*, ZELKMReqKeyItem**) { return kNotBuilt; }

int ZELKM_InsertKey(int, const char*, uint32_t, const unsigned char*, uint32_t,
                    const unsigned char*, unsigned char, unsigned char) {
  return kNotBuilt;
}

int ZELKM_InsertReqKey(int, const char*, uint32_t, const unsigned char*, uint32_t,
                       const unsigned char*) {
  return kNotBuilt;
}

int ZELKM_DeleteKey(int, const char*) { return kNotBuilt; }

int ZELKM_DeleteRequestKeyPair(int, const char*) { return kNotBuilt; }

int ZELKM_SetDefaultKeyByLabel(int, const char*) { return kNotBuilt; }

int ZELKM_SetTrustStatus(int, const char*, unsigned char) { return kNotBuilt; }

int ZELKM_CreateNewCertReq(int, const char*, int, const ZELKMDNItem*, const char*, int64_t,
                           int64_t) {
  return kNotBuilt;
}

int ZELKM_CreateNewCertReqSigExt(int, const char*, int, const ZELKMDNItem*, int,
                                 const unsigned char*, uint32_t, const char*, int64_t, int64_t) {
  return kNotBuilt;
}

int ZELKM_ReCreateCertReq(int, const char*, const char*, int64_t, int64_t) { return kNotBuilt; }

int ZELKM_ReCreateCertReqSig(int, const char*, int, const char*, int64_t, int64_t) {
  return kNotBuilt;
}

int ZELKM_IssueCert(int, const unsigned char*, uint32_t, const char*, int, const char*, int,
                    const char*, unsigned char, int64_t, int64_t) {
  return kNotBuilt;
}

int ZELKM_IssueCertSig(int, const unsigned char*, uint32_t, const char*, int, const char*, int, int,
                       const char*, unsigned char, int64_t, int64_t) {
  return kNotBuilt;
}

int ZELKM_ReceiveCert(int, const unsigned char*, uint32_t, unsigned char) { return kNotBuilt; }

int ZELKM_StoreCACert(int, const unsigned char*, uint32_t, const char*) { return kNotBuilt; }

int ZELKM_RenewCert(int, const unsigned char*, uint32_t) { return kNotBuilt; }

int ZELKM_CheckCertAsRenewal(int, const unsigned char*, uint32_t, unsigned char*) {
  return kNotBuilt;
}

int ZELKM_ValidateCertChain(int, const unsigned char*, uint32_t, unsigned char*) {
  return kNotBuilt;
}

int ZELKM_Base64DecodeFileToBuf(const char*, unsigned char**, uint32_t*) { return kNotBuilt; }

int ZELKM_ExtractCertListFromPKCS7Data(const unsigned char*, uint32_t, ZELKMCertItemList**) {
  return kNotBuilt;
}

int ZELKM_GetEPKIItemFromPrivateKey(const unsigned char*, uint32_t, const char*, ZELKMEPKIItem**) {
  return kNotBuilt;
}

int ZELKM_GetPrivKeyInfoItemFromEPKIItem(const ZELKMEPKIItem*, const char*,
                                         ZELKMPrivKeyInfoItem**) {
  return kNotBuilt;
}

int ZELKM_ImportKeysFromPFXFile(int, const char*, const char*) { return kNotBuilt; }
