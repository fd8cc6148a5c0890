#ifndef ZEL_TESTS_ENGINE_OPERATIONS_DATABASE_H_
#define ZEL_TESTS_ENGINE_OPERATIONS_DATABASE_H_

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/sys/bytes.h"
#include "tests/engine/cms/tools.h"

/**
 * @file
 * A new key database for a test, through the C interface alone, and owners of what it hands out.
 */

namespace zel::km {

template <auto release>
struct Release {
  template <typename T>
  void operator()(T* record) const {
    release(record);
  }
};
using KeyItem = std::unique_ptr<ZELKMKeyItem, Release<ZELKM_FreeKeyItem>>;
using RequestItem = std::unique_ptr<ZELKMReqKeyItem, Release<ZELKM_FreeReqKeyItem>>;
using KeyItemList = std::unique_ptr<ZELKMKeyItemList, Release<ZELKM_FreeKeyItemList>>;
using Name = std::unique_ptr<ZELKMDNItem, Release<ZELKM_FreeDNItem>>;

inline sys::ByteView viewOf(const unsigned char* bytes, std::uint32_t length) {
  return {bytes, length};
}
inline sys::Bytes bytesOf(const unsigned char* bytes, std::uint32_t length) {
  return {bytes, bytes + length};
}

/** A name as the bridge makes it; an empty text stays null. */
Name name(const char* commonName, const char* organization = "", const char* country = "");

/** The labels that an operation lists. */
std::vector<std::string> labelsOf(int handle, int (*listLabels)(int, ZELKMLabelList**));

/** A list of labels as the bridge makes it. */
class Labels {
 public:
  Labels(std::initializer_list<const char*> labels);
  ~Labels() { ZELKM_FreeLabelList(head_); }
  Labels(const Labels&) = delete;
  Labels& operator=(const Labels&) = delete;

  const ZELKMLabelList* head() const { return head_; }

 private:
  ZELKMLabelList* head_ = nullptr;
};

/** Another program that reads a database for as long as this lives: nothing is committed. */
class Reader {
 public:
  explicit Reader(const std::string& path);
  ~Reader() { sqlite3_close(connection_); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

 private:
  sqlite3* connection_ = nullptr;
};

/**
 * A test on an open key database that is empty to begin with. Making one takes a costly derivation,
 * so all tests share the database and each clears it.
 */
class DatabaseTest : public testing::Test {
 protected:
  static constexpr char kPassword[] = "Pässword 1!";

  DatabaseTest();

  int handle() const { return handle_; }
  std::string databasePath() const;
  std::string path(const char* fileName) const { return folder_.path(fileName); }
  cms::TemporaryFolder& folder() { return folder_; }

  /** Makes a self-signed EC certificate; answers the code. */
  int selfSign(const char* label, bool makeDefault = false, int keySize = 256);
  KeyItem item(const char* label);
  int codeOfItem(const char* label);
  std::vector<std::string> keyLabels();
  std::vector<std::string> requestLabels();

 private:
  cms::TemporaryFolder folder_;
  int handle_;
};

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_OPERATIONS_DATABASE_H_
