#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"
#include "tests/transcripts/key_item_passage.h"
#include "tests/transcripts/store_passages.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetKeyItemByLabel;
constexpr auto c_GetKeyItemListByLabel =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetKeyItemListByLabel;
constexpr auto c_DeleteKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1DeleteKeyItemByLabel;

const std::string kLabelToo = R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kLabelReleased = R"(
    ReleaseStringUTFChars("my key")
)";

class StoreGetKeyItemByLabel : public StoreNative {
 protected:
  void get() { call(c_GetKeyItemByLabel, text("CurrentUser/My"), text("secret"), text("my key")); }
};

TEST_F(StoreGetKeyItemByLabel, ReadsConvertsAndFreesAKeyItem) {
  library().keyItem = [] { return newKeyItem("my key"); };
  get();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
  )" + keyItemConverted("my key") +
                    R"(
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return KeyItem#1
    held nothing
  )");
}

TEST_F(StoreGetKeyItemByLabel, IsNullWhenAStoreWithoutNameAndPasswordHasNone) {
  library().answers["ZELKM_GetKeyItemByLabel"] = 117;
  call(c_GetKeyItemByLabel, nullptr, nullptr, text("my key"));
  EXPECT_TRANSCRIPT(kNamelessStoreStrings + kLabelToo + kNamelessStoreOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 117
    trace JNI_DEBUG......KM_GetKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kLabelReleased +
                    R"(
    return null
    held nothing
  )");
}

TEST_F(StoreGetKeyItemByLabel, IsNullAndFreesTheItemWhenItCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  library().keyItem = [] { return newKeyItem("my key"); };
  get();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    trace JNI_DEBUG......jKeyItemClass = 0x0
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(StoreGetKeyItemByLabel, IsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  get();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + kStoreNotOpened + kStoreReleases + kLabelReleased +
                    R"(
    return null
    held nothing
  )");
}

TEST_F(StoreGetKeyItemByLabel, IsNullForANullEnvironmentObjectOrLabel) {
  callOn(nullptr, self, c_GetKeyItemByLabel, text("a"), text("b"), text("c"));
  callOn(env, nullptr, c_GetKeyItemByLabel, text("a"), text("b"), text("c"));
  call(c_GetKeyItemByLabel, text("a"), text("b"), nullptr);
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
    return null
    held nothing
  )");
}

class StoreGetKeyItemListByLabel : public StoreNative {
 protected:
  void get() {
    call(c_GetKeyItemListByLabel, text("CurrentUser/My"), text("secret"), text("my key"));
  }
};

const std::string kClassLookedAt = R"(
    GetObjectClass(this) = class basic/MSCertificateStore
)";

TEST_F(StoreGetKeyItemListByLabel, ReadsConvertsAndFreesTheList) {
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key"), newKeyItem("too")}); };
  get();
  EXPECT_TRANSCRIPT(kClassLookedAt + kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_GetKeyItemListByLabel(1, "my key") = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 2
    NewObjectArray(2, class basic/KeyItem, null) = KeyItem[]#1
  )" + keyItemConverted("my key") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 0, KeyItem#1)
  )" + keyItemConverted("too", "KeyItem#2") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 1, KeyItem#2)
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return KeyItem[]#1
    held nothing
  )");
}

TEST_F(StoreGetKeyItemListByLabel, TakesNullForEveryString) {
  call(c_GetKeyItemListByLabel, nullptr, nullptr, nullptr);
  EXPECT_TRANSCRIPT(kClassLookedAt + kNamelessStoreStrings + R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyLabel = null
  )" + kNamelessStoreOpened +
                    R"(
    ZELKM_GetKeyItemListByLabel(1, null) = 0, null
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NULL
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
}

TEST_F(StoreGetKeyItemListByLabel, NeitherConvertsNorFreesAListThatCameWithAnError) {
  library().answers["ZELKM_GetKeyItemListByLabel"] = 18;
  library().outputsDespiteErrors = true;
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get();
  EXPECT_TRANSCRIPT(kClassLookedAt + kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_GetKeyItemListByLabel(1, "my key") = 18, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return null
    held key item list#1
  )");
}

TEST_F(StoreGetKeyItemListByLabel, FreesAListThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get();
  EXPECT_TRANSCRIPT(kClassLookedAt + kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_GetKeyItemListByLabel(1, "my key") = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(StoreGetKeyItemListByLabel, IsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  get();
  EXPECT_TRANSCRIPT(kClassLookedAt + kStoreStrings + kLabelToo + kStoreNotOpened + kStoreReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(StoreGetKeyItemListByLabel, IsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetKeyItemListByLabel, text("a"), text("b"), text("c"));
  callOn(env, nullptr, c_GetKeyItemListByLabel, text("a"), text("b"), text("c"));
  get();
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

class StoreDeleteKeyItemByLabel : public StoreNative {
 protected:
  void remove() {
    call(c_DeleteKeyItemByLabel, text("CurrentUser/My"), text("secret"), text("my key"));
  }
};

TEST_F(StoreDeleteKeyItemByLabel, DeletesAKey) {
  remove();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreDeleteKeyItemByLabel, OpensAStoreWithoutNameAndPassword) {
  call(c_DeleteKeyItemByLabel, nullptr, nullptr, text("my key"));
  EXPECT_TRANSCRIPT(kNamelessStoreStrings + kLabelToo + kNamelessStoreOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kLabelReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreDeleteKeyItemByLabel, ClosesAndHandsBackTheCodeOfAnUnknownLabel) {
  library().answers["ZELKM_DeleteKey"] = 117;
  remove();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + kStoreOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 117
    held nothing
  )");
}

TEST_F(StoreDeleteKeyItemByLabel, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  remove();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + kStoreNotOpened + kStoreReleases + kLabelReleased +
                    R"(
    return 139
    held nothing
  )");
}

/** What came with an error is the library's own. */
TEST_F(StoreDeleteKeyItemByLabel, NeitherUsesNorClosesAHandleThatCameWithAnError) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  library().outputsDespiteErrors = true;
  remove();
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelToo + R"(
    ZELKM_OpenKeyDbX({type 4, token "CurrentUser/My", password "secret"}) = 139, handle 1
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 139
    held handle 1
  )");
}

TEST_F(StoreDeleteKeyItemByLabel, RefusesANullEnvironmentObjectOrLabel) {
  callOn(nullptr, self, c_DeleteKeyItemByLabel, text("a"), text("b"), text("c"));
  callOn(env, nullptr, c_DeleteKeyItemByLabel, text("a"), text("b"), text("c"));
  call(c_DeleteKeyItemByLabel, text("a"), text("b"), nullptr);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
