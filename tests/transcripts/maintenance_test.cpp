#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_InsertKey = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1InsertKey;
constexpr auto c_InsertReqKey = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1InsertReqKey;
constexpr auto c_DeleteKeyByLabel =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1DeleteKeyByLabel;
constexpr auto c_SetDefaultKey = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1SetDefaultKey;
constexpr auto c_SetKeyTrust = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1SetKeyTrust;

class Maintenance : public NativeTest {
 protected:
  Maintenance() : NativeTest("CMSKeyDatabase") {}
};

const std::string kThreeStrings = R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kFrameBegun = "GetObjectClass(this) = class basic/CMSKeyDatabase" + kThreeStrings;
const std::string kThreeReleases = R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
)";

class InsertKey : public Maintenance {};

TEST_F(InsertKey, CopiesCertificateAndKeyAndWipesThemAfterTheClose) {
  call(c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 2, bytes({0x30, 0xce}, "cert"),
       3, bytes({0x30, 0x0f, 0x01}, "key"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(cert) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(cert) = [30 ce]
    GetArrayLength(key) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#2
    GetByteArrayElements(key) = [30 0f 01]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, [30 0f 01], 1, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kThreeReleases +
                    R"(
    return 0
    held elements of cert
    held elements of key
  )");
}

TEST_F(InsertKey, NeverTouchesTheKeyForALengthOfZero) {
  call(c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 2, bytes({0x30, 0xce}, "cert"),
       0, bytes({1}, "key"), JNI_FALSE, JNI_TRUE);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(cert) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(cert) = [30 ce]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 1) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kThreeReleases +
                    R"(
    return 0
    held elements of cert
  )");
}

TEST_F(InsertKey, PassesNoCertificateForALengthOfZero) {
  library().answers["ZELKM_InsertKey"] = 66;
  call(c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 0, bytes({1}, "cert"), -1,
       bytes({1}, "key"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertKey(1, "my key", 0, null, 4294967295, null, 0, 0) = 66
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 66
    held nothing
  )");
}

TEST_F(InsertKey, PassesNullWithTheLengthUnchangedForArraysOfAnotherLength) {
  library().answers["ZELKM_InsertKey"] = 66;
  call(c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 5, bytes({1}, "cert"), 7,
       bytes({2, 3}, "key"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(cert) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    GetArrayLength(key) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertKey(1, "my key", 5, null, 7, null, 0, 0) = 66
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 66
    held nothing
  )");
}

TEST_F(InsertKey, WipesWhatItCopiedWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 1, bytes({1}, "cert"), 1,
       bytes({2}, "key"), JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(cert) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(cert) = [01]
    GetArrayLength(key) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#2
    GetByteArrayElements(key) = [02]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kThreeReleases +
                    R"(
    return 16
    held elements of cert
    held elements of key
  )");
}

TEST_F(InsertKey, AsksForNoObjectAndNoClass) {
  callOn(env, nullptr, c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 0, nullptr, 0,
         nullptr, JNI_FALSE, JNI_FALSE);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertKey(1, "my key", 0, null, 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

class InsertReqKey : public Maintenance {};

TEST_F(InsertReqKey, CopiesBothBlocksAndWipesThemAfterTheClose) {
  call(c_InsertReqKey, text("a.kdb"), text("secret"), text("my key"), 2,
       bytes({0x30, 0xe9}, "first"), 1, bytes({0x0e}, "second"));
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(first) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(first) = [30 e9]
    GetArrayLength(second) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#2
    GetByteArrayElements(second) = [0e]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertReqKey(1, "my key", 2, [30 e9], 1, [0e]) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kThreeReleases +
                    R"(
    return 0
    held elements of first
    held elements of second
  )");
}

TEST_F(InsertReqKey, NeverTouchesTheSecondBlockForALengthOfZero) {
  library().answers["ZELKM_InsertReqKey"] = 66;
  call(c_InsertReqKey, text("a.kdb"), text("secret"), text("my key"), 0, nullptr, 0,
       bytes({1}, "second"));
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertReqKey(1, "my key", 0, null, 0, null) = 66
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 66
    held nothing
  )");
}

TEST_F(InsertReqKey, PassesNullWithTheLengthUnchangedForArraysOfAnotherLength) {
  call(c_InsertReqKey, text("a.kdb"), text("secret"), text("my key"), 5, bytes({1}, "first"), 7,
       bytes({2}, "second"));
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(first) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    GetArrayLength(second) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_InsertReqKey(1, "my key", 5, null, 7, null) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(InsertReqKey, WipesWhatItCopiedWhenTheOpenFailsWithoutAnObject) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  callOn(env, nullptr, c_InsertReqKey, text("a.kdb"), text("secret"), text("my key"), 1,
         bytes({1}, "first"), 0, nullptr);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetArrayLength(first) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(first) = [01]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    free(block#1 wiped)
  )" + kThreeReleases +
                    R"(
    return 16
    held elements of first
  )");
}

class DeleteKeyByLabel : public Maintenance {};

TEST_F(DeleteKeyByLabel, DeletesAKey) {
  call(c_DeleteKeyByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_DeleteKey(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(DeleteKeyByLabel, DeletesARequestAndNoKeyOfThatLabel) {
  library().answers["ZELKM_DeleteRequestKeyPair"] = 117;
  call(c_DeleteKeyByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_TRUE);
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_DeleteRequestKeyPair(1, "my key") = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 117
    held nothing
  )");
}

TEST_F(DeleteKeyByLabel, DeletesNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_DeleteKeyByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
  )" + kThreeReleases +
                    R"(
    return 16
    held nothing
  )");
}

TEST_F(DeleteKeyByLabel, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_DeleteKeyByLabel, text("a"), text("p"), text("l"), JNI_FALSE);
  callOn(env, nullptr, c_DeleteKeyByLabel, text("a"), text("p"), text("l"), JNI_FALSE);
  call(c_DeleteKeyByLabel, text("a"), text("p"), text("l"), JNI_FALSE);
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

class SetDefaultKey : public Maintenance {};

TEST_F(SetDefaultKey, MarksTheEntry) {
  call(c_SetDefaultKey, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_SetDefaultKeyByLabel(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(SetDefaultKey, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_SetDefaultKeyByLabel"] = 111;
  call(c_SetDefaultKey, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_SetDefaultKeyByLabel(1, "my key") = 111
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 111
    held nothing
  )");
}

TEST_F(SetDefaultKey, MarksNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_SetDefaultKey, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
  )" + kThreeReleases +
                    R"(
    return 16
    held nothing
  )");
}

TEST_F(SetDefaultKey, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_SetDefaultKey, text("a"), text("p"), text("l"));
  callOn(env, nullptr, c_SetDefaultKey, text("a"), text("p"), text("l"));
  call(c_SetDefaultKey, text("a"), text("p"), text("l"));
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

class SetKeyTrust : public Maintenance {};

TEST_F(SetKeyTrust, PassesTrueAsOne) {
  call(c_SetKeyTrust, text("a.kdb"), text("secret"), text("my key"), JNI_TRUE);
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_SetTrustStatus(1, "my key", 1) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(SetKeyTrust, PassesFalseAsZeroAndHandsBackTheCode) {
  library().answers["ZELKM_SetTrustStatus"] = 117;
  call(c_SetKeyTrust, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_SetTrustStatus(1, "my key", 0) = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 117
    held nothing
  )");
}

TEST_F(SetKeyTrust, ChangesNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_SetKeyTrust, text("a.kdb"), text("secret"), text("my key"), JNI_TRUE);
  EXPECT_TRANSCRIPT(kFrameBegun + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
  )" + kThreeReleases +
                    R"(
    return 16
    held nothing
  )");
}

TEST_F(SetKeyTrust, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_SetKeyTrust, text("a"), text("p"), text("l"), JNI_TRUE);
  callOn(env, nullptr, c_SetKeyTrust, text("a"), text("p"), text("l"), JNI_TRUE);
  call(c_SetKeyTrust, text("a"), text("p"), text("l"), JNI_TRUE);
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
