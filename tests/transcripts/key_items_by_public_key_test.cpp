#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemsByPublicKey =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemsByPublicKey;

class GetKeyItemsByPublicKey : public NativeTest {
 protected:
  GetKeyItemsByPublicKey() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(GetKeyItemsByPublicKey, ReadsConvertsAndFreesAList) {
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 2, bytes({0x30, 0x5b}));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 5b]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 1
    NewObjectArray(1, class basic/KeyItem, null) = KeyItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    SetObjectArrayElement(KeyItem[]#1, 0, KeyItem#1)
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return KeyItem[]#1
    held elements of bytes#1
  )");
}

TEST_F(GetKeyItemsByPublicKey, AcquiresNothingForALengthBelowOne) {
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 0, bytes({}));
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), -1, bytes({1}));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return null
    held nothing
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemsByPublicKey, LeavesTheStringsHeldForAnArrayOfAnotherLength) {
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 3, bytes({0x30, 0x5b}));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(GetKeyItemsByPublicKey, LeavesTheStringsHeldWithoutAnArray) {
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 2, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    return null
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(GetKeyItemsByPublicKey, FreesAListThatCannotBeConverted) {
  recorder().faults.failCall("NewObjectArray", 1);
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 1, bytes({0x30}));
  EXPECT_TRANSCRIPT(R"(
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
    ZELKM_GetKeyItemsByPublicKey(1, 1, [30]) = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 1
    NewObjectArray(1, class basic/KeyItem, null) = null
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return null
    held elements of bytes#1
  )");
}

TEST_F(GetKeyItemsByPublicKey, ReturnsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("wrong"), 2, bytes({0x30, 0x5b}));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 5b]
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    free(block#1)
    return null
    held elements of bytes#1
  )");
}

TEST_F(GetKeyItemsByPublicKey, LeavesAListThatCameWithAnErrorAlone) {
  library().answers["ZELKM_GetKeyItemsByPublicKey"] = 20;
  library().outputsDespiteErrors = true;
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 1, bytes({0x30}));
  EXPECT_TRANSCRIPT(R"(
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
    ZELKM_GetKeyItemsByPublicKey(1, 1, [30]) = 20, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return null
    held elements of bytes#1
    held key item list#1
  )");
}

TEST_F(GetKeyItemsByPublicKey, ReturnsNullWhenNothingIsFound) {
  library().answers["ZELKM_GetKeyItemsByPublicKey"] = 117;
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), 1, bytes({0x30}));
  EXPECT_TRANSCRIPT(R"(
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
    ZELKM_GetKeyItemsByPublicKey(1, 1, [30]) = 117
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NULL
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    free(block#1)
    return null
    held elements of bytes#1
  )");
}

TEST_F(GetKeyItemsByPublicKey, ReturnsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetKeyItemsByPublicKey, text("a.kdb"), text("p"), 1, bytes({1}));
  callOn(env, nullptr, c_GetKeyItemsByPublicKey, text("a.kdb"), text("p"), 1, bytes({1}));
  call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("p"), 1, bytes({1}));
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
    GetObjectClass(this) = null
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
