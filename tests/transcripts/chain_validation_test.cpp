#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_ValidateCertificateChain =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ValidateCertificateChain;

class ValidateCertificateChain : public NativeTest {
 protected:
  ValidateCertificateChain() : NativeTest("CMSKeyDatabase") {}
};

/** It opens what it never closes. */
TEST_F(ValidateCertificateChain, LeavesTheDatabaseOpen) {
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30, 0xce}), 2);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 ce]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ValidateCertChain(1, [30 ce], 2) = 0, 1
    trace JNI_DEBUG......c_ValidateCertificateChain() = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return true
    held elements of bytes#1
    held handle 1
  )");
}

TEST_F(ValidateCertificateChain, LeavesOneMoreHandleOpenWithEachCall) {
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30}), 1);
  library().flag = 0;
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30}), 1);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ValidateCertChain(1, [30], 1) = 0, 1
    trace JNI_DEBUG......c_ValidateCertificateChain() = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return true
    held elements of bytes#1
    held handle 1
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#2) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#2
    GetByteArrayElements(bytes#2) = [30]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 2
    ZELKM_ValidateCertChain(2, [30], 1) = 0, 0
    trace JNI_DEBUG......c_ValidateCertificateChain() = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#2)
    return false
    held elements of bytes#1
    held handle 1
    held elements of bytes#2
    held handle 2
  )");
}

TEST_F(ValidateCertificateChain, IsTrueOnlyForAFlagOfOne) {
  library().flag = 2;
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30}), 1);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ValidateCertChain(1, [30], 1) = 0, 2
    trace JNI_DEBUG......c_ValidateCertificateChain() = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return false
    held elements of bytes#1
    held handle 1
  )");
}

TEST_F(ValidateCertificateChain, LeavesTheDatabaseOpenAfterAFailureToo) {
  library().answers["ZELKM_ValidateCertChain"] = 90;
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30}), 1);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ValidateCertChain(1, [30], 1) = 90
    trace JNI_DEBUG......c_ValidateCertificateChain() = 90
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return false
    held elements of bytes#1
    held handle 1
  )");
}

/** The flag alone answers, whatever the code. */
TEST_F(ValidateCertificateChain, AnswersAFlagThatCameWithAnError) {
  library().answers["ZELKM_ValidateCertChain"] = 90;
  library().outputsDespiteErrors = true;
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30}), 1);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ValidateCertChain(1, [30], 1) = 90, 1
    trace JNI_DEBUG......c_ValidateCertificateChain() = 90
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return true
    held elements of bytes#1
    held handle 1
  )");
}

TEST_F(ValidateCertificateChain, IsFalseWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_ValidateCertificateChain, text("a.kdb"), text("wrong"), bytes({0x30}), 1);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    free(block#1)
    return false
    held elements of bytes#1
  )");
}

TEST_F(ValidateCertificateChain, LeavesTheStringsHeldWhenTheCertificateHasAnotherLength) {
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), bytes({0x30}), 2);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return false
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(ValidateCertificateChain, LeavesTheStringsHeldWithoutACertificate) {
  call(c_ValidateCertificateChain, text("a.kdb"), text("secret"), nullptr, 2);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    return false
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(ValidateCertificateChain, TracesItsEntryEvenForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ValidateCertificateChain, text("a"), text("b"), bytes({0x30}), 1);
  callOn(env, nullptr, c_ValidateCertificateChain, text("a"), text("b"), bytes({0x30}), 1);
  call(c_ValidateCertificateChain, text("a"), text("b"), bytes({0x30}), 1);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ValidateCertificateChain......
    return false
    held nothing
    trace JNI_DEBUG......c_ValidateCertificateChain......
    return false
    held nothing
    trace JNI_DEBUG......c_ValidateCertificateChain......
    GetObjectClass(this) = null
    return false
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
