#include "bridge/kmlib/zelkm.h"

// The operations that are not built yet. docs/engine.md lists them too.

static constexpr int kNotBuilt = ZELKM_ERR_UNSUPPORTED_OPTION;

int ZELKM_Kyr2Kdb(const char*, const char*, const char*, const char*) { return kNotBuilt; }

int ZELKM_Kdb2Kyr(const char*, const char*, const char*, const char*) { return kNotBuilt; }

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
