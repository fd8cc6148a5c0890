#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/key_item_passage.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1GetKeyItemByLabel;
constexpr auto c_DeleteKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1DeleteKeyItemByLabel;

const std::string kLabelToo = R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kLabelReleased = R"(
    ReleaseStringUTFChars("my key")
)";

class TokenGetKeyItemByLabel : public TokenNative {
 protected:
  void get(jboolean isRequestKey) {
    call(c_GetKeyItemByLabel, text("p11.so"), text("token"), text("1234"), text("my key"),
         isRequestKey);
  }
};

TEST_F(TokenGetKeyItemByLabel, ReadsConvertsAndFreesAKeyItem) {
  library().keyItem = [] { return newKeyItem("my key"); };
  get(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
  )" + keyItemConverted("my key") +
                    R"(
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return KeyItem#1
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, ReadsARequestFromAmongTheRequests) {
  library().reqKeyItem = [] { return newReqKeyItem("my key"); };
  get(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_GetReqKeyItemByLabel(1, "my key") = 0, request key item#1
    trace JNI_DEBUG......KM_GetReqKeyItem gets NON-NULL
    trace JNI_DEBUG......cReqKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    ZELKM_FreeReqKeyItem(request key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return KeyItem#1
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, AcceptsATokenWithoutPassword) {
  call(c_GetKeyItemByLabel, text("p11.so"), text("token"), nullptr, text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelToo + kOpenTokenOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, null
    trace JNI_DEBUG......KM_GetKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kOpenTokenReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, IsNullWhenNothingIsFound) {
  library().answers["ZELKM_GetReqKeyItemByLabel"] = 117;
  get(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_GetReqKeyItemByLabel(1, "my key") = 117
    trace JNI_DEBUG......KM_GetReqKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, LooksAmongTheRequestsForAnyFlagButZero) {
  get(2);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_GetReqKeyItemByLabel(1, "my key") = 0, null
    trace JNI_DEBUG......KM_GetReqKeyItem gets NULL
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, IsNullAndFreesTheItemWhenItCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/KeyItem");
  library().keyItem = [] { return newKeyItem("my key"); };
  get(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    trace JNI_DEBUG......jKeyItemClass = 0x0
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return null
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, IsNullWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  get(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenNotOpened + kTokenReleases + kLabelReleased +
                    R"(
    return null
    held nothing
  )");
}

TEST_F(TokenGetKeyItemByLabel, IsNullForANullEnvironmentObjectModuleOrLabel) {
  callOn(nullptr, self, c_GetKeyItemByLabel, text("a"), text("b"), text("c"), text("d"), 0);
  callOn(env, nullptr, c_GetKeyItemByLabel, text("a"), text("b"), text("c"), text("d"), 0);
  call(c_GetKeyItemByLabel, nullptr, text("b"), text("c"), text("d"), 0);
  call(c_GetKeyItemByLabel, text("a"), nullptr, text("c"), text("d"), 0);
  call(c_GetKeyItemByLabel, text("a"), text("b"), text("c"), nullptr, 0);
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
    return null
    held nothing
    return null
    held nothing
    return null
    held nothing
  )");
}

class TokenDeleteKeyItemByLabel : public TokenNative {
 protected:
  void remove(jboolean isRequestKey) {
    call(c_DeleteKeyItemByLabel, text("p11.so"), text("token"), text("1234"), text("my key"),
         isRequestKey);
  }
};

TEST_F(TokenDeleteKeyItemByLabel, DeletesAKey) {
  remove(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenDeleteKeyItemByLabel, DeletesARequestForAnyFlagButZero) {
  remove(2);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_DeleteRequestKeyPair(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenDeleteKeyItemByLabel, AcceptsATokenWithoutPassword) {
  call(c_DeleteKeyItemByLabel, text("p11.so"), text("token"), nullptr, text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelToo + kOpenTokenOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kOpenTokenReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenDeleteKeyItemByLabel, ClosesAndHandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_DeleteKey"] = 117;
  remove(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_DeleteKey(1, "my key") = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return 117
    held nothing
  )");
}

TEST_F(TokenDeleteKeyItemByLabel, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  remove(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kTokenNotOpened + kTokenReleases + kLabelReleased +
                    R"(
    return 137
    held nothing
  )");
}

/** What came with an error is the library's own. */
TEST_F(TokenDeleteKeyItemByLabel, NeitherUsesNorClosesAHandleThatCameWithAnError) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  library().outputsDespiteErrors = true;
  remove(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + R"(
    ZELKM_OpenKeyDbX({type 2, module "p11.so", token "token", password "1234"}) = 137, handle 1
  )" + kTokenReleases +
                    kLabelReleased + R"(
    return 137
    held handle 1
  )");
}

TEST_F(TokenDeleteKeyItemByLabel, RefusesANullEnvironmentObjectModuleOrLabel) {
  callOn(nullptr, self, c_DeleteKeyItemByLabel, text("a"), text("b"), text("c"), text("d"), 0);
  callOn(env, nullptr, c_DeleteKeyItemByLabel, text("a"), text("b"), text("c"), text("d"), 0);
  call(c_DeleteKeyItemByLabel, nullptr, text("b"), text("c"), text("d"), 0);
  call(c_DeleteKeyItemByLabel, text("a"), nullptr, text("c"), text("d"), 0);
  call(c_DeleteKeyItemByLabel, text("a"), text("b"), text("c"), nullptr, 0);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
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
