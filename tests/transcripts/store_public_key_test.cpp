#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"
#include "tests/transcripts/key_item_passage.h"
#include "tests/transcripts/store_passages.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemsByPublicKey =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetKeyItemsByPublicKey;

class StoreGetKeyItemsByPublicKey : public StoreNative {
 protected:
  void get(jint length) {
    call(c_GetKeyItemsByPublicKey, text("CurrentUser/My"), text("secret"), length,
         bytes({0x30, 0x5b}));
  }
};

/** The password is traced under a name that belongs to tokens, unless there is none. */
const std::string kClassAndStrings = R"(
    GetObjectClass(this) = class basic/MSCertificateStore
    GetStringUTFChars("CurrentUser/My")
    trace JNI_DEBUG......cCSPName = CurrentUser/My
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cCryptographicTokenPassword = secret
)";
const std::string kKeyCopied = R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 5b]
)";

TEST_F(StoreGetKeyItemsByPublicKey, ReadsConvertsAndFreesTheList) {
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get(2);
  EXPECT_TRANSCRIPT(kClassAndStrings + kKeyCopied + kStoreOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 1
    NewObjectArray(1, class basic/KeyItem, null) = KeyItem[]#1
  )" + keyItemConverted("my key") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 0, KeyItem#1)
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    free(block#1)
    return KeyItem[]#1
    held elements of bytes#1
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, IsNullWhenAStoreWithoutNameAndPasswordHasNone) {
  call(c_GetKeyItemsByPublicKey, nullptr, nullptr, 2, bytes({0x30, 0x5b}));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/MSCertificateStore
  )" + kNamelessStoreStrings +
                    kKeyCopied + kNamelessStoreOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 0, null
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NULL
    ZELKM_CloseKeyDb(1) = 0
    free(block#1)
    return null
    held elements of bytes#1
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, NeitherConvertsNorFreesAListThatCameWithAnError) {
  library().answers["ZELKM_GetKeyItemsByPublicKey"] = 18;
  library().outputsDespiteErrors = true;
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get(2);
  EXPECT_TRANSCRIPT(kClassAndStrings + kKeyCopied + kStoreOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 18, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    free(block#1)
    return null
    held elements of bytes#1
    held key item list#1
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, FreesAListThatCannotBeConverted) {
  recorder().faults.failCall("NewObjectArray", 1);
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get(2);
  EXPECT_TRANSCRIPT(kClassAndStrings + kKeyCopied + kStoreOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 1
    NewObjectArray(1, class basic/KeyItem, null) = null
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    free(block#1)
    return null
    held elements of bytes#1
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, FreesTheCopyWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  get(2);
  EXPECT_TRANSCRIPT(kClassAndStrings + kKeyCopied + kStoreNotOpened + kStoreReleases + R"(
    free(block#1)
    return null
    held elements of bytes#1
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, LeavesTheStringsHeldWhenTheKeyHasAnotherLength) {
  get(3);
  EXPECT_TRANSCRIPT(kClassAndStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held string "CurrentUser/My"
    held string "secret"
  )");
}

/** The native of a key database refuses such a length before it acquires anything. */
TEST_F(StoreGetKeyItemsByPublicKey, LeavesTheStringsHeldForANegativeLength) {
  get(-1);
  EXPECT_TRANSCRIPT(kClassAndStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held string "CurrentUser/My"
    held string "secret"
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, LeavesTheStringsHeldWithoutAKey) {
  call(c_GetKeyItemsByPublicKey, text("CurrentUser/My"), text("secret"), 2, nullptr);
  get(0);
  EXPECT_TRANSCRIPT(kClassAndStrings + R"(
    return null
    held string "CurrentUser/My"
    held string "secret"
  )" + kClassAndStrings +
                    R"(
    return null
    held string "CurrentUser/My"
    held string "secret"
    held string "CurrentUser/My"
    held string "secret"
  )");
}

TEST_F(StoreGetKeyItemsByPublicKey, IsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetKeyItemsByPublicKey, text("a"), text("b"), 1, bytes({1}));
  callOn(env, nullptr, c_GetKeyItemsByPublicKey, text("a"), text("b"), 1, bytes({1}));
  get(2);
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
