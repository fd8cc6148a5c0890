#include "tests/engine/token/test_token.h"

#include <algorithm>

namespace zel::km::token {

namespace {

std::vector<std::string> taken(ZELKMLabelList* list) {
  std::vector<std::string> found;
  for (const ZELKMLabelList* node = list; node != nullptr; node = node->next) {
    found.emplace_back(node->label);
  }
  ZELKM_FreeLabelList(list);
  return found;
}

}  // namespace

TokenTest::TokenTest() {
  if (GetParam() == Vendor::nss) {
    moduleName_ = NssDatabase(folder_).moduleName();
    label_ = kNssLabel;
    return;
  }
  SoftHsm(folder_).addToken(kSoftHsmLabel);
  moduleName_ = GetParam() == Vendor::softHsm ? kSoftHsmModule : ZEL_HOOKED_MODULE;
  label_ = kSoftHsmLabel;
}

TokenTest::~TokenTest() {
  for (const int handle : handles_) ZELKM_CloseKeyDb(handle);
}

KeyDbLocator TokenTest::locator(const char* pin) const {
  return tokenLocator(moduleName_, label_.c_str(), pin);
}

int TokenTest::open(const char* pin) {
  const KeyDbLocator named = locator(pin);
  int handle = 0;
  const int code = ZELKM_OpenKeyDbX(&named, &handle);
  if (code != ZELKM_OK) return -code;
  handles_.push_back(handle);
  return handle;
}

void TokenTest::close(int handle) {
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
  std::erase(handles_, handle);
}

KeyDbLocator tokenLocator(const std::string& moduleName, const char* label, const char* pin) {
  KeyDbLocator named{};
  named.type = KEYDB_LOCATOR_TOKEN;
  named.moduleName = moduleName.c_str();
  named.tokenLabel = label;
  named.password = pin;
  return named;
}

std::vector<std::string> labels(int (*operation)(int, ZELKMLabelList**), int handle) {
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(operation(handle, &list), ZELKM_OK);
  return taken(list);
}

std::vector<std::string> tokenLabels(const std::string& moduleName) {
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetCryptoTokenLabelList(moduleName.c_str(), &list), ZELKM_OK);
  return taken(list);
}

}  // namespace zel::km::token
