#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_GetCryptoTokenLabelList =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1GetCryptoTokenLabelList;
constexpr auto c_IsPasswordRequired =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1IsPasswordRequired;
constexpr auto c_ChangeKeyDbPwd =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ChangeKeyDbPwd;

class GetCryptoTokenLabelList : public TokenNative {};

TEST_F(GetCryptoTokenLabelList, DeliversTheLabelsToTheClass) {
  library().tokenLabels = [] { return newLabelList({"one", "two"}); };
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    ZELKM_GetCryptoTokenLabelList("p11.so") = 0, label list#1
    NewStringUTF("one")
    CallStaticVoidMethod(class basic/CryptographicToken, addTokenLabel, "one")
    NewStringUTF("two")
    CallStaticVoidMethod(class basic/CryptographicToken, addTokenLabel, "two")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("p11.so")
    return 0
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, DeliversNothingForAModuleWithoutTokens) {
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    ZELKM_GetCryptoTokenLabelList("p11.so") = 0, null
    ReleaseStringUTFChars("p11.so")
    return 0
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, EndsAtALabelOfNullAndStillFreesTheList) {
  library().tokenLabels = [] { return newLabelList({"one", nullptr, "behind the end"}); };
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    ZELKM_GetCryptoTokenLabelList("p11.so") = 0, label list#1
    NewStringUTF("one")
    CallStaticVoidMethod(class basic/CryptographicToken, addTokenLabel, "one")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("p11.so")
    return 0
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, CutsLongLabels) {
  const std::string longLabel(512, 'x');
  const std::string cut(511, 'x');
  library().tokenLabels = [&] { return newLabelList({longLabel.c_str()}); };
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    ZELKM_GetCryptoTokenLabelList("p11.so") = 0, label list#1
    NewStringUTF(")" +
                    cut + R"(")
    CallStaticVoidMethod(class basic/CryptographicToken, addTokenLabel, ")" +
                    cut + R"(")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("p11.so")
    return 0
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, CallsOnWithNullWhenAStringCannotBeMade) {
  recorder().faults.failCall("NewStringUTF", 1);
  library().tokenLabels = [] { return newLabelList({"one"}); };
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    ZELKM_GetCryptoTokenLabelList("p11.so") = 0, label list#1
    NewStringUTF("one") = null
    CallStaticVoidMethod(class basic/CryptographicToken, addTokenLabel, null)
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("p11.so")
    return 0
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, HandsBackTheCodeOfAModuleThatCannotBeLoaded) {
  library().answers["ZELKM_GetCryptoTokenLabelList"] = 133;
  call(c_GetCryptoTokenLabelList, text("none.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("none.so")
    trace JNI_DEBUG......cCryptographicModuleName = none.so
    ZELKM_GetCryptoTokenLabelList("none.so") = 133
    ReleaseStringUTFChars("none.so")
    return 133
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, LeavesAListThatCameWithAnErrorHeld) {
  library().answers["ZELKM_GetCryptoTokenLabelList"] = 133;
  library().outputsDespiteErrors = true;
  library().tokenLabels = [] { return newLabelList({"one"}); };
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V")
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    ZELKM_GetCryptoTokenLabelList("p11.so") = 133, label list#1
    ReleaseStringUTFChars("p11.so")
    return 133
    held label list#1
  )");
}

TEST_F(GetCryptoTokenLabelList, AcquiresNothingWithoutAddTokenLabel) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/CryptographicToken", "addTokenLabel");
  call(c_GetCryptoTokenLabelList, text("p11.so"));
  EXPECT_TRANSCRIPT(R"(
    GetStaticMethodID(class basic/CryptographicToken, "addTokenLabel", "(Ljava/lang/String;)V") = null
    return 65
    held nothing
  )");
}

TEST_F(GetCryptoTokenLabelList, RefusesANullEnvironmentClassOrModule) {
  callOn(nullptr, type, c_GetCryptoTokenLabelList, text("p11.so"));
  callOn(env, nullptr, c_GetCryptoTokenLabelList, text("p11.so"));
  call(c_GetCryptoTokenLabelList, nullptr);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
    return 65
    held nothing
  )");
}

class TokenIsPasswordRequired : public TokenNative {};

TEST_F(TokenIsPasswordRequired, AsksWithoutAPassword) {
  call(c_IsPasswordRequired, text("p11.so"), text("token"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    ZELKM_IsPasswordRequired({type 2, module "p11.so", token "token"}) = 0, 1
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    return true
    held nothing
  )");
}

TEST_F(TokenIsPasswordRequired, IsTrueOnlyForAFlagOfOne) {
  library().nextFlags = {0, 2};
  call(c_IsPasswordRequired, text("p11.so"), text("token"));
  call(c_IsPasswordRequired, text("p11.so"), text("token"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    ZELKM_IsPasswordRequired({type 2, module "p11.so", token "token"}) = 0, 0
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    return false
    held nothing
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    ZELKM_IsPasswordRequired({type 2, module "p11.so", token "token"}) = 0, 2
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    return false
    held nothing
  )");
}

TEST_F(TokenIsPasswordRequired, IsFalseForAnyCodeWhateverTheFlag) {
  library().answers["ZELKM_IsPasswordRequired"] = 137;
  library().outputsDespiteErrors = true;
  call(c_IsPasswordRequired, text("p11.so"), text("token"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    ZELKM_IsPasswordRequired({type 2, module "p11.so", token "token"}) = 137, 1
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    return false
    held nothing
  )");
}

TEST_F(TokenIsPasswordRequired, IsFalseForANullEnvironmentObjectModuleOrLabel) {
  callOn(nullptr, self, c_IsPasswordRequired, text("p11.so"), text("token"));
  callOn(env, nullptr, c_IsPasswordRequired, text("p11.so"), text("token"));
  call(c_IsPasswordRequired, nullptr, text("token"));
  call(c_IsPasswordRequired, text("p11.so"), nullptr);
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
    return false
    held nothing
    return false
    held nothing
  )");
}

class TokenChangeKeyDbPwd : public TokenNative {};

TEST_F(TokenChangeKeyDbPwd, ChangesThePasswordWithoutOpening) {
  call(c_ChangeKeyDbPwd, text("p11.so"), text("token"), text("1234"), text("5678"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    GetStringUTFChars("1234")
    trace JNI_DEBUG......cCryptographicTokenOldPassword = 1234
    GetStringUTFChars("5678")
    trace JNI_DEBUG......cCryptographicTokenNewPassword = 5678
    ZELKM_ChangeKeyDbPwdX({type 2, module "p11.so", token "token", password "1234", new password "5678"}) = 0
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    ReleaseStringUTFChars("1234")
    ReleaseStringUTFChars("5678")
    return 0
    held nothing
  )");
}

TEST_F(TokenChangeKeyDbPwd, HandsBackTheCodeOfAWrongPassword) {
  library().answers["ZELKM_ChangeKeyDbPwdX"] = 139;
  call(c_ChangeKeyDbPwd, text("p11.so"), text("token"), text("wrong"), text("5678"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cCryptographicTokenOldPassword = wrong
    GetStringUTFChars("5678")
    trace JNI_DEBUG......cCryptographicTokenNewPassword = 5678
    ZELKM_ChangeKeyDbPwdX({type 2, module "p11.so", token "token", password "wrong", new password "5678"}) = 139
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("5678")
    return 139
    held nothing
  )");
}

/** Elsewhere a token may have no password; here all four strings are needed. */
TEST_F(TokenChangeKeyDbPwd, RefusesANullEnvironmentObjectOrString) {
  callOn(nullptr, self, c_ChangeKeyDbPwd, text("a"), text("b"), text("c"), text("d"));
  callOn(env, nullptr, c_ChangeKeyDbPwd, text("a"), text("b"), text("c"), text("d"));
  call(c_ChangeKeyDbPwd, nullptr, text("b"), text("c"), text("d"));
  call(c_ChangeKeyDbPwd, text("a"), nullptr, text("c"), text("d"));
  call(c_ChangeKeyDbPwd, text("a"), text("b"), nullptr, text("d"));
  call(c_ChangeKeyDbPwd, text("a"), text("b"), text("c"), nullptr);
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
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
