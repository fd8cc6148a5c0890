#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_ImportCertificate =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ImportCertificate;

class TokenImportCertificate : public TokenNative {
 protected:
  /** import() passes a certificate of two bytes, bytes#1, and a key of three, bytes#2. */
  void import(jint certLength, jint keyLength) {
    call(c_ImportCertificate, text("p11.so"), text("token"), text("1234"), text("a.kdb"),
         text("secret"), text("my key"), certLength, cert, keyLength, key);
  }

  jbyteArray cert = bytes({0x30, 0xce});
  jbyteArray key = bytes({0x30, 0x01, 0x1f});
};

const std::string kAllStrings = kTokenStrings + R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cSecondaryKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kCertCopied = R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 ce]
)";
const std::string kKeyCopied = R"(
    GetArrayLength(bytes#2) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#2
    GetByteArrayElements(bytes#2) = [30 01 1f]
)";
const std::string kBothOpened = kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
)";
const std::string kBothClosed = R"(
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
)";
const std::string kAllReleases = kTokenReleases + R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
)";

TEST_F(TokenImportCertificate, StoresCertificateAndKeyAndWipesTheCopies) {
  import(2, 3);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kKeyCopied + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, [30 01 1f], 0, 0) = 0
  )" + kBothClosed + R"(
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kAllReleases +
                    R"(
    return 0
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(TokenImportCertificate, CopiesNoKeyForALengthBelowOne) {
  import(2, 0);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 0) = 0
  )" + kBothClosed + R"(
    free(block#1 wiped)
  )" + kAllReleases +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

/** A negative length reaches the library as it is, in a field without a sign. */
TEST_F(TokenImportCertificate, PassesANegativeKeyLengthOn) {
  import(2, -1);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 4294967295, null, 0, 0) = 0
  )" + kBothClosed + R"(
    free(block#1 wiped)
  )" + kAllReleases +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

/** The gate refuses a length of zero alone. */
TEST_F(TokenImportCertificate, PassesANegativeCertificateLengthOn) {
  import(-1, 0);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 4294967295, null, 0, null, 0, 0) = 0
  )" + kBothClosed + kAllReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenImportCertificate, PassesTheLengthOfANullKeyOn) {
  key = nullptr;
  import(2, 3);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, null, 0, 0) = 0
  )" + kBothClosed + R"(
    free(block#1 wiped)
  )" + kAllReleases +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

TEST_F(TokenImportCertificate, AsksTheLibraryEvenWithoutCopies) {
  library().answers["ZELKM_InsertKey"] = 65;
  import(5, 6);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    GetArrayLength(bytes#2) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 5, null, 6, null, 0, 0) = 65
  )" + kBothClosed + kAllReleases +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(TokenImportCertificate, OpensOnlyTheTokenWithoutAKeyDatabase) {
  call(c_ImportCertificate, text("p11.so"), text("token"), nullptr, nullptr, nullptr,
       text("my key"), 2, cert, 0, nullptr);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + R"(
    trace JNI_DEBUG......cSecondaryKeyDbFileName = NULL
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = NULL
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
  )" + kCertCopied + kOpenTokenOpened +
                    R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kOpenTokenReleases +
                    R"(
    ReleaseStringUTFChars("my key")
    return 0
    held elements of bytes#1
  )");
}

TEST_F(TokenImportCertificate, AcquiresButDoesNotUseAPasswordWithoutAKeyDatabase) {
  call(c_ImportCertificate, text("p11.so"), text("token"), text("1234"), nullptr, text("secret"),
       text("my key"), 2, cert, 0, nullptr);
  EXPECT_TRANSCRIPT(kTokenStrings + R"(
    trace JNI_DEBUG......cSecondaryKeyDbFileName = NULL
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
  )" + kCertCopied + kTokenOpened +
                    R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kTokenReleases +
                    R"(
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return 0
    held elements of bytes#1
  )");
}

TEST_F(TokenImportCertificate, MakesTheCopiesEvenWhenTheTokenCannotBeOpened) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  import(2, 3);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kKeyCopied + kTokenNotOpened + R"(
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kAllReleases +
                    R"(
    return 137
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(TokenImportCertificate, ClosesTheTokenWhenTheKeyDatabaseCannotBeOpened) {
  recorder().faults.failCall("ZELKM_OpenKeyDbX", 2);
  import(2, 0);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 1
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kAllReleases +
                    R"(
    return 1
    held elements of bytes#1
  )");
}

TEST_F(TokenImportCertificate, ClosesBothWhenTheKeyDatabaseCannotBeAttached) {
  library().answers["ZELKM_SetSecondaryKeyDb"] = 136;
  import(2, 0);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 136
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kAllReleases +
                    R"(
    return 136
    held elements of bytes#1
  )");
}

TEST_F(TokenImportCertificate, ClosesBothAndHandsBackTheCodeOfAFailedInsert) {
  library().answers["ZELKM_InsertKey"] = 62;
  import(2, 3);
  EXPECT_TRANSCRIPT(kAllStrings + kCertCopied + kKeyCopied + kBothOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, [30 01 1f], 0, 0) = 62
  )" + kBothClosed + R"(
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kAllReleases +
                    R"(
    return 62
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(TokenImportCertificate, RefusesANullEnvironmentObjectModuleLabelsOrCertificate) {
  jstring given = text("given");
  callOn(nullptr, self, c_ImportCertificate, given, given, given, given, given, given, 2, cert, 3,
         key);
  callOn(env, nullptr, c_ImportCertificate, given, given, given, given, given, given, 2, cert, 3,
         key);
  call(c_ImportCertificate, nullptr, given, given, given, given, given, 2, cert, 3, key);
  call(c_ImportCertificate, given, nullptr, given, given, given, given, 2, cert, 3, key);
  call(c_ImportCertificate, given, given, given, given, given, nullptr, 2, cert, 3, key);
  call(c_ImportCertificate, given, given, given, given, given, given, 2, nullptr, 3, key);
  import(0, 3);
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
