#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_AddCaCert = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1AddCaCert;

class AddCaCert : public NativeTest {
 protected:
  AddCaCert() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(AddCaCert, DecodesTheFileBeforeItOpensTheDatabase) {
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.arm")
    trace JNI_DEBUG......cCertFileName = ca.arm
    ZELKM_Base64DecodeFileToBuf("ca.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_StoreCACert(1, [30 df], 2, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.arm")
    return 0
    held nothing
  )");
}

TEST_F(AddCaCert, ReadsABinaryFileInPieces) {
  watchedLibc().addFile("ca.der", Bytes(1025, 0x30));
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.der"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.der")
    trace JNI_DEBUG......cCertFileName = ca.der
    fopen("ca.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1
    ZELKM_Realloc(block#1, 1025) = block#2
    fread(1, 1024) = 0
    fclose(file "ca.der")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_StoreCACert(1, [30 30 30 30 30 30 30 30 30 30 30 30 30 30 30 30 .. 1025 bytes], 1025, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(block#2)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.der")
    return 0
    held nothing
  )");
}

TEST_F(AddCaCert, HandsTheLibraryAnEmptyFileAndFreesNothing) {
  watchedLibc().addFile("empty.der", {});
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("empty.der"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("empty.der")
    trace JNI_DEBUG......cCertFileName = empty.der
    fopen("empty.der", "rb")
    fread(1, 1024) = 0
    fclose(file "empty.der")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_StoreCACert(1, null, 0, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("empty.der")
    return 0
    held nothing
  )");
}

TEST_F(AddCaCert, OpensNoDatabaseForAFileThatCannotBeOpened) {
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("none.der"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("none.der")
    trace JNI_DEBUG......cCertFileName = none.der
    fopen("none.der", "rb") = null
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("none.der")
    return 87
    held nothing
  )");
}

TEST_F(AddCaCert, OpensNoDatabaseWithoutMemory) {
  watchedLibc().addFile("ca.der", {0x30});
  recorder().faults.failCall("ZELKM_Malloc", 1);
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.der"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.der")
    trace JNI_DEBUG......cCertFileName = ca.der
    fopen("ca.der", "rb")
    fread(1, 1024) = 1
    ZELKM_Malloc(1) = null
    fclose(file "ca.der")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.der")
    return 79
    held nothing
  )");
}

TEST_F(AddCaCert, OpensNoDatabaseWhenTheBufferCannotGrow) {
  watchedLibc().addFile("ca.der", Bytes(1025, 0x30));
  recorder().faults.failCall("ZELKM_Realloc", 1);
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.der"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.der")
    trace JNI_DEBUG......cCertFileName = ca.der
    fopen("ca.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1
    ZELKM_Realloc(block#1, 1025) = null
    ZELKM_Free(block#1)
    fclose(file "ca.der")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.der")
    return 79
    held nothing
  )");
}

TEST_F(AddCaCert, OpensNoDatabaseForBadBase64) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.arm")
    trace JNI_DEBUG......cCertFileName = ca.arm
    ZELKM_Base64DecodeFileToBuf("ca.arm") = 90
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.arm")
    return 90
    held nothing
  )");
}

/** The buffer is judged by itself, not by the code that it came with. */
TEST_F(AddCaCert, FreesABufferThatCameWithAnError) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  library().outputsDespiteErrors = true;
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.arm")
    trace JNI_DEBUG......cCertFileName = ca.arm
    ZELKM_Base64DecodeFileToBuf("ca.arm") = 90, buffer#1 [30 df]
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.arm")
    return 90
    held nothing
  )");
}

TEST_F(AddCaCert, FreesNothingWhenTheLibraryTellsALengthAndHandsOutNoBuffer) {
  library().losesBuffers = true;
  library().answers["ZELKM_StoreCACert"] = 65;
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.arm")
    trace JNI_DEBUG......cCertFileName = ca.arm
    ZELKM_Base64DecodeFileToBuf("ca.arm") = 0, null, 2
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_StoreCACert(1, null, 2, "my ca") = 65
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.arm")
    return 65
    held nothing
  )");
}

TEST_F(AddCaCert, FreesTheBufferWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_AddCaCert, text("a.kdb"), text("wrong"), text("my ca"), text("ca.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.arm")
    trace JNI_DEBUG......cCertFileName = ca.arm
    ZELKM_Base64DecodeFileToBuf("ca.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.arm")
    return 16
    held nothing
  )");
}

TEST_F(AddCaCert, ClosesAndHandsBackTheCodeOfAFailedStore) {
  library().answers["ZELKM_StoreCACert"] = 119;
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("ca.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("ca.arm")
    trace JNI_DEBUG......cCertFileName = ca.arm
    ZELKM_Base64DecodeFileToBuf("ca.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_StoreCACert(1, [30 df], 2, "my ca") = 119
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("ca.arm")
    return 119
    held nothing
  )");
}

TEST_F(AddCaCert, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("a"), 1);
  callOn(env, nullptr, c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("a"), 1);
  call(c_AddCaCert, text("a.kdb"), text("secret"), text("my ca"), text("a"), 1);
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
