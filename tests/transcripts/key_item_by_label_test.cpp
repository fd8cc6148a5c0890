#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemByLabel;

class GetKeyItemByLabel : public NativeTest {
 protected:
  GetKeyItemByLabel() : NativeTest("CMSKeyDatabase") {}
};

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

TEST_F(GetKeyItemByLabel, GoesByTheRequestAndNotByTheCode) {
  library().answers["ZELKM_GetReqKeyItemByLabel"] = 20;
  library().outputsDespiteErrors = true;
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
    ZELKM_GetReqKeyItemByLabel(1, "my request") = 20, request key item#1
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

}  // namespace
}  // namespace zel::test
