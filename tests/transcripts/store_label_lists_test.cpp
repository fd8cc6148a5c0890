#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"
#include "tests/transcripts/store_passages.h"

namespace zel::test {
namespace {

constexpr auto c_GetCSPNameList =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetCSPNameList;
constexpr auto c_BuildKeyLabelList =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1BuildKeyLabelList;

class GetCSPNameList : public StoreNative {};

/** An empty module name makes the library list stores instead of tokens. */
TEST_F(GetCSPNameList, DeliversTheNamesToTheClass) {
  library().tokenLabels = [] { return newLabelList({"CurrentUser/My", "CurrentUser/Root"}); };
  call(c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V")
    ZELKM_GetCryptoTokenLabelList("") = 0, label list#1
    NewStringUTF("CurrentUser/My")
    CallStaticVoidMethod(class basic/MSCertificateStore, addCSPName, "CurrentUser/My")
    NewStringUTF("CurrentUser/Root")
    CallStaticVoidMethod(class basic/MSCertificateStore, addCSPName, "CurrentUser/Root")
    ZELKM_FreeLabelList(label list#1)
    return 0
    held nothing
  )");
}

TEST_F(GetCSPNameList, DeliversNothingWithoutStores) {
  call(c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V")
    ZELKM_GetCryptoTokenLabelList("") = 0, null
    return 0
    held nothing
  )");
}

TEST_F(GetCSPNameList, EndsAtANameOfNullAndStillFreesTheList) {
  library().tokenLabels = [] { return newLabelList({"one", nullptr, "behind the end"}); };
  call(c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V")
    ZELKM_GetCryptoTokenLabelList("") = 0, label list#1
    NewStringUTF("one")
    CallStaticVoidMethod(class basic/MSCertificateStore, addCSPName, "one")
    ZELKM_FreeLabelList(label list#1)
    return 0
    held nothing
  )");
}

TEST_F(GetCSPNameList, CutsLongNames) {
  const std::string longName(512, 'x');
  const std::string cut(511, 'x');
  library().tokenLabels = [&] { return newLabelList({longName.c_str()}); };
  call(c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V")
    ZELKM_GetCryptoTokenLabelList("") = 0, label list#1
    NewStringUTF(")" +
                    cut + R"(")
    CallStaticVoidMethod(class basic/MSCertificateStore, addCSPName, ")" +
                    cut + R"(")
    ZELKM_FreeLabelList(label list#1)
    return 0
    held nothing
  )");
}

TEST_F(GetCSPNameList, HandsBackTheCodeAndLeavesWhatCameWithIt) {
  library().answers["ZELKM_GetCryptoTokenLabelList"] = 133;
  call(c_GetCSPNameList);
  library().outputsDespiteErrors = true;
  library().tokenLabels = [] { return newLabelList({"one"}); };
  call(c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V")
    ZELKM_GetCryptoTokenLabelList("") = 133
    return 133
    held nothing
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V")
    ZELKM_GetCryptoTokenLabelList("") = 133, label list#1
    return 133
    held label list#1
  )");
}

TEST_F(GetCSPNameList, AsksNothingWithoutAddCSPName) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/MSCertificateStore", "addCSPName");
  call(c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/MSCertificateStore, "addCSPName", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
  )");
}

TEST_F(GetCSPNameList, RefusesANullEnvironmentOrClass) {
  callOn(nullptr, type, c_GetCSPNameList);
  callOn(env, nullptr, c_GetCSPNameList);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

class StoreBuildKeyLabelList : public StoreNative {
 protected:
  void build() { call(c_BuildKeyLabelList, text("CurrentUser/My"), text("secret")); }
};

const std::string kMethodsLookedUp = R"(
    GetObjectClass(this) = class basic/MSCertificateStore
    GetMethodID(class basic/MSCertificateStore, "addKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/MSCertificateStore, "addPersonalKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/MSCertificateStore, "addSignerKeyLabel", "(Ljava/lang/String;)V")
)";

TEST_F(StoreBuildKeyLabelList, DeliversEachLabelTwice) {
  library().keyLabels = [] { return newLabelList({"mine", "signer", "also mine"}); };
  library().nextFlags = {1, 0, 2};
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "mine") = 0, 1
    NewStringUTF("mine")
    CallVoidMethod(this, addKeyLabel, "mine")
    CallVoidMethod(this, addPersonalKeyLabel, "mine")
    ZELKM_IsPrivateKeyPresent(1, "signer") = 0, 0
    NewStringUTF("signer")
    CallVoidMethod(this, addKeyLabel, "signer")
    CallVoidMethod(this, addSignerKeyLabel, "signer")
    ZELKM_IsPrivateKeyPresent(1, "also mine") = 0, 2
    NewStringUTF("also mine")
    CallVoidMethod(this, addKeyLabel, "also mine")
    CallVoidMethod(this, addPersonalKeyLabel, "also mine")
    ZELKM_FreeLabelList(label list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, DeliversNothingFromAnEmptyStore) {
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, OpensAStoreWithoutNameAndPassword) {
  call(c_BuildKeyLabelList, nullptr, nullptr);
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kNamelessStoreStrings + kNamelessStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, TakesANameWithoutAPassword) {
  call(c_BuildKeyLabelList, text("CurrentUser/My"), nullptr);
  EXPECT_TRANSCRIPT(kMethodsLookedUp + R"(
    GetStringUTFChars("CurrentUser/My")
    trace JNI_DEBUG......cCSPName = CurrentUser/My
    trace JNI_DEBUG......cPassword = NULL
    ZELKM_OpenKeyDbX({type 4, token "CurrentUser/My"}) = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("CurrentUser/My")
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, TakesAPasswordWithoutAName) {
  call(c_BuildKeyLabelList, nullptr, text("secret"));
  EXPECT_TRANSCRIPT(kMethodsLookedUp + R"(
    trace JNI_DEBUG......cCSPName = NULL
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cPassword = secret
    ZELKM_OpenKeyDbX({type 4, password "secret"}) = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, EndsAtALabelOfNullAndStillFreesTheList) {
  library().keyLabels = [] { return newLabelList({"one", "two", nullptr, "behind the end"}); };
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "one") = 0, 1
    NewStringUTF("one")
    CallVoidMethod(this, addKeyLabel, "one")
    CallVoidMethod(this, addPersonalKeyLabel, "one")
    ZELKM_IsPrivateKeyPresent(1, "two") = 0, 1
    NewStringUTF("two")
    CallVoidMethod(this, addKeyLabel, "two")
    CallVoidMethod(this, addPersonalKeyLabel, "two")
    ZELKM_FreeLabelList(label list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, CutsLongLabelsForJavaOnly) {
  const std::string longLabel(512, 'x');
  const std::string cut(511, 'x');
  library().keyLabels = [&] { return newLabelList({longLabel.c_str()}); };
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, ")" +
                    longLabel + R"(") = 0, 1
    NewStringUTF(")" +
                    cut + R"(")
    CallVoidMethod(this, addKeyLabel, ")" +
                    cut + R"(")
    CallVoidMethod(this, addPersonalKeyLabel, ")" +
                    cut + R"(")
    ZELKM_FreeLabelList(label list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, StopsWhereAPrivateKeyCannotBeAskedFor) {
  library().keyLabels = [] { return newLabelList({"mine", "broken", "never reached"}); };
  recorder().faults.failCall("ZELKM_IsPrivateKeyPresent", 2);
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "mine") = 0, 1
    NewStringUTF("mine")
    CallVoidMethod(this, addKeyLabel, "mine")
    CallVoidMethod(this, addPersonalKeyLabel, "mine")
    ZELKM_IsPrivateKeyPresent(1, "broken") = 1
    ZELKM_FreeLabelList(label list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 1
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, ClosesAndHandsBackTheCodeOfAFailedList) {
  library().answers["ZELKM_GetKeyDbLabelList"] = 18;
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 18
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 18
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, LeavesAListThatCameWithAnErrorHeld) {
  library().answers["ZELKM_GetKeyDbLabelList"] = 18;
  library().outputsDespiteErrors = true;
  library().keyLabels = [] { return newLabelList({"mine"}); };
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 18, label list#1
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    R"(
    return 18
    held label list#1
  )");
}

TEST_F(StoreBuildKeyLabelList, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kStoreStrings + kStoreNotOpened + kStoreReleases + R"(
    return 139
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, AcquiresNothingWithoutItsThreeMethods) {
  const std::string store = "com/nelo/zel/vosmar/basic/MSCertificateStore";
  jni.heap.removeMember(store, "addSignerKeyLabel");
  build();
  jni.heap.removeMember(store, "addPersonalKeyLabel");
  build();
  jni.heap.removeMember(store, "addKeyLabel");
  build();
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/MSCertificateStore
    GetMethodID(class basic/MSCertificateStore, "addKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/MSCertificateStore, "addPersonalKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/MSCertificateStore, "addSignerKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
    GetObjectClass(this) = class basic/MSCertificateStore
    GetMethodID(class basic/MSCertificateStore, "addKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/MSCertificateStore, "addPersonalKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
    GetObjectClass(this) = class basic/MSCertificateStore
    GetMethodID(class basic/MSCertificateStore, "addKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
  )");
}

TEST_F(StoreBuildKeyLabelList, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_BuildKeyLabelList, text("CurrentUser/My"), text("secret"));
  callOn(env, nullptr, c_BuildKeyLabelList, text("CurrentUser/My"), text("secret"));
  build();
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
