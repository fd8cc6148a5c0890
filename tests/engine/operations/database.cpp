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

std::vector<std::string> labelsOf(int handle, int (*listLabels)(int, ZELKMLabelList**)) {
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(listLabels(handle, &list), ZELKM_OK);
  std::vector<std::string> labels;
  for (const ZELKMLabelList* node = list; node != nullptr && node->label != nullptr;
       node = node->next) {
    labels.emplace_back(node->label);
  }
  ZELKM_FreeLabelList(list);
  return labels;
}

namespace {

/** The database of all tests, with the folder that it lies in. */
struct SharedDatabase {
  explicit SharedDatabase(const char* password) : path(folder.path("keys.kdb")) {
    ZELKM_Init();
    EXPECT_EQ(ZELKM_CreateNewKeyDb(path.c_str(), password, 0, &handle), ZELKM_OK);
  }
  ~SharedDatabase() { ZELKM_CloseKeyDb(handle); }
  SharedDatabase(const SharedDatabase&) = delete;
  SharedDatabase& operator=(const SharedDatabase&) = delete;

  cms::TemporaryFolder folder;
  std::string path;
  int handle = 0;
};

SharedDatabase& sharedDatabase(const char* password) {
  static SharedDatabase database(password);
  return database;
}

}  // namespace

DatabaseTest::DatabaseTest() : handle_(sharedDatabase(kPassword).handle) {
  for (const std::string& label : keyLabels()) ZELKM_DeleteKey(handle_, label.c_str());
  for (const std::string& label : requestLabels()) {
    ZELKM_DeleteRequestKeyPair(handle_, label.c_str());
  }
}

Reader::Reader(const std::string& path) {
  EXPECT_EQ(sqlite3_open(path.c_str(), &connection_), SQLITE_OK);
  EXPECT_EQ(
      sqlite3_exec(connection_, "BEGIN; SELECT count(*) FROM keys", nullptr, nullptr, nullptr),
      SQLITE_OK);
}

std::string DatabaseTest::databasePath() const { return sharedDatabase(kPassword).path; }

std::vector<std::string> DatabaseTest::keyLabels() {
  return labelsOf(handle_, ZELKM_GetKeyDbLabelList);
}

std::vector<std::string> DatabaseTest::requestLabels() {
  return labelsOf(handle_, ZELKM_GetReqKeyDbLabelList);
}

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

}  // namespace zel::km
