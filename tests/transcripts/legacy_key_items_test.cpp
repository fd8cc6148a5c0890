#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemByLabel =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemByLabel;
constexpr auto c_GetKeyItemListByLabel =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemListByLabel;
constexpr auto c_GetKeyItemsByPublicKey =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemsByPublicKey;

class LegacyKeyItems : public NativeTest {
 protected:
  LegacyKeyItems() : NativeTest("CMSKeyDatabase", kLegacy) {}
};

const std::string kClassAndTwoStrings = R"(
    GetObjectClass(this) = class cmskeystore/CMSKeyDatabase
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
const std::string kNotOpened = R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
)";

std::string keyItemConverted(const std::string& label, const std::string& object = "KeyItem#1") {
  return R"(
    FindClass("com/nelo/security/cmskeystore/KeyItem") = class cmskeystore/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class cmskeystore/KeyItem}
    GetMethodID(class cmskeystore/KeyItem, "<init>", "{legacy KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class cmskeystore/KeyItem}, constructor=0x{<init>}
    NewStringUTF(")" +
         label + R"(")
    NewObject(class cmskeystore/KeyItem, <init>, ")" +
         label + R"(", 1, 2048, null, null, null, false, false) = )" + object + R"(
    GetMethodID(class cmskeystore/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod()" +
         object + R"(, setHasPrivateKey, false)
)";
}

class LegacyGetKeyItemByLabel : public LegacyKeyItems {
 protected:
  void get(jboolean neverRead = JNI_FALSE) {
    call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), neverRead);
  }
};

TEST_F(LegacyGetKeyItemByLabel, ReadsConvertsAndFreesAKeyItem) {
  library().keyItem = [] { return newKeyItem("my key"); };
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
  )" + keyItemConverted("my key") +
                    R"(
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return KeyItem#1
    held nothing
  )");
}

/** Its counterpart reads a request for a true flag. */
TEST_F(LegacyGetKeyItemByLabel, NeverReadsARequestWhateverItsLastArgument) {
  library().answers["ZELKM_GetKeyItemByLabel"] = 117;
  library().reqKeyItem = [] { return newReqKeyItem("my key"); };
  get(JNI_TRUE);
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 117
    trace JNI_DEBUG......KM_GetKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemByLabel, ConvertsAnItemThatCameWithAnError) {
  library().answers["ZELKM_GetKeyItemByLabel"] = 18;
  library().outputsDespiteErrors = true;
  library().keyItem = [] { return newKeyItem("my key"); };
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 18, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
  )" + keyItemConverted("my key") +
                    R"(
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return KeyItem#1
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemByLabel, IsNullWithoutTheLegacyConstructor) {
  jni.heap.removeMember("com/nelo/security/cmskeystore/KeyItem", "<init>");
  library().keyItem = [] { return newKeyItem("my key"); };
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/security/cmskeystore/KeyItem") = class cmskeystore/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class cmskeystore/KeyItem}
    GetMethodID(class cmskeystore/KeyItem, "<init>", "{legacy KeyItem}") = null
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemByLabel, IsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kNotOpened + kTwoReleases + kLabelReleased +
                    R"(
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemByLabel, PassesNullStringsOnAndReleasesNone) {
  call(c_GetKeyItemByLabel, nullptr, nullptr, nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class cmskeystore/CMSKeyDatabase
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyLabel = null
    ZELKM_OpenKeyDb(null, null) = 0, handle 1
    ZELKM_GetKeyItemByLabel(1, null) = 0, null
    trace JNI_DEBUG......KM_GetKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemByLabel, IsNullForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_GetKeyItemByLabel, text("a"), text("b"), text("c"), 0);
  callOn(env, nullptr, c_GetKeyItemByLabel, text("a"), text("b"), text("c"), 0);
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

class LegacyGetKeyItemListByLabel : public LegacyKeyItems {
 protected:
  void get() { call(c_GetKeyItemListByLabel, text("a.kdb"), text("secret"), text("my key")); }
};

TEST_F(LegacyGetKeyItemListByLabel, MakesAnArrayOfThree) {
  library().keyItemList = [] {
    return newKeyItemList({newKeyItem("one"), newKeyItem("two"), newKeyItem("three")});
  };
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemListByLabel(1, "my key") = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    FindClass("com/nelo/security/cmskeystore/KeyItem") = class cmskeystore/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 3
    NewObjectArray(3, class cmskeystore/KeyItem, null) = KeyItem[]#1
  )" + keyItemConverted("one", "KeyItem#1") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 0, KeyItem#1)
  )" + keyItemConverted("two", "KeyItem#2") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 1, KeyItem#2)
  )" + keyItemConverted("three", "KeyItem#3") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 2, KeyItem#3)
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return KeyItem[]#1
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemListByLabel, IsNullWhenNothingIsFound) {
  library().answers["ZELKM_GetKeyItemListByLabel"] = 117;
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemListByLabel(1, "my key") = 117
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemListByLabel, NeitherConvertsNorFreesAListThatCameWithAnError) {
  library().answers["ZELKM_GetKeyItemListByLabel"] = 18;
  library().outputsDespiteErrors = true;
  library().keyItemList = [] { return newKeyItemList({newKeyItem("one")}); };
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kOpened + R"(
    ZELKM_GetKeyItemListByLabel(1, "my key") = 18, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemListByLabel gets NON-NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    kLabelReleased + R"(
    return null
    held key item list#1
  )");
}

TEST_F(LegacyGetKeyItemListByLabel, IsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  get();
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kLabelToo + kNotOpened + kTwoReleases + kLabelReleased +
                    R"(
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemListByLabel, IsNullForANullEnvironmentObjectOrClass) {
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

class LegacyGetKeyItemsByPublicKey : public LegacyKeyItems {
 protected:
  void get(jint length) {
    call(c_GetKeyItemsByPublicKey, text("a.kdb"), text("secret"), length, bytes({0x30, 0x5b}));
  }
};

const std::string kKeyCopied = R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 5b]
)";

TEST_F(LegacyGetKeyItemsByPublicKey, ReadsConvertsAndFreesTheList) {
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get(2);
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kKeyCopied + kOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 0, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    FindClass("com/nelo/security/cmskeystore/KeyItem") = class cmskeystore/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 1
    NewObjectArray(1, class cmskeystore/KeyItem, null) = KeyItem[]#1
  )" + keyItemConverted("my key") +
                    R"(
    SetObjectArrayElement(KeyItem[]#1, 0, KeyItem#1)
    ZELKM_FreeKeyItemList(key item list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    R"(
    free(block#1)
    return KeyItem[]#1
    held elements of bytes#1
  )");
}

TEST_F(LegacyGetKeyItemsByPublicKey, IsNullWhenTheOpenOrTheLibraryFails) {
  library().answers["ZELKM_GetKeyItemsByPublicKey"] = 117;
  get(2);
  library().answers["ZELKM_OpenKeyDb"] = 16;
  get(2);
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kKeyCopied + kOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 117
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    R"(
    free(block#1)
    return null
    held elements of bytes#1
  )" + kClassAndTwoStrings +
                    R"(
    GetArrayLength(bytes#2) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#2
    GetByteArrayElements(bytes#2) = [30 5b]
  )" + kNotOpened + kTwoReleases +
                    R"(
    free(block#2)
    return null
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(LegacyGetKeyItemsByPublicKey, NeitherConvertsNorFreesAListThatCameWithAnError) {
  library().answers["ZELKM_GetKeyItemsByPublicKey"] = 18;
  library().outputsDespiteErrors = true;
  library().keyItemList = [] { return newKeyItemList({newKeyItem("my key")}); };
  get(2);
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + kKeyCopied + kOpened + R"(
    ZELKM_GetKeyItemsByPublicKey(1, 2, [30 5b]) = 18, key item list#1
    trace JNI_DEBUG......ZELKM_GetKeyItemsByPublicKey gets NON-NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTwoReleases +
                    R"(
    free(block#1)
    return null
    held elements of bytes#1
    held key item list#1
  )");
}

TEST_F(LegacyGetKeyItemsByPublicKey, LeavesTheStringsHeldWhenTheKeyHasAnotherLength) {
  get(3);
  EXPECT_TRANSCRIPT(kClassAndTwoStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(LegacyGetKeyItemsByPublicKey, AcquiresNothingForALengthBelowOne) {
  get(0);
  get(-1);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class cmskeystore/CMSKeyDatabase
    return null
    held nothing
    GetObjectClass(this) = class cmskeystore/CMSKeyDatabase
    return null
    held nothing
  )");
}

TEST_F(LegacyGetKeyItemsByPublicKey, IsNullForANullEnvironmentObjectOrClass) {
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
