#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_IssueCertificate =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IssueCertificate;
constexpr auto c_IssueCertificateSig =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IssueCertificateSig;

/** The certificate file's name is acquired before the request file's, and released after it. */
const std::string kSixStrings = R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("issuer")
    trace JNI_DEBUG......cIssuerKeyLabel = issuer
    GetStringUTFChars("0x10")
    trace JNI_DEBUG......cSerialNumber = 0x10
    GetStringUTFChars("c.arm")
    trace JNI_DEBUG......cCertFileName = c.arm
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
)";
const std::string kSixReleases = R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("issuer")
    ReleaseStringUTFChars("0x10")
    ReleaseStringUTFChars("r.arm")
    ReleaseStringUTFChars("c.arm")
)";

class Issuing : public NativeTest {
 protected:
  Issuing() : NativeTest("CMSKeyDatabase") {}
};

class IssueCertificate : public Issuing {
 protected:
  void issue(jboolean flag) {
    call(c_IssueCertificate, text("a.kdb"), text("secret"), text("issuer"), 3, text("0x10"), 365,
         text("r.arm"), text("c.arm"), flag);
  }
};

TEST_F(IssueCertificate, ReadsTheRequestBeforeItOpensTheDatabase) {
  issue(JNI_TRUE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IssueCert(1, [30 df], 2, "issuer", 3, "0x10", 365, "c.arm", 1, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(IssueCertificate, TakesOnlyAFlagOfOneForTrue) {
  issue(static_cast<jboolean>(2));
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IssueCert(1, [30 df], 2, "issuer", 3, "0x10", 365, "c.arm", 0, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(IssueCertificate, OpensNoDatabaseForARequestThatCannotBeRead) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 87;
  issue(JNI_TRUE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 87
  )" + kSixReleases +
                    R"(
    return 87
    held nothing
  )");
}

TEST_F(IssueCertificate, FreesTheRequestWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  issue(JNI_TRUE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 16
    held nothing
  )");
}

TEST_F(IssueCertificate, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_IssueCert"] = 125;
  issue(JNI_FALSE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IssueCert(1, [30 df], 2, "issuer", 3, "0x10", 365, "c.arm", 0, 0, 0) = 125
    ZELKM_CloseKeyDb(1) = 0
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 125
    held nothing
  )");
}

TEST_F(IssueCertificate, RefusesANullWhereAStringIsNeededBeforeItAsksForTheClass) {
  const auto issueWith = [this](jstring issuer, jstring serial, jstring request, jstring cert) {
    call(c_IssueCertificate, text("a.kdb"), text("secret"), issuer, 3, serial, 365, request, cert,
         JNI_TRUE);
  };
  jstring given = text("given");
  issueWith(nullptr, given, given, given);
  issueWith(given, nullptr, given, given);
  issueWith(given, given, nullptr, given);
  issueWith(given, given, given, nullptr);
  EXPECT_TRANSCRIPT(R"(
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

TEST_F(IssueCertificate, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_IssueCertificate, text("a"), text("p"), text("i"), 3, text("1"), 365,
         text("r"), text("c"), JNI_TRUE);
  callOn(env, nullptr, c_IssueCertificate, text("a"), text("p"), text("i"), 3, text("1"), 365,
         text("r"), text("c"), JNI_TRUE);
  issue(JNI_TRUE);
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

TEST_F(IssueCertificate, TracesANameThatCannotBeAcquiredAsNull) {
  recorder().faults.failCall("GetStringUTFChars", 5);
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 87;
  issue(JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("issuer")
    trace JNI_DEBUG......cIssuerKeyLabel = issuer
    GetStringUTFChars("0x10")
    trace JNI_DEBUG......cSerialNumber = 0x10
    GetStringUTFChars("c.arm") = null
    trace JNI_DEBUG......cCertFileName = null
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_Base64DecodeFileToBuf("r.arm") = 87
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("issuer")
    ReleaseStringUTFChars("0x10")
    ReleaseStringUTFChars("r.arm")
    return 87
    held nothing
  )");
}

class IssueCertificateSig : public Issuing {
 protected:
  void issue(jint algorithm, jboolean flag) {
    call(c_IssueCertificateSig, text("a.kdb"), text("secret"), text("issuer"), 3, text("0x10"), 365,
         algorithm, text("r.arm"), text("c.arm"), flag);
  }
};

TEST_F(IssueCertificateSig, PassesTheAlgorithmBeforeTheFileName) {
  issue(2, JNI_TRUE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IssueCertSig(1, [30 df], 2, "issuer", 3, "0x10", 365, 2, "c.arm", 1, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(IssueCertificateSig, TakesOnlyAFlagOfOneForTrueAndClosesWhenTheLibraryFails) {
  library().answers["ZELKM_IssueCertSig"] = 126;
  issue(1, static_cast<jboolean>(2));
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IssueCertSig(1, [30 df], 2, "issuer", 3, "0x10", 365, 1, "c.arm", 0, 0, 0) = 126
    ZELKM_CloseKeyDb(1) = 0
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 126
    held nothing
  )");
}

TEST_F(IssueCertificateSig, OpensNoDatabaseForARequestThatCannotBeRead) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 96;
  issue(1, JNI_TRUE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 96
  )" + kSixReleases +
                    R"(
    return 96
    held nothing
  )");
}

TEST_F(IssueCertificateSig, FreesTheRequestWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  issue(1, JNI_TRUE);
  EXPECT_TRANSCRIPT(kSixStrings + R"(
    ZELKM_Base64DecodeFileToBuf("r.arm") = 0, buffer#1 [30 df]
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    free(buffer#1)
  )" + kSixReleases +
                    R"(
    return 16
    held nothing
  )");
}

TEST_F(IssueCertificateSig, RefusesAnUnknownSignatureAlgorithmBeforeAnyString) {
  issue(0, JNI_TRUE);
  issue(3, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
  )");
}

TEST_F(IssueCertificateSig, RefusesANullWhereAStringIsNeededBeforeItAsksForTheClass) {
  const auto issueWith = [this](jstring issuer, jstring serial, jstring request, jstring cert) {
    call(c_IssueCertificateSig, text("a.kdb"), text("secret"), issuer, 3, serial, 365, 1, request,
         cert, JNI_TRUE);
  };
  jstring given = text("given");
  issueWith(nullptr, given, given, given);
  issueWith(given, nullptr, given, given);
  issueWith(given, given, nullptr, given);
  issueWith(given, given, given, nullptr);
  EXPECT_TRANSCRIPT(R"(
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

TEST_F(IssueCertificateSig, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_IssueCertificateSig, text("a"), text("p"), text("i"), 3, text("1"), 365,
         1, text("r"), text("c"), JNI_TRUE);
  callOn(env, nullptr, c_IssueCertificateSig, text("a"), text("p"), text("i"), 3, text("1"), 365, 1,
         text("r"), text("c"), JNI_TRUE);
  issue(1, JNI_TRUE);
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
