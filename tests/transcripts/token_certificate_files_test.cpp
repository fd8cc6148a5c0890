#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

constexpr auto c_AddSignerCertificate =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1AddSignerCertificate;
constexpr auto c_ExtractCertificate =
    Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1ExtractCertificate;

const std::string kLabelAndFile = R"(
    GetStringUTFChars("my ca")
    trace JNI_DEBUG......cKeyLabel = my ca
    GetStringUTFChars("cert")
    trace JNI_DEBUG......cCertFileName = cert
)";
const std::string kLabelAndFileReleased = R"(
    ReleaseStringUTFChars("my ca")
    ReleaseStringUTFChars("cert")
)";

class TokenAddSignerCertificate : public TokenNative {
 protected:
  void add(jboolean isBase64) {
    call(c_AddSignerCertificate, text("p11.so"), text("token"), text("1234"), text("my ca"),
         text("cert"), isBase64);
  }
};

TEST_F(TokenAddSignerCertificate, DecodesTheFileBeforeItOpensTheToken) {
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_StoreCACert(1, [30 df], 2, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, ReadsABinaryFileForATokenWithoutPassword) {
  watchedLibc().addFile("cert", {0x30, 0xce});
  call(c_AddSignerCertificate, text("p11.so"), text("token"), nullptr, text("my ca"), text("cert"),
       JNI_FALSE);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelAndFile + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 2
    ZELKM_Malloc(2) = block#1
    fread(1, 1024) = 0
    fclose(file "cert")
  )" + kOpenTokenOpened +
                    R"(
    ZELKM_StoreCACert(1, [30 ce], 2, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(block#1)
  )" + kOpenTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, HandsTheLibraryAnEmptyFileAndFreesNothing) {
  watchedLibc().addFile("cert", {});
  add(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 0
    fclose(file "cert")
  )" + kTokenOpened +
                    R"(
    ZELKM_StoreCACert(1, null, 0, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, OpensNoTokenForAFileThatCannotBeRead) {
  add(JNI_FALSE);
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    fopen("cert", "rb") = null
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 87
    held nothing
  )" + kTokenStrings +
                    kLabelAndFile +
                    R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 90
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 90
    held nothing
  )");
}

/** What came with an error is the library's own. */
TEST_F(TokenAddSignerCertificate, LeavesABufferThatCameWithAnError) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  library().outputsDespiteErrors = true;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 90, buffer#1 [30 df]
  )" + kTokenReleases +
                    kLabelAndFileReleased + R"(
    return 90
    held buffer#1
  )");
}

TEST_F(TokenAddSignerCertificate, OpensNoTokenWithoutMemory) {
  watchedLibc().addFile("cert", {0x30});
  recorder().faults.failCall("ZELKM_Malloc", 1);
  add(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 1
    ZELKM_Malloc(1) = null
    fclose(file "cert")
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 79
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, FreesNothingWhenTheLibraryTellsALengthAndHandsOutNoBuffer) {
  library().losesBuffers = true;
  library().answers["ZELKM_StoreCACert"] = 65;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, null, 2
  )" + kTokenOpened +
                    R"(
    ZELKM_StoreCACert(1, null, 2, "my ca") = 65
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, FreesTheBufferWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenNotOpened +
                    R"(
    ZELKM_Free(buffer#1)
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 137
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, ClosesAndHandsBackTheCodeOfAFailedStore) {
  library().answers["ZELKM_StoreCACert"] = 119;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kTokenOpened +
                    R"(
    ZELKM_StoreCACert(1, [30 df], 2, "my ca") = 119
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 119
    held nothing
  )");
}

TEST_F(TokenAddSignerCertificate, RefusesANullEnvironmentObjectModuleLabelsOrFile) {
  jstring given = text("given");
  callOn(nullptr, self, c_AddSignerCertificate, given, given, given, given, given, 0);
  callOn(env, nullptr, c_AddSignerCertificate, given, given, given, given, given, 0);
  call(c_AddSignerCertificate, nullptr, given, given, given, given, 0);
  call(c_AddSignerCertificate, given, nullptr, given, given, given, 0);
  call(c_AddSignerCertificate, given, given, given, nullptr, given, 0);
  call(c_AddSignerCertificate, given, given, given, given, nullptr, 0);
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

class TokenExtractCertificate : public TokenNative {
 protected:
  void extract(jboolean format) {
    call(c_ExtractCertificate, text("p11.so"), text("token"), text("1234"), text("my ca"),
         text("cert"), format);
  }
};

TEST_F(TokenExtractCertificate, WritesTheCertificateInTheGivenFormat) {
  extract(JNI_TRUE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ExportCert(1, "my ca", "cert", 1) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenExtractCertificate, PassesAnyFormatOn) {
  extract(2);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ExportCert(1, "my ca", "cert", 2) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenExtractCertificate, AcceptsATokenWithoutPassword) {
  call(c_ExtractCertificate, text("p11.so"), text("token"), nullptr, text("my ca"), text("cert"),
       JNI_FALSE);
  EXPECT_TRANSCRIPT(kOpenTokenStrings + kLabelAndFile + kOpenTokenOpened + R"(
    ZELKM_ExportCert(1, "my ca", "cert", 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kOpenTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(TokenExtractCertificate, ClosesAndHandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_ExportCert"] = 117;
  extract(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenOpened + R"(
    ZELKM_ExportCert(1, "my ca", "cert", 0) = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kTokenReleases +
                    kLabelAndFileReleased +
                    R"(
    return 117
    held nothing
  )");
}

TEST_F(TokenExtractCertificate, HandsBackTheCodeOfAFailedOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  extract(JNI_FALSE);
  EXPECT_TRANSCRIPT(kTokenStrings + kLabelAndFile + kTokenNotOpened + kTokenReleases +
                    kLabelAndFileReleased + R"(
    return 137
    held nothing
  )");
}

TEST_F(TokenExtractCertificate, RefusesANullEnvironmentObjectModuleLabelsOrFile) {
  jstring given = text("given");
  callOn(nullptr, self, c_ExtractCertificate, given, given, given, given, given, 0);
  callOn(env, nullptr, c_ExtractCertificate, given, given, given, given, given, 0);
  call(c_ExtractCertificate, nullptr, given, given, given, given, 0);
  call(c_ExtractCertificate, given, nullptr, given, given, given, 0);
  call(c_ExtractCertificate, given, given, given, nullptr, given, 0);
  call(c_ExtractCertificate, given, given, given, given, nullptr, 0);
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
