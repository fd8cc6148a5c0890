#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_CMSInit = Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1CMSInit;
constexpr auto c_CreateNewKeyDb =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1CreateNewKeyDb;
constexpr auto c_CreateNewKeyDbFIPS =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1CreateNewKeyDbFIPS;
constexpr auto c_OpenKeyDb = Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1OpenKeyDb;
constexpr auto c_BuildKeyLabelList =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1BuildKeyLabelList;
constexpr auto c_ChangeKeyDbPwd =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1ChangeKeyDbPwd;
constexpr auto c_StashKeyDbPwd = Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1StashKeyDbPwd;
constexpr auto c_IsPrivateKeyPresent =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1IsPrivateKeyPresent;
constexpr auto c_InsertKey = Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1InsertKey;
constexpr auto c_DeleteKeyByLabel =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1DeleteKeyByLabel;

/** Each does what the native of the same name in package basic does, on the legacy object. */
class LegacyForwarders : public NativeTest {
 protected:
  LegacyForwarders() : NativeTest("CMSKeyDatabase", kLegacy) {}
};

const std::string kClass = R"(
    GetObjectClass(this) = class cmskeystore/CMSKeyDatabase
)";
const std::string kTwoStrings = R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
)";
const std::string kTwoReleases = R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
)";
const std::string kLabelToo = R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kLabelReleased = R"(
    ReleaseStringUTFChars("my key")
)";
const std::string kOpened = R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
)";
const std::string kClosed = R"(
    ZELKM_CloseKeyDb(1) = 0
)";

TEST_F(LegacyForwarders, StartTheLibrary) {
  call(c_CMSInit, JNI_FALSE);
  library().answers["ZELKM_Init"] = 80;
  call(c_CMSInit, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_Init() = 0
    return 0
    held nothing
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_StartTrace("jnidump", "jnitrace", 0, 6144) = 0
    trace JNI_DEBUG......ZELKM_StartTrace returns = 0
    ZELKM_Init() = 80
    return 80
    held nothing
  )");
}

TEST_F(LegacyForwarders, CreateADatabase) {
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 1999);
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + R"(
    ZELKM_CreateNewKeyDb("a.kdb", "secret", 1) = 0, handle 1
  )" + kClosed + kTwoReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(LegacyForwarders, CreateAFipsDatabase) {
  library().answers["ZELKM_CreateNewKeyDbFIPS"] = 80;
  call(c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 86400000);
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + R"(
    ZELKM_CreateNewKeyDbFIPS("a.kdb", "secret", 86400) = 80
  )" + kTwoReleases +
                    R"(
    return 80
    held nothing
  )");
}

TEST_F(LegacyForwarders, OpenADatabase) {
  call(c_OpenKeyDb, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + kOpened + kClosed + kTwoReleases + R"(
    return 0
    held nothing
  )");
}

TEST_F(LegacyForwarders, DeliverLabelsToTheLegacyObject) {
  library().keyLabels = [] { return newLabelList({"key"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + R"(
    GetMethodID(class cmskeystore/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
  )" + kOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
  )" + kClosed + R"(
    trace JNI_DEBUG......cLabel = key
    NewStringUTF("key")
    CallVoidMethod(this, addKeyLabel, "key")
    ZELKM_FreeLabelList(label list#1)
    GetMethodID(class cmskeystore/CMSKeyDatabase, "addReqKeyLabel", "(Ljava/lang/String;)V")
    trace JNI_DEBUG......cReqLabel = request
    NewStringUTF("request")
    CallVoidMethod(this, addReqKeyLabel, "request")
    ZELKM_FreeLabelList(label list#2)
  )" + kTwoReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(LegacyForwarders, RefuseToListForAnObjectWithoutAddKeyLabel) {
  jni.heap.removeMember("com/nelo/security/cmskeystore/CMSKeyDatabase", "addKeyLabel");
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + R"(
    GetMethodID(class cmskeystore/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(LegacyForwarders, ChangeThePassword) {
  call(c_ChangeKeyDbPwd, text("a.kdb"), text("old"), text("new"), -1500);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
  )" + kClass + R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("old")
    trace JNI_DEBUG......cOldKeyDbPwd = old
    GetStringUTFChars("new")
    trace JNI_DEBUG......cNewKeyDbPwd = new
    ZELKM_ChangeKeyDbPwd("a.kdb", "old", "new", -1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("old")
    ReleaseStringUTFChars("new")
    return true
    held nothing
  )");
}

TEST_F(LegacyForwarders, StashThePassword) {
  library().answers["ZELKM_StashKeyDbPwd"] = 88;
  call(c_StashKeyDbPwd, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_StashKeyDbPwd......
  )" + kTwoStrings + R"(
    ZELKM_StashKeyDbPwd("a.kdb", "secret") = 88
  )" + kTwoReleases +
                    R"(
    return false
    held nothing
  )");
}

TEST_F(LegacyForwarders, AskForAPrivateKey) {
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_IsPrivateKeyPresent(1, "my key") = 0, 1
  )" + kClosed + kTwoReleases +
                    kLabelReleased + R"(
    return true
    held nothing
  )");
}

TEST_F(LegacyForwarders, InsertAKey) {
  call(c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 2, bytes({0x30, 0xce}, "cert"),
       3, bytes({0x30, 0x01, 0x1f}, "key"), JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(kTwoStrings + kLabelToo + R"(
    GetArrayLength(cert) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(cert) = [30 ce]
    GetArrayLength(key) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#2
    GetByteArrayElements(key) = [30 01 1f]
  )" + kOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, [30 01 1f], 1, 0) = 0
  )" + kClosed + R"(
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return 0
    held elements of cert
    held elements of key
  )");
}

TEST_F(LegacyForwarders, DeleteAKeyOrARequest) {
  call(c_DeleteKeyByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  call(c_DeleteKeyByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_TRUE);
  EXPECT_TRANSCRIPT(kClass + kTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 0
  )" + kClosed + kTwoReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )" + kClass + kTwoStrings +
                    kLabelToo + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 2
    ZELKM_DeleteRequestKeyPair(2, "my key") = 0
    ZELKM_CloseKeyDb(2) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )");
}

/** What the natives behind them never look at may be null. */
TEST_F(LegacyForwarders, StartAndInsertForANullObjectToo) {
  callOn(nullptr, nullptr, c_CMSInit, JNI_FALSE);
  callOn(env, nullptr, c_InsertKey, text("a.kdb"), text("secret"), text("my key"), 2,
         bytes({0x30, 0xce}, "cert"), 0, nullptr, JNI_FALSE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_Init() = 0
    return 0
    held nothing
  )" + kTwoStrings + kLabelToo +
                    R"(
    GetArrayLength(cert) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(cert) = [30 ce]
  )" + kOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 1) = 0
  )" + kClosed + R"(
    free(block#1 wiped)
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return 0
    held elements of cert
  )");
}

TEST_F(LegacyForwarders, RefuseANullEnvironmentOrObjectAsTheOthersDo) {
  jstring given = text("given");
  callOn(nullptr, self, c_CreateNewKeyDb, given, given, 0);
  callOn(env, nullptr, c_CreateNewKeyDbFIPS, given, given, 0);
  callOn(env, nullptr, c_OpenKeyDb, given, given);
  callOn(nullptr, self, c_BuildKeyLabelList, given, given);
  callOn(env, nullptr, c_ChangeKeyDbPwd, given, given, given, 0);
  callOn(nullptr, self, c_StashKeyDbPwd, given, given);
  callOn(env, nullptr, c_IsPrivateKeyPresent, given, given, given);
  callOn(nullptr, self, c_DeleteKeyByLabel, given, given, given, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
    return 65
    held nothing
    return 65
    held nothing
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    return false
    held nothing
    trace JNI_DEBUG......c_StashKeyDbPwd......
    return false
    held nothing
    return false
    held nothing
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
