#include "tests/engine/operations/database.h"

namespace zel::km {

Name name(const char* commonName, const char* organization, const char* country) {
  Name dn(static_cast<ZELKMDNItem*>(ZELKM_Malloc(sizeof(ZELKMDNItem))));
  ZELKMDNItem* record = dn.get();
  ZELKM_InitDNItem(&record);
  const auto copy = [](const char* text) { return *text == '\0' ? nullptr : ZELKM_Strdup(text); };
  dn->cn = copy(commonName);
  dn->o = copy(organization);
  dn->c = copy(country);
  return dn;
}

Labels::Labels(std::initializer_list<const char*> labels) {
  ZELKMLabelList** end = &head_;
  for (const char* label : labels) {
    *end = static_cast<ZELKMLabelList*>(ZELKM_Malloc(sizeof(ZELKMLabelList)));
    (*end)->label = ZELKM_Strdup(label);
    (*end)->next = nullptr;
    end = &(*end)->next;
  }
}

DatabaseTest::DatabaseTest() {
  ZELKM_Init();
  EXPECT_EQ(ZELKM_CreateNewKeyDb(path("keys.kdb").c_str(), kPassword, 0, &handle_), ZELKM_OK);
}

DatabaseTest::~DatabaseTest() { ZELKM_CloseKeyDb(handle_); }

int DatabaseTest::selfSign(const char* label, bool makeDefault, int keySize) {
  return ZELKM_CreateSelfSignedCert(handle_, label, makeDefault ? 1 : 0, 3, keySize,
                                    name(label, "Sea", "DE").get(), 30, nullptr, 0);
}

KeyItem DatabaseTest::item(const char* label) {
  ZELKMKeyItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle_, label, &item), ZELKM_OK) << label;
  return KeyItem(item);
}

int DatabaseTest::codeOfItem(const char* label) {
  ZELKMKeyItem* item = nullptr;
  const int code = ZELKM_GetKeyItemByLabel(handle_, label, &item);
  EXPECT_EQ(item != nullptr, code == ZELKM_OK);
  ZELKM_FreeKeyItem(item);
  return code;
}

std::vector<std::string> DatabaseTest::keyLabels() {
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle_, &list), ZELKM_OK);
  std::vector<std::string> labels;
  for (const ZELKMLabelList* node = list; node != nullptr && node->label != nullptr;
       node = node->next) {
    labels.emplace_back(node->label);
  }
  ZELKM_FreeLabelList(list);
  return labels;
}

}  // namespace zel::km
