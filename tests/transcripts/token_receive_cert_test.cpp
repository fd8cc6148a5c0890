#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_ReceivePersonalCertificate =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ReceivePersonalCertificate;

class ReceivePersonalCertificate : public TokenNative {
 protected:
  void receive(const char* certFileName, jboolean isBase64) {
    call(c_ReceivePersonalCertificate, text("p11.so"), text("token"), text("1234"), text("a.kdb"),
         text("secret"), text(certFileName), isBase64);
  }
};

const std::string kAllStrings = kTokenStrings + R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cSecondaryKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = secret
    GetStringUTFChars("cert")
    trace JNI_DEBUG......cCertFileName = cert
)";
const std::string kAllReleases = kTokenReleases + R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("cert")
)";

TEST_F(ReceivePersonalCertificate, ReadsTheFileBeforeItOpensTokenAndKeyDatabase) {
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    ZELKM_ReceiveCert(1, [30 df], 2, 0) = 0
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kAllReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, OpensOnlyTheTokenWithoutAKeyDatabase) {
  watchedLibc().addFile("cert", {0x30, 0xce});
  call(c_ReceivePersonalCertificate, text("p11.so"), text("token"), nullptr, nullptr, nullptr,
       text("cert"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + R"(
    trace JNI_DEBUG......cSecondaryKeyDbFileName = NULL
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = NULL
    GetStringUTFChars("cert")
    trace JNI_DEBUG......cCertFileName = cert
    fopen("cert", "rb")
    fread(1, 1024) = 2
    ZELKM_Malloc(2) = block#1
    fread(1, 1024) = 0
    fclose(file "cert")
  )" + kOpenTokenOpened +
                    R"(
    ZELKM_ReceiveCert(1, [30 ce], 2, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(block#1)
  )" + kOpenTokenReleases +
                    R"(
    ReleaseStringUTFChars("cert")
    return 0
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, AcquiresButDoesNotUseAPasswordWithoutAKeyDatabase) {
  call(c_ReceivePersonalCertificate, text("p11.so"), text("token"), text("1234"), nullptr,
       text("secret"), text("cert"), JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + R"(
    trace JNI_DEBUG......cSecondaryKeyDbFileName = NULL
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = secret
    GetStringUTFChars("cert")
    trace JNI_DEBUG......cCertFileName = cert
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_ReceiveCert(1, [30 df], 2, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kTokenReleases +
                    R"(
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("cert")
    return 0
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, OpensAKeyDatabaseWithoutPassword) {
  call(c_ReceivePersonalCertificate, text("p11.so"), text("token"), text("1234"), text("a.kdb"),
       nullptr, text("cert"), JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cSecondaryKeyDbFileName = a.kdb
    trace JNI_DEBUG......cSecondaryKeyDbFilePassword = NULL
    GetStringUTFChars("cert")
    trace JNI_DEBUG......cCertFileName = cert
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    ZELKM_ReceiveCert(1, [30 df], 2, 0) = 0
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kTokenReleases +
                    R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("cert")
    return 0
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, HandsTheLibraryAnEmptyFileAndFreesNothing) {
  watchedLibc().addFile("cert", {});
  library().answers["ZELKM_ReceiveCert"] = 65;
  receive("cert", JNI_FALSE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 0
    fclose(file "cert")
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    ZELKM_ReceiveCert(1, null, 0, 0) = 65
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kAllReleases +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, OpensNothingForAFileThatCannotBeRead) {
  receive("cert", JNI_FALSE);
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    fopen("cert", "rb") = null
  )" + kAllReleases +
                    R"(
    return 87
    held nothing
  )" + kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 90
  )" + kAllReleases +
                    R"(
    return 90
    held nothing
  )");
}

/** What came with an error is the library's own. */
TEST_F(ReceivePersonalCertificate, LeavesABufferThatCameWithAnError) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  library().outputsDespiteErrors = true;
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 90, buffer#1 [30 df]
  )" + kAllReleases +
                    R"(
    return 90
    held buffer#1
  )");
}

TEST_F(ReceivePersonalCertificate, OpensNothingWithoutMemory) {
  watchedLibc().addFile("cert", {0x30});
  recorder().faults.failCall("ZELKM_Malloc", 1);
  receive("cert", JNI_FALSE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 1
    ZELKM_Malloc(1) = null
    fclose(file "cert")
  )" + kAllReleases +
                    R"(
    return 79
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, FreesNothingWhenTheLibraryTellsALengthAndHandsOutNoBuffer) {
  library().losesBuffers = true;
  library().answers["ZELKM_ReceiveCert"] = 65;
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, null, 2
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    ZELKM_ReceiveCert(1, null, 2, 0) = 65
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kAllReleases +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, FreesTheBufferWhenTheTokenCannotBeOpened) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenNotOpened +
                    R"(
    ZELKM_Free(buffer#1)
  )" + kAllReleases +
                    R"(
    return 137
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, ClosesTheTokenWhenTheKeyDatabaseCannotBeOpened) {
  recorder().faults.failCall("ZELKM_OpenKeyDbX", 2);
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 1
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kAllReleases +
                    R"(
    return 1
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, ClosesBothWhenTheKeyDatabaseCannotBeAttached) {
  library().answers["ZELKM_SetSecondaryKeyDb"] = 136;
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 136
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kAllReleases +
                    R"(
    return 136
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, ClosesBothAndHandsBackTheCodeOfAFailedReceive) {
  library().answers["ZELKM_ReceiveCert"] = 108;
  receive("cert", JNI_TRUE);
  EXPECT_TRANSCRIPT(kAllStrings + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    ZELKM_ReceiveCert(1, [30 df], 2, 0) = 108
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kAllReleases +
                    R"(
    return 108
    held nothing
  )");
}

TEST_F(ReceivePersonalCertificate, RefusesANullEnvironmentObjectModuleLabelOrFile) {
  jstring given = text("given");
  callOn(nullptr, self, c_ReceivePersonalCertificate, given, given, given, given, given, given, 0);
  callOn(env, nullptr, c_ReceivePersonalCertificate, given, given, given, given, given, given, 0);
  call(c_ReceivePersonalCertificate, nullptr, given, given, given, given, given, 0);
  call(c_ReceivePersonalCertificate, given, nullptr, given, given, given, given, 0);
  call(c_ReceivePersonalCertificate, given, given, given, given, given, nullptr, 0);
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
  )");
}

}  // namespace
}  // namespace zel::test
