#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_ExtractCert = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCert;
constexpr auto c_ExtractCertReq = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCertReq;
constexpr auto c_ExtractCertReqSig =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCertReqSig;

class Extraction : public NativeTest {
 protected:
  Extraction() : NativeTest("CMSKeyDatabase") {}
};

class ExtractCert : public Extraction {};

TEST_F(ExtractCert, WritesTheCertificateInTheGivenFormat) {
  call(c_ExtractCert, text("a.kdb"), text("secret"), text("my key"), text("a.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportCert(1, "my key", "a.arm", 1) = 0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    ReleaseStringUTFChars("a.arm")
    return 0
    held nothing
  )");
}

TEST_F(ExtractCert, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_ExportCert"] = 117;
  call(c_ExtractCert, text("a.kdb"), text("secret"), text("other"), text("a.der"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("other")
    trace JNI_DEBUG......cKeyLabel = other
    GetStringUTFChars("a.der")
    trace JNI_DEBUG......cCertFileName = a.der
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ExportCert(1, "other", "a.der", 0) = 117
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("other")
    ReleaseStringUTFChars("a.der")
    return 117
    held nothing
  )");
}

TEST_F(ExtractCert, WritesNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_ExtractCert, text("a.kdb"), text("wrong"), text("my key"), text("a.arm"), JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    GetStringUTFChars("a.arm")
    trace JNI_DEBUG......cCertFileName = a.arm
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my key")
    ReleaseStringUTFChars("a.arm")
    return 16
    held nothing
  )");
}

TEST_F(ExtractCert, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ExtractCert, text("a"), text("p"), text("l"), text("f"), JNI_TRUE);
  callOn(env, nullptr, c_ExtractCert, text("a"), text("p"), text("l"), text("f"), JNI_TRUE);
  call(c_ExtractCert, text("a"), text("p"), text("l"), text("f"), JNI_TRUE);
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

class ExtractCertReq : public Extraction {};

TEST_F(ExtractCertReq, WritesTheRequest) {
  call(c_ExtractCertReq, text("a.kdb"), text("secret"), text("my request"), text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReq(1, "my request", "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    ReleaseStringUTFChars("r.arm")
    return 0
    held nothing
  )");
}

TEST_F(ExtractCertReq, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_ReCreateCertReq"] = 117;
  call(c_ExtractCertReq, text("a.kdb"), text("secret"), text("other"), text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("other")
    trace JNI_DEBUG......cKeyLabel = other
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReq(1, "other", "r.arm", 0, 0) = 117
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("other")
    ReleaseStringUTFChars("r.arm")
    return 117
    held nothing
  )");
}

TEST_F(ExtractCertReq, WritesNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 101;
  call(c_ExtractCertReq, text("a.kdb"), text("secret"), text("my request"), text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 101
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    ReleaseStringUTFChars("r.arm")
    return 101
    held nothing
  )");
}

TEST_F(ExtractCertReq, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ExtractCertReq, text("a"), text("p"), text("l"), text("f"));
  callOn(env, nullptr, c_ExtractCertReq, text("a"), text("p"), text("l"), text("f"));
  call(c_ExtractCertReq, text("a"), text("p"), text("l"), text("f"));
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

class ExtractCertReqSig : public Extraction {};

TEST_F(ExtractCertReqSig, WritesTheRequestSignedWithTheAlgorithm) {
  call(c_ExtractCertReqSig, text("a.kdb"), text("secret"), text("my request"), 2, text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReqSig(1, "my request", 2, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    ReleaseStringUTFChars("r.arm")
    return 0
    held nothing
  )");
}

TEST_F(ExtractCertReqSig, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_ReCreateCertReqSig"] = 133;
  call(c_ExtractCertReqSig, text("a.kdb"), text("secret"), text("my request"), 1, text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReqSig(1, "my request", 1, "r.arm", 0, 0) = 133
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    ReleaseStringUTFChars("r.arm")
    return 133
    held nothing
  )");
}

TEST_F(ExtractCertReqSig, WritesNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 101;
  call(c_ExtractCertReqSig, text("a.kdb"), text("secret"), text("my request"), 1, text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my request")
    trace JNI_DEBUG......cKeyLabel = my request
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
    ZELKM_OpenKeyDb("a.kdb", "secret") = 101
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my request")
    ReleaseStringUTFChars("r.arm")
    return 101
    held nothing
  )");
}

TEST_F(ExtractCertReqSig, RefusesAnUnknownSignatureAlgorithmBeforeAnyString) {
  for (jint algorithm : {0, 3}) {
    call(c_ExtractCertReqSig, text("a.kdb"), text("secret"), text("l"), algorithm, text("r.arm"));
  }
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
  )");
}

TEST_F(ExtractCertReqSig, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ExtractCertReqSig, text("a"), text("p"), text("l"), 1, text("f"));
  callOn(env, nullptr, c_ExtractCertReqSig, text("a"), text("p"), text("l"), 1, text("f"));
  call(c_ExtractCertReqSig, text("a"), text("p"), text("l"), 1, text("f"));
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
