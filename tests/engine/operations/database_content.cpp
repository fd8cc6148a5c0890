#include "tests/engine/operations/database_content.h"

#include "tests/engine/operations/database.h"

namespace zel::km {

namespace {

sys::Bytes decrypted(const ZELKMEPKIItem* epki, const char* password) {
  if (epki == nullptr) return {};
  ZELKMPrivKeyInfoItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki, password, &item), ZELKM_OK);
  sys::Bytes key = bytesOf(item->berData, item->berDataLength);
  ZELKM_FreePrivKeyInfoItem(item);
  return key;
}

EntryView viewOfKey(int handle, const std::string& label, const char* password) {
  ZELKMKeyItem* found = nullptr;
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle, label.c_str(), &found), ZELKM_OK) << label;
  const KeyItem item(found);
  EntryView view{.label = item->label};
  for (const ZELKMCertItemList* node = item->certList; node != nullptr && node->item != nullptr;
       node = node->next) {
    view.chain.push_back(bytesOf(node->item->certDer, node->item->certDerLength));
  }
  view.privateKey = decrypted(item->hasPrivateKey == 1 ? item->epki : nullptr, password);
  view.trusted = item->booleanValue1 == 1;
  view.isDefault = item->booleanValue2 == 1;
  return view;
}

EntryView viewOfRequest(int handle, const std::string& label, const char* password) {
  ZELKMReqKeyItem* found = nullptr;
  EXPECT_EQ(ZELKM_GetReqKeyItemByLabel(handle, label.c_str(), &found), ZELKM_OK) << label;
  const RequestItem item(found);
  EntryView view{.label = item->label};
  view.request = bytesOf(item->certReq->berData, item->certReq->berDataLength);
  view.privateKey = decrypted(item->epki, password);
  return view;
}

}  // namespace

void PrintTo(const EntryView& entry, std::ostream* out) {
  *out << entry.label << " chain of " << entry.chain.size() << ", key of "
       << entry.privateKey.size() << " bytes, request of " << entry.request.size() << " bytes, "
       << (entry.trusted ? "trusted " : "") << (entry.isDefault ? "default" : "");
}

std::vector<EntryView> contentOf(int handle, const char* password) {
  std::vector<EntryView> content;
  for (const std::string& label : labelsOf(handle, ZELKM_GetKeyDbLabelList)) {
    content.push_back(viewOfKey(handle, label, password));
  }
  for (const std::string& label : labelsOf(handle, ZELKM_GetReqKeyDbLabelList)) {
    content.push_back(viewOfRequest(handle, label, password));
  }
  return content;
}

}  // namespace zel::km
