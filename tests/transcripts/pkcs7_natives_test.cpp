#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_ExtractCertFromPKCS7Data =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCertFromPKCS7Data;

class ExtractCertFromPKCS7Data : public NativeTest {
 protected:
  ExtractCertFromPKCS7Data() : NativeTest("CMSKeyDatabase") {
    library().certList = [] { return newCertList({newCert({0x30, 0xce})}); };
  }
};

/** The list of one certificate, turned into an array of one. */
constexpr const char* kListConverted = R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 1
    NewObjectArray(1, class basic/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 ce])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#1) = CertificateItem#1
    SetObjectArrayElement(CertificateItem[]#1, 0, CertificateItem#1)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
)";

TEST_F(ExtractCertFromPKCS7Data, ReadsABase64File) {
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  EXPECT_TRANSCRIPT(std::string(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    ZELKM_Base64DecodeFileToBuf("a.p7b") = 0, buffer#1 [30 df]
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data([30 df], 2) = 0, certificate list#1
  )") + kListConverted +
                    R"(
    ZELKM_FreeCertItemList(certificate list#1)
    ZELKM_Free(buffer#1)
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, ReadsABinaryFileInPieces) {
  watchedLibc().addFile("a.p7b", Bytes(1025, 0x30));
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_FALSE);
  EXPECT_TRANSCRIPT(std::string(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    fopen("a.p7b", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1
    ZELKM_Realloc(block#1, 1025) = block#2
    fread(1, 1024) = 0
    fclose(file "a.p7b")
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data([30 30 30 30 30 30 30 30 30 30 30 30 30 30 30 30 .. 1025 bytes], 1025) = 0, certificate list#1
  )") + kListConverted +
                    R"(
    ZELKM_FreeCertItemList(certificate list#1)
    ZELKM_Free(block#2)
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, AsksTheLibraryEvenForAFileThatCannotBeOpened) {
  library().answers["ZELKM_ExtractCertListFromPKCS7Data"] = 65;
  call(c_ExtractCertFromPKCS7Data, text("none.p7b"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("none.p7b")
    trace JNI_DEBUG......cCertFileName = none.p7b
    fopen("none.p7b", "rb") = null
    ReleaseStringUTFChars("none.p7b")
    ZELKM_ExtractCertListFromPKCS7Data(null, 0) = 65
    return null
    held nothing
  )");
}

/** The library has the last word: its success counts, whatever became of the reading. */
TEST_F(ExtractCertFromPKCS7Data, ConvertsWhatTheLibraryMakesOfNoFile) {
  call(c_ExtractCertFromPKCS7Data, text("none.p7b"), JNI_FALSE);
  EXPECT_TRANSCRIPT(std::string(R"(
    GetStringUTFChars("none.p7b")
    trace JNI_DEBUG......cCertFileName = none.p7b
    fopen("none.p7b", "rb") = null
    ReleaseStringUTFChars("none.p7b")
    ZELKM_ExtractCertListFromPKCS7Data(null, 0) = 0, certificate list#1
  )") + kListConverted +
                    R"(
    ZELKM_FreeCertItemList(certificate list#1)
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, AsksTheLibraryEvenForBadBase64) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  library().answers["ZELKM_ExtractCertListFromPKCS7Data"] = 65;
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    ZELKM_Base64DecodeFileToBuf("a.p7b") = 90
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data(null, 0) = 65
    return null
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, TellsTheLibraryHowFarTheReadingCameWithoutMemory) {
  watchedLibc().addFile("a.p7b", Bytes(1025, 0x30));
  recorder().faults.failCall("ZELKM_Realloc", 1);
  library().answers["ZELKM_ExtractCertListFromPKCS7Data"] = 65;
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    fopen("a.p7b", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1
    ZELKM_Realloc(block#1, 1025) = null
    ZELKM_Free(block#1)
    fclose(file "a.p7b")
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data(null, 1025) = 65
    return null
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, FreesTheBufferWhenItHoldsNoCertificates) {
  library().answers["ZELKM_ExtractCertListFromPKCS7Data"] = 90;
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    ZELKM_Base64DecodeFileToBuf("a.p7b") = 0, buffer#1 [30 df]
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data([30 df], 2) = 90
    ZELKM_Free(buffer#1)
    return null
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, FreesAListThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/CertificateItem");
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    ZELKM_Base64DecodeFileToBuf("a.p7b") = 0, buffer#1 [30 df]
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data([30 df], 2) = 0, certificate list#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = null
    ZELKM_FreeCertItemList(certificate list#1)
    ZELKM_Free(buffer#1)
    return null
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, FreesNoListWhenTheLibraryHasNone) {
  library().certList = [] { return nullptr; };
  call(c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.p7b")
    trace JNI_DEBUG......cCertFileName = a.p7b
    ZELKM_Base64DecodeFileToBuf("a.p7b") = 0, buffer#1 [30 df]
    ReleaseStringUTFChars("a.p7b")
    ZELKM_ExtractCertListFromPKCS7Data([30 df], 2) = 0, null
    ZELKM_Free(buffer#1)
    return null
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, PassesANullFileNameOn) {
  library().answers["ZELKM_ExtractCertListFromPKCS7Data"] = 65;
  call(c_ExtractCertFromPKCS7Data, nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cCertFileName = null
    fopen(null, "rb") = null
    ZELKM_ExtractCertListFromPKCS7Data(null, 0) = 65
    return null
    held nothing
  )");
}

TEST_F(ExtractCertFromPKCS7Data, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  callOn(env, nullptr, c_ExtractCertFromPKCS7Data, text("a.p7b"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
