#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetDefaultKeyItem =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetDefaultKeyItem;

class GetDefaultKeyItem : public NativeTest {
 protected:
  GetDefaultKeyItem() : NativeTest("CMSKeyDatabase") {}
};

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

}  // namespace
}  // namespace zel::test
