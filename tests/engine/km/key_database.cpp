#include "tests/engine/km/key_database.h"

#include <fstream>
#include <iterator>

namespace zel::km {

KeyDatabaseTest::KeyDatabaseTest() {
  EXPECT_EQ(ZELKM_CreateNewKeyDb(file_.c_str(), kPassword, 0, &handle_), ZELKM_OK);
}

KeyDatabaseTest::~KeyDatabaseTest() { ZELKM_CloseKeyDb(handle_); }

sys::Bytes KeyDatabaseTest::bytesOf(const std::string& file) const {
  std::ifstream content(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(content), std::istreambuf_iterator<char>()};
}

int KeyDatabaseTest::openAndClose(const char* password) const {
  int handle = 0;
  const int code = ZELKM_OpenKeyDb(file_.c_str(), password, &handle);
  if (code == ZELKM_OK) {
    EXPECT_GT(handle, 0);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
  }
  return code;
}

std::vector<std::string> keyLabelsOf(int handle) {
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(handle, &list), ZELKM_OK);
  std::vector<std::string> labels;
  for (const ZELKMLabelList* node = list; node != nullptr; node = node->next) {
    labels.emplace_back(node->label);
  }
  ZELKM_FreeLabelList(list);
  return labels;
}

}  // namespace zel::km
