#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_IsPersonalCertificateRenewal =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1IsPersonalCertificateRenewal;
constexpr auto c_RenewPersonalCertificate =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1RenewPersonalCertificate;

/** Both trace the certificate as a text. */
const Bytes kCert = {'C', 'E', 'R', 'T'};
const std::string kCertCopied = R"(
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
)";

class IsPersonalCertificateRenewal : public TokenNative {
 protected:
  void ask(jint certLength, const Bytes& cert = kCert) {
    call(c_IsPersonalCertificateRenewal, text("p11.so"), text("token"), text("1234"), certLength,
         bytes(cert));
  }
};

const std::string kNumberedStrings = R"(
    GetStringUTFChars("p11.so")
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0010, cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0020, cCryptographicTokenLabel = token
    GetStringUTFChars("1234")
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0040, cCryptographicTokenPassword = 1234
)";

TEST_F(IsPersonalCertificateRenewal, AnswersWhatTheLibrarySays) {
  ask(4);
  EXPECT_TRANSCRIPT(kNumberedStrings + kCertCopied + R"(
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = CERT
  )" + kTokenOpened +
                    R"(
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 0, 1
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return true
    held elements of bytes#1
  )");
}

TEST_F(IsPersonalCertificateRenewal, HasANumberOfItsOwnForNoPassword) {
  library().flag = 0;
  call(c_IsPersonalCertificateRenewal, text("p11.so"), text("token"), nullptr, 4, bytes(kCert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("p11.so")
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0010, cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0020, cCryptographicTokenLabel = token
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0030, cCryptographicTokenPassword = NULL
  )" + kCertCopied + R"(
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = CERT
  )" + kOpenTokenOpened +
                    R"(
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 0, 0
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kOpenTokenReleases +
                    R"(
    return false
    held elements of bytes#1
  )");
}

/** The byte goes to Java as it is, and its trace ends at the first zero of the certificate. */
TEST_F(IsPersonalCertificateRenewal, PassesAnyByteOn) {
  library().flag = 2;
  ask(3, {'C', 0, 'T'});
  EXPECT_TRANSCRIPT(kNumberedStrings + R"(
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#1
    GetByteArrayElements(bytes#1) = [43 00 54]
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = C
  )" + kTokenOpened +
                    R"(
    ZELKM_CheckCertAsRenewal(1, [43 00 54], 3) = 0, 2
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return true as 2
    held elements of bytes#1
  )");
}

TEST_F(IsPersonalCertificateRenewal, IsFalseWhenTheLibraryFails) {
  library().answers["ZELKM_CheckCertAsRenewal"] = 90;
  ask(4);
  EXPECT_TRANSCRIPT(kNumberedStrings + kCertCopied + R"(
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = CERT
  )" + kTokenOpened +
                    R"(
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 90
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = 90
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return false
    held elements of bytes#1
  )");
}

TEST_F(IsPersonalCertificateRenewal, AnswersAFlagThatCameWithAnError) {
  library().answers["ZELKM_CheckCertAsRenewal"] = 90;
  library().outputsDespiteErrors = true;
  ask(4);
  EXPECT_TRANSCRIPT(kNumberedStrings + kCertCopied + R"(
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = CERT
  )" + kTokenOpened +
                    R"(
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 90, 1
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = 90
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return true
    held elements of bytes#1
  )");
}

TEST_F(IsPersonalCertificateRenewal, IsFalseWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  ask(4);
  EXPECT_TRANSCRIPT(kNumberedStrings + kCertCopied + R"(
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = CERT
  )" + kTokenNotOpened +
                    R"(
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return false
    held elements of bytes#1
  )");
}

TEST_F(IsPersonalCertificateRenewal, AsksTheLibraryEvenWithoutACopy) {
  library().flag = 0;
  ask(5);
  EXPECT_TRANSCRIPT(kNumberedStrings + R"(
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = null
  )" + kTokenOpened +
                    R"(
    ZELKM_CheckCertAsRenewal(1, null, 5) = 0, 0
    trace JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return false
    held nothing
  )");
}

TEST_F(IsPersonalCertificateRenewal, IsFalseForANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  jbyteArray cert = bytes(kCert);
  constexpr auto ask = c_IsPersonalCertificateRenewal;
  callOn(nullptr, self, ask, given, given, given, 4, cert);
  callOn(env, nullptr, ask, given, given, given, 4, cert);
  call(ask, nullptr, given, given, 4, cert);
  call(ask, given, nullptr, given, 4, cert);
  call(ask, given, given, given, 4, nullptr);
  call(ask, given, given, given, 0, cert);
  call(ask, given, given, given, -1, cert);
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
    return false
    held nothing
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

class RenewPersonalCertificate : public TokenNative {
 protected:
  void renew(jint certLength) {
    call(c_RenewPersonalCertificate, text("p11.so"), text("token"), text("1234"), certLength,
         bytes(kCert));
  }
};

TEST_F(RenewPersonalCertificate, HandsTheLibraryACopyAndWipesIt) {
  renew(4);
  EXPECT_TRANSCRIPT(kTokenStrings + kCertCopied + R"(
    trace JNI_DEBUG......Renew CertData = CERT
  )" + kTokenOpened +
                    R"(
    ZELKM_RenewCert(1, [43 45 52 54], 4) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

TEST_F(RenewPersonalCertificate, AcceptsATokenWithoutPassword) {
  call(c_RenewPersonalCertificate, text("p11.so"), text("token"), nullptr, 4, bytes(kCert));
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kCertCopied + R"(
    trace JNI_DEBUG......Renew CertData = CERT
  )" + kOpenTokenOpened +
                    R"(
    ZELKM_RenewCert(1, [43 45 52 54], 4) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kOpenTokenReleases +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

TEST_F(RenewPersonalCertificate, ClosesAndHandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_RenewCert"] = 117;
  renew(4);
  EXPECT_TRANSCRIPT(kTokenStrings + kCertCopied + R"(
    trace JNI_DEBUG......Renew CertData = CERT
  )" + kTokenOpened +
                    R"(
    ZELKM_RenewCert(1, [43 45 52 54], 4) = 117
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return 117
    held elements of bytes#1
  )");
}

TEST_F(RenewPersonalCertificate, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  renew(4);
  EXPECT_TRANSCRIPT(kTokenStrings + kCertCopied + R"(
    trace JNI_DEBUG......Renew CertData = CERT
  )" + kTokenNotOpened +
                    R"(
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    return 137
    held elements of bytes#1
  )");
}

TEST_F(RenewPersonalCertificate, AsksTheLibraryEvenWithoutACopy) {
  library().answers["ZELKM_RenewCert"] = 65;
  renew(5);
  EXPECT_TRANSCRIPT(kTokenStrings + R"(
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    trace JNI_DEBUG......Renew CertData = null
  )" + kTokenOpened +
                    R"(
    ZELKM_RenewCert(1, null, 5) = 65
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(RenewPersonalCertificate, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  jbyteArray cert = bytes(kCert);
  constexpr auto renew = c_RenewPersonalCertificate;
  callOn(nullptr, self, renew, given, given, given, 4, cert);
  callOn(env, nullptr, renew, given, given, given, 4, cert);
  call(renew, nullptr, given, given, 4, cert);
  call(renew, given, nullptr, given, 4, cert);
  call(renew, given, given, given, 4, nullptr);
  call(renew, given, given, given, 0, cert);
  call(renew, given, given, given, -1, cert);
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
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
