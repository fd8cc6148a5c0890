#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_ExportToPFXFile = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExportToPFXFile;
constexpr auto c_ImportFromPFXFile =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ImportFromPFXFile;

const std::string kFourStrings = R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.p12")
    trace JNI_DEBUG......cPfxFileName = a.p12
    GetStringUTFChars("pfx secret")
    trace JNI_DEBUG......cPfxPwd = pfx secret
)";
const std::string kFourReleases = R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.p12")
    ReleaseStringUTFChars("pfx secret")
)";

class Pfx : public NativeTest {
 protected:
  Pfx() : NativeTest("CMSKeyDatabase") {}

  void exportLabels(jobjectArray labels) {
    call(c_ExportToPFXFile, text("a.kdb"), text("secret"), text("a.p12"), text("pfx secret"),
         labels);
  }
};

class ExportToPFXFile : public Pfx {};

TEST_F(ExportToPFXFile, ExportsOneLabel) {
  exportLabels(texts({"a"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 1
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", ["a"]) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 0
    held nothing
  )");
}

/** The first of several labels is lost, and its copy is never freed. */
TEST_F(ExportToPFXFile, ExportsAllLabelsButTheFirst) {
  exportLabels(texts({"a", "b", "c"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 3
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
    GetObjectArrayElement(String[]#1, 1) = "b"
    GetStringUTFChars("b")
    malloc(16) = block#2
    ZELKM_Strdup("b")
    trace JNI_DEBUG......exportLabel = b
    ReleaseStringUTFChars("b")
    GetObjectArrayElement(String[]#1, 2) = "c"
    GetStringUTFChars("c")
    malloc(16) = block#3
    ZELKM_Strdup("c")
    trace JNI_DEBUG......exportLabel = c
    ReleaseStringUTFChars("c")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", ["b", "c"]) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 0
    held text "a"
  )");
}

TEST_F(ExportToPFXFile, ExportsAListWithoutLabelsForAnEmptyArray) {
  exportLabels(texts({}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 0
    malloc(16) = block#1
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", []) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(ExportToPFXFile, LeavesTheStringsHeldWithoutALabelArray) {
  exportLabels(nullptr);
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    return 65
    held string "a.kdb"
    held string "secret"
    held string "a.p12"
    held string "pfx secret"
  )");
}

TEST_F(ExportToPFXFile, FreesTheListWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  exportLabels(texts({"a"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 1
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 16
    held nothing
  )");
}

TEST_F(ExportToPFXFile, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_ExportKeys"] = 109;
  exportLabels(texts({"a"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 1
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", ["a"]) = 109
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 109
    held nothing
  )");
}

TEST_F(ExportToPFXFile, ExportsNoListWithoutItsFirstNode) {
  recorder().faults.failCall("malloc", 1);
  library().answers["ZELKM_ExportKeys"] = 66;
  exportLabels(texts({"a"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 1
    malloc(16) = null
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ReleaseStringUTFChars("a")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", null) = 66
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(null)
  )" + kFourReleases +
                    R"(
    return 66
    held nothing
  )");
}

/** The further nodes are made and filled, but nothing leads to them. */
TEST_F(ExportToPFXFile, FillsTheFurtherNodesWithoutTheFirst) {
  recorder().faults.failCall("malloc", 1);
  library().answers["ZELKM_ExportKeys"] = 66;
  exportLabels(texts({"a", "b", "c"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 3
    malloc(16) = null
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ReleaseStringUTFChars("a")
    GetObjectArrayElement(String[]#1, 1) = "b"
    GetStringUTFChars("b")
    malloc(16) = block#1
    ReleaseStringUTFChars("b")
    GetObjectArrayElement(String[]#1, 2) = "c"
    GetStringUTFChars("c")
    malloc(16) = block#2
    ZELKM_Strdup("c")
    trace JNI_DEBUG......exportLabel = c
    ReleaseStringUTFChars("c")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", null) = 66
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(null)
  )" + kFourReleases +
                    R"(
    return 66
    held block#1
    held block#2
    held text "c"
  )");
}

TEST_F(ExportToPFXFile, EndsTheListWhereANodeCannotBeMade) {
  recorder().faults.failCall("malloc", 3);
  exportLabels(texts({"a", "b", "c", "d", "e"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 5
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
    GetObjectArrayElement(String[]#1, 1) = "b"
    GetStringUTFChars("b")
    malloc(16) = block#2
    ZELKM_Strdup("b")
    trace JNI_DEBUG......exportLabel = b
    ReleaseStringUTFChars("b")
    GetObjectArrayElement(String[]#1, 2) = "c"
    GetStringUTFChars("c")
    malloc(16) = null
    ZELKM_Strdup("c")
    trace JNI_DEBUG......exportLabel = c
    ReleaseStringUTFChars("c")
    GetObjectArrayElement(String[]#1, 3) = "d"
    GetStringUTFChars("d")
    malloc(16) = block#3
    ReleaseStringUTFChars("d")
    GetObjectArrayElement(String[]#1, 4) = "e"
    GetStringUTFChars("e")
    malloc(16) = block#4
    ZELKM_Strdup("e")
    trace JNI_DEBUG......exportLabel = e
    ReleaseStringUTFChars("e")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", ["b", "c"]) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 0
    held text "a"
    held block#3
    held block#4
    held text "e"
  )");
}

/** A label of null where the second one should be: the library reads no further than that. */
const std::string kFirstOfThree = R"(
    GetArrayLength(String[]#1) = 3
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
)";
const std::string kThirdBehindTheEnd = R"(
    GetObjectArrayElement(String[]#1, 2) = "c"
    GetStringUTFChars("c")
    malloc(16) = block#3
    ZELKM_Strdup("c")
    trace JNI_DEBUG......exportLabel = c
    ReleaseStringUTFChars("c")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportKeys(1, 1, "a.p12", "pfx secret", []) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(block#1)
)" + kFourReleases + R"(
    return 0
    held text "a"
)";

TEST_F(ExportToPFXFile, EndsTheListAtANullLabel) {
  exportLabels(texts({"a", nullptr, "c"}));
  EXPECT_TRANSCRIPT(kFourStrings + kFirstOfThree + R"(
    GetObjectArrayElement(String[]#1, 1) = null
    malloc(16) = block#2
    trace JNI_DEBUG......exportLabel = null
  )" + kThirdBehindTheEnd);
}

TEST_F(ExportToPFXFile, EndsTheListAtALabelThatCannotBeAcquired) {
  recorder().faults.failCall("GetStringUTFChars", 6);
  exportLabels(texts({"a", "b", "c"}));
  EXPECT_TRANSCRIPT(kFourStrings + kFirstOfThree + R"(
    GetObjectArrayElement(String[]#1, 1) = "b"
    GetStringUTFChars("b") = null
    malloc(16) = block#2
    trace JNI_DEBUG......exportLabel = null
  )" + kThirdBehindTheEnd);
}

TEST_F(ExportToPFXFile, EndsTheListAtALabelThatCannotBeCopied) {
  recorder().faults.failCall("ZELKM_Strdup", 2);
  exportLabels(texts({"a", "b", "c"}));
  EXPECT_TRANSCRIPT(kFourStrings + kFirstOfThree + R"(
    GetObjectArrayElement(String[]#1, 1) = "b"
    GetStringUTFChars("b")
    malloc(16) = block#2
    ZELKM_Strdup("b") = null
    trace JNI_DEBUG......exportLabel = null
    ReleaseStringUTFChars("b")
  )" + kThirdBehindTheEnd);
}

TEST_F(ExportToPFXFile, LosesTheFirstOfTwoLabelsWhenTheOpenFailsToo) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  exportLabels(texts({"a", "b"}));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    GetArrayLength(String[]#1) = 2
    malloc(16) = block#1
    GetObjectArrayElement(String[]#1, 0) = "a"
    GetStringUTFChars("a")
    ZELKM_Strdup("a")
    ReleaseStringUTFChars("a")
    GetObjectArrayElement(String[]#1, 1) = "b"
    GetStringUTFChars("b")
    malloc(16) = block#2
    ZELKM_Strdup("b")
    trace JNI_DEBUG......exportLabel = b
    ReleaseStringUTFChars("b")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    ZELKM_FreeLabelList(block#1)
  )" + kFourReleases +
                    R"(
    return 16
    held text "a"
  )");
}

TEST_F(ExportToPFXFile, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ExportToPFXFile, text("a.kdb"), text("p"), text("f"), text("q"), nullptr);
  callOn(env, nullptr, c_ExportToPFXFile, text("a.kdb"), text("p"), text("f"), text("q"), nullptr);
  call(c_ExportToPFXFile, text("a.kdb"), text("p"), text("f"), text("q"), nullptr);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
    GetObjectClass(this) = null
    return 65
    held nothing
  )");
}

class ImportFromPFXFile : public Pfx {};

TEST_F(ImportFromPFXFile, ImportsIntoTheOpenDatabase) {
  call(c_ImportFromPFXFile, text("a.kdb"), text("secret"), text("a.p12"), text("pfx secret"));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ImportKeysFromPFXFile(1, "a.p12", "pfx secret") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kFourReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(ImportFromPFXFile, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_ImportKeysFromPFXFile"] = 119;
  call(c_ImportFromPFXFile, text("a.kdb"), text("secret"), text("a.p12"), text("pfx secret"));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ImportKeysFromPFXFile(1, "a.p12", "pfx secret") = 119
    ZELKM_CloseKeyDb(1) = 0
  )" + kFourReleases +
                    R"(
    return 119
    held nothing
  )");
}

TEST_F(ImportFromPFXFile, ImportsNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 70;
  call(c_ImportFromPFXFile, text("a.kdb"), text("secret"), text("a.p12"), text("pfx secret"));
  EXPECT_TRANSCRIPT(kFourStrings + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 70
  )" + kFourReleases +
                    R"(
    return 70
    held nothing
  )");
}

TEST_F(ImportFromPFXFile, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ImportFromPFXFile, text("a.kdb"), text("p"), text("f"), text("q"));
  callOn(env, nullptr, c_ImportFromPFXFile, text("a.kdb"), text("p"), text("f"), text("q"));
  call(c_ImportFromPFXFile, text("a.kdb"), text("p"), text("f"), text("q"));
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
    GetObjectClass(this) = null
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
