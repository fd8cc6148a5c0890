#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_ImportPersonalCertificateRequest =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ImportPersonalCertificateRequest;

class ImportPersonalCertificateRequest : public TokenNative {
 protected:
  /** import() passes a request of two bytes, bytes#1, and a key of three, bytes#2. */
  void import(jint requestLength, jint keyLength) {
    call(c_ImportPersonalCertificateRequest, text("p11.so"), text("token"), text("1234"),
         text("my key"), requestLength, request, keyLength, key);
  }

  jbyteArray request = bytes({0x30, 0xe9});
  jbyteArray key = bytes({0x30, 0x01, 0x1f});
};

const std::string kLabelToo = R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kRequestCopied = R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 e9]
)";
const std::string kKeyCopied = R"(
    GetArrayLength(bytes#2) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#2
    GetByteArrayElements(bytes#2) = [30 01 1f]
)";
const std::string kLabelReleased = R"(
    ReleaseStringUTFChars("my key")
)";

TEST_F(ImportPersonalCertificateRequest, StoresRequestAndKeyAndWipesTheCopies) {
  import(2, 3);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kRequestCopied + kKeyCopied + kTokenOpened + R"(
    ZELKM_InsertReqKey(1, "my key", 2, [30 e9], 3, [30 01 1f]) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(ImportPersonalCertificateRequest, CopiesNoKeyForALengthBelowOne) {
  call(c_ImportPersonalCertificateRequest, text("p11.so"), text("token"), nullptr, text("my key"),
       2, request, 0, key);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelToo + kRequestCopied + kOpenTokenOpened + R"(
    ZELKM_InsertReqKey(1, "my key", 2, [30 e9], 0, null) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kOpenTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

/** A negative length reaches the library as it is, in a field without a sign. */
TEST_F(ImportPersonalCertificateRequest, PassesANegativeKeyLengthOn) {
  import(2, -1);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kRequestCopied + kTokenOpened + R"(
    ZELKM_InsertReqKey(1, "my key", 2, [30 e9], 4294967295, null) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

/** The gate refuses a length of zero alone. */
TEST_F(ImportPersonalCertificateRequest, PassesANegativeRequestLengthOn) {
  import(-1, 0);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + kTokenOpened +
                    R"(
    ZELKM_InsertReqKey(1, "my key", 4294967295, null, 0, null) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(ImportPersonalCertificateRequest, PassesTheLengthOfANullKeyOn) {
  key = nullptr;
  import(2, 3);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kRequestCopied + kTokenOpened + R"(
    ZELKM_InsertReqKey(1, "my key", 2, [30 e9], 3, null) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

TEST_F(ImportPersonalCertificateRequest, AsksTheLibraryEvenWithoutCopies) {
  library().answers["ZELKM_InsertReqKey"] = 65;
  import(5, 6);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    GetArrayLength(bytes#2) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + kTokenOpened +
                    R"(
    ZELKM_InsertReqKey(1, "my key", 5, null, 6, null) = 65
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(ImportPersonalCertificateRequest, WipesTheCopiesWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  import(2, 3);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelToo + kRequestCopied + kKeyCopied + kTokenNotOpened + R"(
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kTokenReleases +
                    kLabelReleased +
                    R"(
    return 137
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(ImportPersonalCertificateRequest, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  constexpr auto import = c_ImportPersonalCertificateRequest;
  callOn(nullptr, self, import, given, given, given, given, 2, request, 3, key);
  callOn(env, nullptr, import, given, given, given, given, 2, request, 3, key);
  call(import, nullptr, given, given, given, 2, request, 3, key);
  call(import, given, nullptr, given, given, 2, request, 3, key);
  call(import, given, given, given, nullptr, 2, request, 3, key);
  call(import, given, given, given, given, 0, request, 3, key);
  call(import, given, given, given, given, 2, nullptr, 3, key);
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
