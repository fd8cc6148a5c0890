#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemByLabel;
constexpr auto c_GetKeyItemListByLabel =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemListByLabel;
constexpr auto c_GetKeyItemsByPublicKey =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemsByPublicKey;
constexpr auto c_GetDefaultKeyItem =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetDefaultKeyItem;
constexpr auto c_IsPrivateKeyPresent =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IsPrivateKeyPresent;

class KeyItemNatives : public NativeTest {
 protected:
  KeyItemNatives() : NativeTest("CMSKeyDatabase") {}
};

class GetKeyItemByLabel : public KeyItemNatives {};

TEST_F(GetKeyItemByLabel, ReadsConvertsAndFreesAKeyItem) {
  library().keyItem = [] { return newKeyItem("my key"); };
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return KeyItem#1
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, ReadsARequestFromItsOwnTable) {
  library().keyItem = [] { return newKeyItem("my key"); };
  library().reqKeyItem = [] { return newReqKeyItem("my request"); };
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my request"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetReqKeyItemByLabel(1, "my request") = 0, request key item#1
    trace JNI_DEBUG......KM_GetReqKeyItem gets NON-NULL
    trace JNI_DEBUG......cReqKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my request")
    NewObject(class basic/KeyItem, <init>, "my request", 1, 2048, null, null, null) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    ZELKM_FreeReqKeyItem(request key item#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    return KeyItem#1
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, ReturnsNullWhenNothingIsFound) {
  library().answers["ZELKM_GetKeyItemByLabel"] = 117;
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("other"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("other")
    trace JNI_DEBUG......cKeyLabel = other
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemByLabel(1, "other") = 117
    trace JNI_DEBUG......KM_GetKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("other")
    return null
    held nothing
  )");
}

/** A key is not found as a request: there is no fallback between the tables. */
TEST_F(GetKeyItemByLabel, NeverLooksForARequestAmongTheKeys) {
  library().keyItem = [] { return newKeyItem("my key"); };
  library().answers["ZELKM_GetReqKeyItemByLabel"] = 117;
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetReqKeyItemByLabel(1, "my key") = 117
    trace JNI_DEBUG......KM_GetReqKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, GoesByTheItemAndNotByTheCode) {
  library().answers["ZELKM_GetKeyItemByLabel"] = 20;
  library().outputsDespiteErrors = true;
  library().keyItem = [] { return newKeyItem("my key"); };
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemByLabel(1, "my key") = 20, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return KeyItem#1
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, FreesAnItemThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  library().keyItem = [] { return newKeyItem("my key"); };
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    trace JNI_DEBUG......jKeyItemClass = 0x0
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, FreesARequestThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  library().reqKeyItem = [] { return newReqKeyItem("my request"); };
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my request"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetReqKeyItemByLabel(1, "my request") = 0, request key item#1
    trace JNI_DEBUG......KM_GetReqKeyItem gets NON-NULL
    trace JNI_DEBUG......cReqKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    ZELKM_FreeReqKeyItem(request key item#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, ReturnsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 17;
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 17
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemByLabel, ReturnsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetKeyItemByLabel, text("a.kdb"), text("p"), text("l"), JNI_FALSE);
  callOn(env, nullptr, c_GetKeyItemByLabel, text("a.kdb"), text("p"), text("l"), JNI_FALSE);
  call(c_GetKeyItemByLabel, text("a.kdb"), text("p"), text("l"), JNI_FALSE);
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

class GetKeyItemListByLabel : public KeyItemNatives {};

TEST_F(GetKeyItemListByLabel, ReadsConvertsAndFreesAList) {
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  call(c_GetKeyItemListByLabel, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemListByLabel(1, "my key") = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
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
    ReleaseStringUTFChars("my key")
    return KeyItem[]#1
    held nothing
  )");
}

TEST_F(GetKeyItemListByLabel, ReturnsNullWhenThereIsNoList) {
  call(c_GetKeyItemListByLabel, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemListByLabel(1, "my key") = 0, null
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NULL
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemListByLabel, LeavesAListThatCameWithAnErrorAlone) {
  library().answers["ZELKM_GetKeyItemListByLabel"] = 20;
  library().outputsDespiteErrors = true;
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  call(c_GetKeyItemListByLabel, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemListByLabel(1, "my key") = 20, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return null
    held key item list#1
  )");
}

TEST_F(GetKeyItemListByLabel, FreesAListThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  call(c_GetKeyItemListByLabel, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemListByLabel(1, "my key") = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemListByLabel, ReturnsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_GetKeyItemListByLabel, text("a.kdb"), text("wrong"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my key")
    return null
    held nothing
  )");
}

TEST_F(GetKeyItemListByLabel, ReturnsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetKeyItemListByLabel, text("a.kdb"), text("p"), text("l"));
  callOn(env, nullptr, c_GetKeyItemListByLabel, text("a.kdb"), text("p"), text("l"));
  call(c_GetKeyItemListByLabel, text("a.kdb"), text("p"), text("l"));
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

class GetKeyItemsByPublicKey : public KeyItemNatives {};

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

class GetDefaultKeyItem : public KeyItemNatives {};

TEST_F(GetDefaultKeyItem, ConvertsTheItemAfterTheClose) {
  library().keyItem = [] { return newKeyItem("my key"); };
  call(c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetDefaultKeyItem(1) = 0, key item#1
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......ZELKM_GetDefaultKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    ZELKM_FreeKeyItem(key item#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return KeyItem#1
    held nothing
  )");
}

TEST_F(GetDefaultKeyItem, IgnoresTheCodeBesideAnItem) {
  library().answers["ZELKM_GetDefaultKeyItem"] = 20;
  library().outputsDespiteErrors = true;
  library().keyItem = [] { return newKeyItem("my key"); };
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  call(c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetDefaultKeyItem(1) = 20, key item#1
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......ZELKM_GetDefaultKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    trace JNI_DEBUG......jKeyItemClass = 0x0
    ZELKM_FreeKeyItem(key item#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return null
    held nothing
  )");
}

TEST_F(GetDefaultKeyItem, ReturnsNullWhenThereIsNone) {
  library().answers["ZELKM_GetDefaultKeyItem"] = 110;
  call(c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetDefaultKeyItem(1) = 110
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......ZELKM_GetDefaultKeyItem gets NULL
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return null
    held nothing
  )");
}

TEST_F(GetDefaultKeyItem, TracesThatThereIsNoneEvenWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 101;
  call(c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_OpenKeyDb("a.kdb", "secret") = 101
    trace JNI_DEBUG......ZELKM_GetDefaultKeyItem gets NULL
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return null
    held nothing
  )");
}

TEST_F(GetDefaultKeyItem, ReturnsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
  callOn(env, nullptr, c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
  call(c_GetDefaultKeyItem, text("a.kdb"), text("secret"));
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

class IsPrivateKeyPresent : public KeyItemNatives {};

TEST_F(IsPrivateKeyPresent, IsTrueForAFlagOfOne) {
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "my key") = 0, 1
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return true
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseForAFlagOfTwo) {
  library().flag = 2;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "my key") = 0, 2
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return false
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseWhenTheLibraryFails) {
  library().answers["ZELKM_IsPrivateKeyPresent"] = 117;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("other"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("other")
    trace JNI_DEBUG......cKeyLabel = other
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "other") = 117
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("other")
    return false
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("wrong"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my key")
    return false
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_IsPrivateKeyPresent, text("a.kdb"), text("p"), text("l"));
  callOn(env, nullptr, c_IsPrivateKeyPresent, text("a.kdb"), text("p"), text("l"));
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("p"), text("l"));
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
    GetObjectClass(this) = null
    return false
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
