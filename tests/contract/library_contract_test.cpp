#include <cstring>

#include "tests/contract/contract.h"

// The library as a whole, its allocator, and the release of what it hands out.

namespace zel::contract {
namespace {

TEST_F(Contract, StartsAgainAfterItWasCleaned) {
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(ZELKM_Init(), ZELKM_OK);
    EXPECT_EQ(ZELKM_CleanAll(), ZELKM_OK);
  }
}

TEST_F(Contract, TracesIntoTheFileNamed) {
  EXPECT_EQ(ZELKM_StartTrace(Loan("KM"), Loan(newFile("trace")), 1, 1000), ZELKM_OK);
  EXPECT_EQ(ZELKM_Init(), ZELKM_OK);
  EXPECT_EQ(ZELKM_CleanAll(), ZELKM_OK);
}

TEST_F(Contract, KeepsTheCryptoSettings) {
  auto* info = static_cast<ZELKMCryptoInfo*>(ZELKM_Malloc(sizeof(ZELKMCryptoInfo)));
  ASSERT_NE(info, nullptr);
  info->firstFlag = 0;
  info->secondFlag = 0;
  EXPECT_EQ(ZELKM_SetCryptoInfo(info), ZELKM_OK);
}

TEST_F(Contract, AllowsKeysOfSomeSize) { EXPECT_GE(ZELKM_GetMaxCryptoKeySize(1), 2048U); }

TEST_F(Contract, ResizesABlockWithItsContent) {
  auto* block = static_cast<char*>(ZELKM_Malloc(4));
  ASSERT_NE(block, nullptr);
  std::memcpy(block, "abc", 4);
  block = static_cast<char*>(ZELKM_Realloc(block, 100'000));
  ASSERT_NE(block, nullptr);
  EXPECT_STREQ(block, "abc");
  ZELKM_Free(block);
}

TEST_F(Contract, CopiesTexts) {
  char* copy = ZELKM_Strdup(Loan("a text"));
  EXPECT_STREQ(copy, "a text");
  ZELKM_Free(copy);
}

TEST_F(Contract, ClearsTheRecordsOfItsCaller) {
  auto* dn = static_cast<ZELKMDNItem*>(allocateAsCaller(sizeof(ZELKMDNItem)));
  std::memset(dn, 0xEE, sizeof *dn);
  ZELKM_InitDNItem(&dn);
  const ZELKMDNItem emptyName{};
  EXPECT_EQ(std::memcmp(dn, &emptyName, sizeof *dn), 0);
  ZELKM_FreeDNItem(dn);

  auto* epki = static_cast<ZELKMEPKIItem*>(ZELKM_Malloc(sizeof(ZELKMEPKIItem)));
  std::memset(epki, 0xEE, sizeof *epki);
  ZELKM_InitEPKIItem(&epki);
  const ZELKMEPKIItem emptyKey{};
  EXPECT_EQ(std::memcmp(epki, &emptyKey, sizeof *epki), 0);
  ZELKM_FreeEPKIItem(epki);
}

TEST_F(Contract, ReleasesNothingForNull) {
  ZELKM_Free(nullptr);
  ZELKM_FreeDNItem(nullptr);
  ZELKM_FreeKeyItem(nullptr);
  ZELKM_FreeKeyItemList(nullptr);
  ZELKM_FreeCertItemList(nullptr);
  ZELKM_FreeLabelList(nullptr);
  ZELKM_FreeReqKeyItem(nullptr);
  ZELKM_FreeEPKIItem(nullptr);
  ZELKM_FreePrivKeyInfoItem(nullptr);
}

TEST_F(Contract, HandsOutBuffersThatFreeAndItsOwnReleaseTake) {
  for (void (*release)(void*) : {ZELKM_Free, releaseAsCaller}) {
    const Loan certificate(given_.certificate);
    unsigned char* buffer = nullptr;
    std::uint32_t length = 0;
    ASSERT_EQ(
        ZELKM_GetUnsignedCertFromCert(certificate.bytes(), certificate.length(), &buffer, &length),
        ZELKM_OK);
    EXPECT_NE(buffer, nullptr);
    EXPECT_GT(length, 0U);
    release(buffer);

    buffer = nullptr;
    length = 0;
    ASSERT_EQ(ZELKM_Base64DecodeFileToBuf(Loan(given_.textFile), &buffer, &length), ZELKM_OK);
    EXPECT_NE(buffer, nullptr);
    EXPECT_GT(length, 0U);
    release(buffer);
  }
}

}  // namespace
}  // namespace zel::contract
