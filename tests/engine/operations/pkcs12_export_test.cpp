#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::HasSubstr;
using testing::Not;

class PfxExport : public DatabaseTest {
 protected:
  int exportTo(const char* fileName, const Labels& labels, const char* password = "pfx secret") {
    return ZELKM_ExportKeys(handle(), 1, path(fileName).c_str(), password, labels.head());
  }

  std::string shown(const char* fileName, const std::string& password = "pfx secret") {
    return cms::run("openssl pkcs12 -nodes -in " + path(fileName) + " -passin 'pass:" + password +
                    "'")
        .output;
  }
};

TEST_F(PfxExport, WritesTheLabelledEntriesOnly) {
  ASSERT_EQ(selfSign("a"), ZELKM_OK);
  ASSERT_EQ(selfSign("b"), ZELKM_OK);
  ASSERT_EQ(selfSign("c"), ZELKM_OK);
  ASSERT_EQ(exportTo("keys.p12", Labels{"c", "a", "c"}), ZELKM_OK);
  const std::string text = shown("keys.p12");
  EXPECT_THAT(text, HasSubstr("friendlyName: a"));
  EXPECT_THAT(text, Not(HasSubstr("friendlyName: b")));
  EXPECT_THAT(text, HasSubstr("friendlyName: c"));
  EXPECT_LT(text.find("subject=C = DE, O = Sea, CN = c"),
            text.find("subject=C = DE, O = Sea, CN = a"));
}

TEST_F(PfxExport, ConvertsPasswordAndLabelToRealUtf8) {
  const char* key = "\xED\xA0\xBD\xED\xB4\x91";
  ASSERT_EQ(selfSign(key), ZELKM_OK);
  ASSERT_EQ(exportTo("keys.p12", Labels{key}, key), ZELKM_OK);
  EXPECT_THAT(shown("keys.p12", "🔑"), HasSubstr("BEGIN PRIVATE KEY"));
}

TEST_F(PfxExport, KeepsTheFileToItsOwnerAndReplacesAnEarlierOne) {
  ASSERT_EQ(selfSign("a"), ZELKM_OK);
  folder().write("keys.p12", cms::text("what was there before"));
  ASSERT_EQ(chmod(path("keys.p12").c_str(), 0644), 0);
  ASSERT_EQ(exportTo("keys.p12", Labels{"a"}), ZELKM_OK);
  struct stat status {};
  ASSERT_EQ(stat(path("keys.p12").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_THAT(shown("keys.p12"), HasSubstr("BEGIN PRIVATE KEY"));
}

TEST_F(PfxExport, LeavesAnEarlierFileWhenItFails) {
  ASSERT_EQ(selfSign("a"), ZELKM_OK);
  folder().write("keys.p12", cms::text("what was there before"));
  EXPECT_EQ(exportTo("keys.p12", Labels{"a", "nobody"}), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(folder().read("keys.p12").size(), 21U);
}

TEST_F(PfxExport, SaysWhatItCannotDo) {
  ASSERT_EQ(selfSign("a"), ZELKM_OK);
  const Labels labels{"a"};
  const std::string file = path("keys.p12");
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 2, file.c_str(), "pw", labels.head()),
            ZELKM_ERR_EXPORT_TYPE);
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 1, nullptr, "pw", labels.head()), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 1, file.c_str(), nullptr, labels.head()),
            ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 1, file.c_str(), "pw", nullptr), ZELKM_ERR_NULL_PARAMETER);
  ZELKMLabelList noLabel{nullptr, nullptr};
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 1, file.c_str(), "pw", &noLabel), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_ExportKeys(handle(), 1, path("no/keys.p12").c_str(), "pw", labels.head()),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

}  // namespace
}  // namespace zel::km
