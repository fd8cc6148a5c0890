#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_BuildKeyLabelList =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1BuildKeyLabelList;

class TokenBuildKeyLabelList : public TokenNative {
 protected:
  void build() { call(c_BuildKeyLabelList, text("p11.so"), text("token"), text("1234")); }
};

const std::string kMethodsLookedUp = R"(
    GetObjectClass(this) = class basic/CryptographicToken
    GetMethodID(class basic/CryptographicToken, "addPersonalKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/CryptographicToken, "addSignerKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/CryptographicToken, "addRequestKeyLabel", "(Ljava/lang/String;)V")
)";

TEST_F(TokenBuildKeyLabelList, SortsTheLabelsIntoThreeKinds) {
  library().keyLabels = [] { return newLabelList({"mine", "signer", "also mine"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  library().nextFlags = {1, 0, 2};
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "mine") = 0, 1
    NewStringUTF("mine")
    CallVoidMethod(this, addPersonalKeyLabel, "mine")
    ZELKM_IsPrivateKeyPresent(1, "signer") = 0, 0
    NewStringUTF("signer")
    CallVoidMethod(this, addSignerKeyLabel, "signer")
    ZELKM_IsPrivateKeyPresent(1, "also mine") = 0, 2
    NewStringUTF("also mine")
    CallVoidMethod(this, addPersonalKeyLabel, "also mine")
    ZELKM_FreeLabelList(label list#1)
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
    NewStringUTF("request")
    CallVoidMethod(this, addRequestKeyLabel, "request")
    ZELKM_FreeLabelList(label list#2)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, DeliversNothingFromAnEmptyTokenWithoutPassword) {
  call(c_BuildKeyLabelList, text("p11.so"), text("token"), nullptr);
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kOpenTokenStrings + kOpenTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_GetReqKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
  )" + kOpenTokenReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, EndsEachListAtALabelOfNullAndStillFreesIt) {
  library().keyLabels = [] { return newLabelList({nullptr, "behind the end"}); };
  library().requestLabels = [] { return newLabelList({"request", nullptr, "behind the end"}); };
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_FreeLabelList(label list#1)
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
    NewStringUTF("request")
    CallVoidMethod(this, addRequestKeyLabel, "request")
    ZELKM_FreeLabelList(label list#2)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, CallsOnWithNullWhenAStringCannotBeMade) {
  recorder().faults.failCall("NewStringUTF", 1);
  library().keyLabels = [] { return newLabelList({"mine"}); };
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "mine") = 0, 1
    NewStringUTF("mine") = null
    CallVoidMethod(this, addPersonalKeyLabel, null)
    ZELKM_FreeLabelList(label list#1)
    ZELKM_GetReqKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, CutsLongLabelsForJavaOnly) {
  const std::string longLabel(512, 'x');
  const std::string cut(511, 'x');
  library().keyLabels = [&] { return newLabelList({longLabel.c_str()}); };
  library().requestLabels = library().keyLabels;
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, ")" +
                    longLabel + R"(") = 0, 1
    NewStringUTF(")" +
                    cut + R"(")
    CallVoidMethod(this, addPersonalKeyLabel, ")" +
                    cut + R"(")
    ZELKM_FreeLabelList(label list#1)
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
    NewStringUTF(")" +
                    cut + R"(")
    CallVoidMethod(this, addRequestKeyLabel, ")" +
                    cut + R"(")
    ZELKM_FreeLabelList(label list#2)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, StopsWhereAPrivateKeyCannotBeAskedFor) {
  library().keyLabels = [] { return newLabelList({"mine", "broken", "never reached"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  recorder().faults.failCall("ZELKM_IsPrivateKeyPresent", 2);
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "mine") = 0, 1
    NewStringUTF("mine")
    CallVoidMethod(this, addPersonalKeyLabel, "mine")
    ZELKM_IsPrivateKeyPresent(1, "broken") = 1
    ZELKM_FreeLabelList(label list#1)
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 1
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, ReadsNoRequestsWhenTheKeyListFails) {
  library().answers["ZELKM_GetKeyDbLabelList"] = 18;
  library().requestLabels = [] { return newLabelList({"request"}); };
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 18
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 18
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, LeavesListsThatCameWithAnErrorHeld) {
  library().outputsDespiteErrors = true;
  library().keyLabels = [] { return newLabelList({"mine"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  library().answers["ZELKM_GetReqKeyDbLabelList"] = 18;
  build();
  library().answers["ZELKM_GetKeyDbLabelList"] = 19;
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenOpened + R"(
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_IsPrivateKeyPresent(1, "mine") = 0, 1
    NewStringUTF("mine")
    CallVoidMethod(this, addPersonalKeyLabel, "mine")
    ZELKM_FreeLabelList(label list#1)
    ZELKM_GetReqKeyDbLabelList(1) = 18, label list#2
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 18
    held label list#2
  )" + kMethodsLookedUp +
                    kTokenStrings + R"(
    ZELKM_OpenKeyDbX({type 2, module "p11.so", token "token", password "1234"}) = 0, handle 2
    ZELKM_GetKeyDbLabelList(2) = 19, label list#3
    ZELKM_CloseKeyDb(2) = 0
  )" + kTokenReleases +
                    R"(
    return 19
    held label list#2
    held label list#3
  )");
}

TEST_F(TokenBuildKeyLabelList, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  build();
  EXPECT_TRANSCRIPT(kMethodsLookedUp + kTokenStrings + kTokenNotOpened + kTokenReleases + R"(
    return 137
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, AcquiresNothingWithoutItsThreeMethods) {
  const std::string token = "com/nelo/zel/vosmar/basic/CryptographicToken";
  jni.heap.removeMember(token, "addRequestKeyLabel");
  build();
  jni.heap.removeMember(token, "addSignerKeyLabel");
  build();
  jni.heap.removeMember(token, "addPersonalKeyLabel");
  build();
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CryptographicToken
    GetMethodID(class basic/CryptographicToken, "addPersonalKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/CryptographicToken, "addSignerKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/CryptographicToken, "addRequestKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
    GetObjectClass(this) = class basic/CryptographicToken
    GetMethodID(class basic/CryptographicToken, "addPersonalKeyLabel", "(Ljava/lang/String;)V")
    GetMethodID(class basic/CryptographicToken, "addSignerKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
    GetObjectClass(this) = class basic/CryptographicToken
    GetMethodID(class basic/CryptographicToken, "addPersonalKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
  )");
}

TEST_F(TokenBuildKeyLabelList, RefusesANullEnvironmentObjectModuleLabelOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_BuildKeyLabelList, text("p11.so"), text("token"), text("1234"));
  callOn(env, nullptr, c_BuildKeyLabelList, text("p11.so"), text("token"), text("1234"));
  call(c_BuildKeyLabelList, nullptr, text("token"), text("1234"));
  call(c_BuildKeyLabelList, text("p11.so"), nullptr, text("1234"));
  build();
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
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
