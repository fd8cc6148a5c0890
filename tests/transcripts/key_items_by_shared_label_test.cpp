#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemListByLabel =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemListByLabel;

class GetKeyItemListByLabel : public NativeTest {
 protected:
  GetKeyItemListByLabel() : NativeTest("CMSKeyDatabase") {}
};

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

}  // namespace
}  // namespace zel::test
