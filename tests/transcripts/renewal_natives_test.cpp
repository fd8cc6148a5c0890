#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_CheckCertAsRenewal =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CheckCertAsRenewal;
constexpr auto c_RenewCert = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1RenewCert;

/** The natives that trace the certificate as a text and leave its copy behind. */
class RenewalNatives : public NativeTest {
 protected:
  RenewalNatives() : NativeTest("CMSKeyDatabase") {}

  const Bytes cert = {'C', 'E', 'R', 'T'};
};

class CheckCertAsRenewal : public RenewalNatives {};

TEST_F(CheckCertAsRenewal, AnswersWhatTheLibrarySays) {
  call(c_CheckCertAsRenewal, text("a.kdb"), text("secret"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 0, 1
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0100, after calling ZELKM_CheckCertAsRenewal, jrc=0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return true
    held block#1
    held elements of bytes#1
  )");
}

/** The byte goes to Java as it is, and its trace ends at the first zero of the certificate. */
TEST_F(CheckCertAsRenewal, PassesAnyByteOn) {
  library().flag = 2;
  call(c_CheckCertAsRenewal, text("a.kdb"), text("secret"), 3, bytes({'C', 0, 'T'}));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#1
    GetByteArrayElements(bytes#1) = [43 00 54]
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = C
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CheckCertAsRenewal(1, [43 00 54], 3) = 0, 2
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0100, after calling ZELKM_CheckCertAsRenewal, jrc=0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return true as 2
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(CheckCertAsRenewal, IsFalseWhenTheLibraryFails) {
  library().answers["ZELKM_CheckCertAsRenewal"] = 90;
  call(c_CheckCertAsRenewal, text("a.kdb"), text("secret"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 90
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0100, after calling ZELKM_CheckCertAsRenewal, jrc=90
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return false
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(CheckCertAsRenewal, AnswersAFlagThatCameWithAnError) {
  library().answers["ZELKM_CheckCertAsRenewal"] = 90;
  library().outputsDespiteErrors = true;
  call(c_CheckCertAsRenewal, text("a.kdb"), text("secret"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CheckCertAsRenewal(1, [43 45 52 54], 4) = 90, 1
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0100, after calling ZELKM_CheckCertAsRenewal, jrc=90
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return true
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(CheckCertAsRenewal, IsFalseWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_CheckCertAsRenewal, text("a.kdb"), text("wrong"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = wrong
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    return false
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(CheckCertAsRenewal, AsksTheLibraryEvenWithoutACopyOfTheCertificate) {
  library().flag = 0;
  call(c_CheckCertAsRenewal, text("a.kdb"), text("secret"), 5, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0010, cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0020, cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0030, Check Duplicate CertData = null
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CheckCertAsRenewal(1, null, 5) = 0, 0
    trace CMSKeyDatabase::c_CheckCertAsRenewal 0100, after calling ZELKM_CheckCertAsRenewal, jrc=0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return false
    held nothing
  )");
}

TEST_F(CheckCertAsRenewal, IsFalseForANullEnvironmentOrObject) {
  callOn(nullptr, self, c_CheckCertAsRenewal, text("a"), text("b"), 4, bytes(cert));
  callOn(env, nullptr, c_CheckCertAsRenewal, text("a"), text("b"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
  )");
}

class RenewCert : public RenewalNatives {};

TEST_F(RenewCert, HandsTheLibraryACopyAndLeavesIt) {
  call(c_RenewCert, text("a.kdb"), text("secret"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace JNI_DEBUG......Renew CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_RenewCert(1, [43 45 52 54], 4) = 0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(RenewCert, ClosesAndHandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_RenewCert"] = 117;
  call(c_RenewCert, text("a.kdb"), text("secret"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace JNI_DEBUG......Renew CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_RenewCert(1, [43 45 52 54], 4) = 117
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 117
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(RenewCert, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_RenewCert, text("a.kdb"), text("wrong"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [43 45 52 54]
    trace JNI_DEBUG......Renew CertData = CERT
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    return 16
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(RenewCert, AsksTheLibraryEvenWithoutACertificate) {
  library().answers["ZELKM_RenewCert"] = 65;
  call(c_RenewCert, text("a.kdb"), text("secret"), 0, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    trace JNI_DEBUG......Renew CertData = null
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_RenewCert(1, null, 0) = 65
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 65
    held nothing
  )");
}

TEST_F(RenewCert, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_RenewCert, text("a"), text("b"), 4, bytes(cert));
  callOn(env, nullptr, c_RenewCert, text("a"), text("b"), 4, bytes(cert));
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
