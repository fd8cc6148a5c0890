#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"

extern "C" {
size_t sizeOfCertItemInC(void);
int lastErrorCodeInC(void);
}

namespace {

struct CodeRow {
  int code;
  const char* name;
};

std::vector<CodeRow> allRows() {
#define ROW(code, name) {code, #name},
  return {ZELKM_ERROR_CODES(ROW)};
#undef ROW
}

TEST(KmlibCodes, AreThePositionsInTheListCountedFromOne) {
  const std::vector<CodeRow> rows = allRows();
  ASSERT_EQ(rows.size(), static_cast<size_t>(ZELKM_ERROR_CODE_COUNT));
  for (size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i].code, static_cast<int>(i) + 1);
}

TEST(KmlibCodes, HaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const CodeRow& row : allRows()) {
    EXPECT_EQ(std::strncmp(row.name, "ZELKM_ERR_", 10), 0) << row.name;
    EXPECT_TRUE(names.insert(row.name).second) << row.name << " stands twice";
  }
}

TEST(KmlibCodes, KeepTheNumbersThatCallersCompareWith) {
  EXPECT_EQ(ZELKM_ERR_UNKNOWN, 1);
  EXPECT_EQ(ZELKM_ERR_DATABASE_ALREADY_EXISTS, 9);
  EXPECT_EQ(ZELKM_ERR_DATABASE_INVALID_PASSWORD, 16);
  EXPECT_EQ(ZELKM_ERR_DATABASE_CORRUPTION, 18);
  EXPECT_EQ(ZELKM_ERR_PARAMETER, 65);
  EXPECT_EQ(ZELKM_ERR_NULL_PARAMETER, 66);
  EXPECT_EQ(ZELKM_ERR_MEMORY_ALLOCATE, 79);
  EXPECT_EQ(ZELKM_ERR_UNSUPPORTED_OPTION, 80);
  EXPECT_EQ(ZELKM_ERR_FILE_OPEN_TO_READ, 87);
  EXPECT_EQ(ZELKM_ERR_KEYDB_NOT_EXIST, 101);
  EXPECT_EQ(ZELKM_ERR_INVALID_DN_INPUT, 116);
  EXPECT_EQ(ZELKM_ERR_KEY_GET_BY_LABEL, 117);
  EXPECT_EQ(ZELKM_ERR_NO_TOKEN_PRESENT, 151);
}

TEST(KmlibRecords, AreTheSameInCAndCpp) {
  EXPECT_EQ(sizeOfCertItemInC(), sizeof(ZELKMCertItem));
  EXPECT_EQ(lastErrorCodeInC(), ZELKM_ERROR_CODE_COUNT);
}

}  // namespace
