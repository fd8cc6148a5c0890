#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/subject_passage.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_CreatePersonalCertificateRequest =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1CreatePersonalCertificateRequest;
constexpr auto c_RecreatePersonalCertificateRequest =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1RecreatePersonalCertificateRequest;
constexpr auto c_ExtractPersonalCertificateRequest =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ExtractPersonalCertificateRequest;

const std::string kLabelAndFile = R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
)";
const std::string kLabelAndFileReleased = R"(
    ReleaseStringUTFChars("my key")
    ReleaseStringUTFChars("r.arm")
)";

class CreatePersonalCertificateRequest : public TokenNative {
 protected:
  void create(jint signatureAlgorithm) {
    call(c_CreatePersonalCertificateRequest, text("p11.so"), text("token"), text("1234"),
         text("my key"), 2048, dnItem({{"cn", "Alice"}}), signatureAlgorithm, text("r.arm"));
  }
};

TEST_F(CreatePersonalCertificateRequest, ConvertsTheSubjectBeforeAnyString) {
  create(1);
  EXPECT_TRANSCRIPT(subjectConverted() + kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_CreateNewCertReqSigExt(1, "my key", 2048, DN{cn="Alice"}, 1, null, 0, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(CreatePersonalCertificateRequest, AcceptsATokenWithoutPassword) {
  call(c_CreatePersonalCertificateRequest, text("p11.so"), text("token"), nullptr, text("my key"),
       256, dnItem({{"cn", "Alice"}}), 2, text("r.arm"));
  EXPECT_TRANSCRIPT(subjectConverted() + kOpenTokenStrings + kLabelAndFile + kOpenTokenOpened + R"(
    ZELKM_CreateNewCertReqSigExt(1, "my key", 256, DN{cn="Alice"}, 2, null, 0, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kOpenTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(CreatePersonalCertificateRequest, ClosesAndFreesTheSubjectAfterAFailure) {
  library().answers["ZELKM_CreateNewCertReqSigExt"] = 41;
  create(2);
  EXPECT_TRANSCRIPT(subjectConverted() + kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_CreateNewCertReqSigExt(1, "my key", 2048, DN{cn="Alice"}, 2, null, 0, "r.arm", 0, 0) = 41
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 41
    held nothing
  )");
}

TEST_F(CreatePersonalCertificateRequest, FreesTheSubjectWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  create(1);
  EXPECT_TRANSCRIPT(subjectConverted() + kTokenStrings + kLabelAndFile + kTokenNotOpened + R"(
    ZELKM_FreeDNItem(block#1)
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 137
    held nothing
  )");
}

TEST_F(CreatePersonalCertificateRequest, AcquiresNoStringForASubjectThatCannotBeConverted) {
  recorder().faults.failCall("GetObjectClass", 1);
  create(1);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(dn) = null
    return 116
    held nothing
  )");
}

TEST_F(CreatePersonalCertificateRequest, RefusesAnyAlgorithmButTwo) {
  create(0);
  create(3);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

TEST_F(CreatePersonalCertificateRequest, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  jobject dn = dnItem({{"cn", "Alice"}});
  constexpr auto create = c_CreatePersonalCertificateRequest;
  callOn(nullptr, self, create, given, given, given, given, 2048, dn, 1, given);
  callOn(env, nullptr, create, given, given, given, given, 2048, dn, 1, given);
  call(create, nullptr, given, given, given, 2048, dn, 1, given);
  call(create, given, nullptr, given, given, 2048, dn, 1, given);
  call(create, given, given, given, nullptr, 2048, dn, 1, given);
  call(create, given, given, given, given, 2048, nullptr, 1, given);
  call(create, given, given, given, given, 2048, dn, 1, nullptr);
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

class RecreatePersonalCertificateRequest : public TokenNative {
 protected:
  void recreate(jint signatureAlgorithm) {
    call(c_RecreatePersonalCertificateRequest, text("p11.so"), text("token"), text("1234"),
         text("my key"), signatureAlgorithm, text("r.arm"));
  }
};

TEST_F(RecreatePersonalCertificateRequest, WritesTheRequestSignedAnew) {
  recreate(2);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ReCreateCertReqSig(1, "my key", 2, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(RecreatePersonalCertificateRequest, AcceptsATokenWithoutPassword) {
  call(c_RecreatePersonalCertificateRequest, text("p11.so"), text("token"), nullptr, text("my key"),
       1, text("r.arm"));
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelAndFile + kOpenTokenOpened + R"(
    ZELKM_ReCreateCertReqSig(1, "my key", 1, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kOpenTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(RecreatePersonalCertificateRequest, ClosesAndHandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_ReCreateCertReqSig"] = 117;
  recreate(1);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ReCreateCertReqSig(1, "my key", 1, "r.arm", 0, 0) = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 117
    held nothing
  )");
}

TEST_F(RecreatePersonalCertificateRequest, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  recreate(1);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenNotOpened + kTokenReleases +
                    kLabelAndFileReleased + R"(
    return 137
    held nothing
  )");
}

TEST_F(RecreatePersonalCertificateRequest, RefusesAnyAlgorithmButTwo) {
  recreate(0);
  recreate(3);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

TEST_F(RecreatePersonalCertificateRequest, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  constexpr auto recreate = c_RecreatePersonalCertificateRequest;
  callOn(nullptr, self, recreate, given, given, given, given, 1, given);
  callOn(env, nullptr, recreate, given, given, given, given, 1, given);
  call(recreate, nullptr, given, given, given, 1, given);
  call(recreate, given, nullptr, given, given, 1, given);
  call(recreate, given, given, given, nullptr, 1, given);
  call(recreate, given, given, given, given, 1, nullptr);
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

class ExtractPersonalCertificateRequest : public TokenNative {
 protected:
  void extract() {
    call(c_ExtractPersonalCertificateRequest, text("p11.so"), text("token"), text("1234"),
         text("my key"), text("r.arm"));
  }
};

TEST_F(ExtractPersonalCertificateRequest, WritesTheRequest) {
  extract();
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ReCreateCertReq(1, "my key", "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(ExtractPersonalCertificateRequest, AcceptsATokenWithoutPassword) {
  call(c_ExtractPersonalCertificateRequest, text("p11.so"), text("token"), nullptr, text("my key"),
       text("r.arm"));
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelAndFile + kOpenTokenOpened + R"(
    ZELKM_ReCreateCertReq(1, "my key", "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kOpenTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(ExtractPersonalCertificateRequest, ClosesAndHandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_ReCreateCertReq"] = 117;
  extract();
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ReCreateCertReq(1, "my key", "r.arm", 0, 0) = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 117
    held nothing
  )");
}

TEST_F(ExtractPersonalCertificateRequest, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  extract();
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenNotOpened + kTokenReleases +
                    kLabelAndFileReleased + R"(
    return 137
    held nothing
  )");
}

TEST_F(ExtractPersonalCertificateRequest, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  constexpr auto extract = c_ExtractPersonalCertificateRequest;
  callOn(nullptr, self, extract, given, given, given, given, given);
  callOn(env, nullptr, extract, given, given, given, given, given);
  call(extract, nullptr, given, given, given, given);
  call(extract, given, nullptr, given, given, given);
  call(extract, given, given, given, nullptr, given);
  call(extract, given, given, given, given, nullptr);
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
