#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/subject_passage.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_CreateSelfSignedCertificate =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1CreateSelfSignedCertificate;

class TokenCreateSelfSignedCertificate : public TokenNative {
 protected:
  void create(jint signatureAlgorithm) {
    call(c_CreateSelfSignedCertificate, text("p11.so"), text("token"), text("1234"), 3,
         text("my key"), 2048, dnItem({{"cn", "Alice"}}), 365, signatureAlgorithm);
  }
};

const std::string kLabelToo = R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kLabelReleased = R"(
    ReleaseStringUTFChars("my key")
)";

TEST_F(TokenCreateSelfSignedCertificate, ConvertsTheSubjectBeforeAnyString) {
  create(1);
  EXPECT_TRANSCRIPT(subjectConverted() + kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 0, 3, 2048, DN{cn="Alice"}, 365, 1, null, 0, null, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenCreateSelfSignedCertificate, AcceptsATokenWithoutPassword) {
  call(c_CreateSelfSignedCertificate, text("p11.so"), text("token"), nullptr, 1, text("my key"),
       256, dnItem({{"cn", "Alice"}}), -1, 2);
  EXPECT_TRANSCRIPT(subjectConverted() + kOpenTokenStrings + kLabelToo + kOpenTokenOpened + R"(
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 0, 1, 256, DN{cn="Alice"}, -1, 2, null, 0, null, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kOpenTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenCreateSelfSignedCertificate, ClosesAndFreesTheSubjectAfterAFailure) {
  library().answers["ZELKM_CreateSelfSignedCertSigExt"] = 41;
  create(2);
  EXPECT_TRANSCRIPT(subjectConverted() + kTokenStrings + kLabelToo + kTokenOpened + R"(
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 0, 3, 2048, DN{cn="Alice"}, 365, 2, null, 0, null, 0) = 41
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 41
    held nothing
  )");
}

TEST_F(TokenCreateSelfSignedCertificate, FreesTheSubjectWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  create(1);
  EXPECT_TRANSCRIPT(subjectConverted() + kTokenStrings + kLabelToo + kTokenNotOpened + R"(
    ZELKM_FreeDNItem(block#1)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 137
    held nothing
  )");
}

TEST_F(TokenCreateSelfSignedCertificate, AcquiresNoStringForASubjectThatCannotBeConverted) {
  recorder().faults.failCall("GetObjectClass", 1);
  create(1);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(dn) = null
    return 116
    held nothing
  )");
}

TEST_F(TokenCreateSelfSignedCertificate, RefusesAnyAlgorithmButTwo) {
  create(0);
  create(3);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

TEST_F(TokenCreateSelfSignedCertificate, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  jobject dn = dnItem({{"cn", "Alice"}});
  constexpr auto create = c_CreateSelfSignedCertificate;
  callOn(nullptr, self, create, given, given, given, 3, given, 2048, dn, 365, 1);
  callOn(env, nullptr, create, given, given, given, 3, given, 2048, dn, 365, 1);
  call(create, nullptr, given, given, 3, given, 2048, dn, 365, 1);
  call(create, given, nullptr, given, 3, given, 2048, dn, 365, 1);
  call(create, given, given, given, 3, nullptr, 2048, dn, 365, 1);
  call(create, given, given, given, 3, given, 2048, nullptr, 365, 1);
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
