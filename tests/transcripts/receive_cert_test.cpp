#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_ReceiveCert = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ReceiveCert;

class ReceiveCert : public NativeTest {
 protected:
  ReceiveCert() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(ReceiveCert, DecodesTheFileBeforeItOpensTheDatabase) {
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), JNI_TRUE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_Base64DecodeFileToBuf("a.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReceiveCert(1, [30 df], 2, 1) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.arm")
    return 0
    held nothing
  )");
}

TEST_F(ReceiveCert, ReadsABinaryFileItself) {
  watchedLibc().addFile("a.der", {0x30, 0x01, 0x0c});
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.der"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.der")
    trace JNI_DEBUG......cCertFileName = a.der
    fopen("a.der", "rb")
    fread(1, 1024) = 3
    ZELKM_Malloc(3) = block#1
    fread(1, 1024) = 0
    fclose(file "a.der")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReceiveCert(1, [30 01 0c], 3, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(block#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.der")
    return 0
    held nothing
  )");
}

TEST_F(ReceiveCert, HandsTheLibraryAnEmptyFileAndFreesNothing) {
  watchedLibc().addFile("empty.der", {});
  library().answers["ZELKM_ReceiveCert"] = 65;
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("empty.der"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("empty.der")
    trace JNI_DEBUG......cCertFileName = empty.der
    fopen("empty.der", "rb")
    fread(1, 1024) = 0
    fclose(file "empty.der")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReceiveCert(1, null, 0, 0) = 65
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("empty.der")
    return 65
    held nothing
  )");
}

TEST_F(ReceiveCert, OpensNoDatabaseForAFileThatCannotBeOpened) {
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("none.der"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("none.der")
    trace JNI_DEBUG......cCertFileName = none.der
    fopen("none.der", "rb") = null
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("none.der")
    return 87
    held nothing
  )");
}

TEST_F(ReceiveCert, OpensNoDatabaseWithoutMemory) {
  watchedLibc().addFile("a.der", {0x30});
  recorder().faults.failCall("ZELKM_Malloc", 1);
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.der"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.der")
    trace JNI_DEBUG......cCertFileName = a.der
    fopen("a.der", "rb")
    fread(1, 1024) = 1
    ZELKM_Malloc(1) = null
    fclose(file "a.der")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.der")
    return 79
    held nothing
  )");
}

TEST_F(ReceiveCert, OpensNoDatabaseForBadBase64) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_Base64DecodeFileToBuf("a.arm") = 90
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.arm")
    return 90
    held nothing
  )");
}

/** The buffer is judged by itself, not by the code that it came with. */
TEST_F(ReceiveCert, FreesABufferThatCameWithAnError) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  library().outputsDespiteErrors = true;
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_Base64DecodeFileToBuf("a.arm") = 90, buffer#1 [30 df]
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.arm")
    return 90
    held nothing
  )");
}

TEST_F(ReceiveCert, FreesNothingWhenTheLibraryTellsALengthAndHandsOutNoBuffer) {
  library().losesBuffers = true;
  library().answers["ZELKM_ReceiveCert"] = 65;
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_Base64DecodeFileToBuf("a.arm") = 0, null, 2
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReceiveCert(1, null, 2, 0) = 65
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.arm")
    return 65
    held nothing
  )");
}

TEST_F(ReceiveCert, FreesTheBufferWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_ReceiveCert, text("a.kdb"), text("wrong"), text("a.arm"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_Base64DecodeFileToBuf("a.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("a.arm")
    return 16
    held nothing
  )");
}

TEST_F(ReceiveCert, ClosesAndHandsBackTheCodeOfAFailedReceive) {
  library().answers["ZELKM_ReceiveCert"] = 108;
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_Base64DecodeFileToBuf("a.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReceiveCert(1, [30 df], 2, 0) = 108
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("a.arm")
    return 108
    held nothing
  )");
}

TEST_F(ReceiveCert, PassesNullStringsOn) {
  call(c_ReceiveCert, nullptr, nullptr, nullptr, JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cCertFileName = null
    fopen(null, "rb") = null
    return 87
    held nothing
  )");
}

TEST_F(ReceiveCert, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), 1, 1);
  callOn(env, nullptr, c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), 1, 1);
  call(c_ReceiveCert, text("a.kdb"), text("secret"), text("a.arm"), 1, 1);
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
