#include <gtest/gtest.h>

#include <cstring>

#include "bridge/kmlib/zelkm.h"

namespace {

TEST(Releases, IgnoreNull) {
  ZELKM_FreeDNItem(nullptr);
  ZELKM_FreeKeyItem(nullptr);
  ZELKM_FreeKeyItemList(nullptr);
  ZELKM_FreeCertItemList(nullptr);
  ZELKM_FreeLabelList(nullptr);
  ZELKM_FreeReqKeyItem(nullptr);
  ZELKM_FreeEPKIItem(nullptr);
  ZELKM_FreePrivKeyInfoItem(nullptr);
  ZELKM_InitDNItem(nullptr);
  ZELKM_InitEPKIItem(nullptr);
}

TEST(Releases, TakeNodesThatHoldNothing) {
  auto* list = static_cast<ZELKMLabelList*>(ZELKM_Malloc(sizeof(ZELKMLabelList)));
  list->label = nullptr;
  list->next = static_cast<ZELKMLabelList*>(ZELKM_Malloc(sizeof(ZELKMLabelList)));
  list->next->label = ZELKM_Strdup("after a null label");
  list->next->next = nullptr;
  ZELKM_FreeLabelList(list);
}

TEST(Initialisers, ClearTheRecordBehindTheAddress) {
  ZELKMDNItem dn;
  std::memset(&dn, 0xA5, sizeof dn);
  ZELKMDNItem* dnPointer = &dn;
  ZELKM_InitDNItem(&dnPointer);
  EXPECT_EQ(dnPointer, &dn);
  const ZELKMDNItem cleared{};
  EXPECT_EQ(std::memcmp(&dn, &cleared, sizeof dn), 0);

  ZELKMEPKIItem epki;
  std::memset(&epki, 0xA5, sizeof epki);
  ZELKMEPKIItem* epkiPointer = &epki;
  ZELKM_InitEPKIItem(&epkiPointer);
  EXPECT_EQ(epki.berData, nullptr);
  EXPECT_EQ(epki.berDataLength, 0U);
}

}  // namespace
