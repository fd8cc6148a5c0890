#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"
#include "tests/transcripts/store_passages.h"

namespace zel::test {
namespace {

constexpr auto c_ImportCertificate =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1ImportCertificate;
constexpr auto c_AddSignerCertificate =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1AddSignerCertificate;

class StoreImportCertificate : public StoreNative {
 protected:
  /** import() passes a certificate of two bytes, bytes#1, and a key of three, bytes#2. */
  void import(jint certLength, jint keyLength) {
    call(c_ImportCertificate, text("CurrentUser/My"), text("secret"), text("my key"), certLength,
         cert, keyLength, key);
  }

  jbyteArray cert = bytes({0x30, 0xce});
  jbyteArray key = bytes({0x30, 0x01, 0x1f});
};

/** The password is traced under a name that belongs to tokens, unless there is none. */
const std::string kImportStrings = R"(
    GetStringUTFChars("CurrentUser/My")
    trace JNI_DEBUG......cCSPName = CurrentUser/My
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cCryptographicTokenPassword = secret
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
const std::string kLabelReleased = R"(
    ReleaseStringUTFChars("my key")
)";

TEST_F(StoreImportCertificate, StoresCertificateAndKeyAndWipesTheCopies) {
  import(2, 3);
  EXPECT_TRANSCRIPT(kImportStrings + kCertCopied + kKeyCopied + kStoreOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, [30 01 1f], 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 0
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(StoreImportCertificate, NeverReadsAKeyForALengthOfZero) {
  call(c_ImportCertificate, nullptr, nullptr, text("my key"), 2, cert, 0, key);
  EXPECT_TRANSCRIPT(kNamelessStoreStrings + R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
  )" + kCertCopied + kNamelessStoreOpened +
                    R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kLabelReleased +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

/** A negative length reaches the library as it is, in a field without a sign. */
TEST_F(StoreImportCertificate, PassesANegativeKeyLengthOn) {
  import(2, -1);
  EXPECT_TRANSCRIPT(kImportStrings + kCertCopied + kStoreOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 4294967295, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 0
    held elements of bytes#1
  )");
}

/** The gate refuses a length of zero alone. */
TEST_F(StoreImportCertificate, PassesANegativeCertificateLengthOn) {
  import(-1, 0);
  EXPECT_TRANSCRIPT(kImportStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + kStoreOpened +
                    R"(
    ZELKM_InsertKey(1, "my key", 4294967295, null, 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreImportCertificate, PassesTheLengthOfANullKeyOn) {
  key = nullptr;
  import(2, 3);
  EXPECT_TRANSCRIPT(kImportStrings + kCertCopied + kStoreOpened + R"(
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 3, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 0
    held elements of bytes#1
  )");
}

/** Here too the password is traced as a token's. */
TEST_F(StoreImportCertificate, TakesAPasswordWithoutAName) {
  call(c_ImportCertificate, nullptr, text("secret"), text("my key"), 2, cert, 0, key);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......cCSPName = NULL
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cCryptographicTokenPassword = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
  )" + kCertCopied + R"(
    ZELKM_OpenKeyDbX({type 4, password "secret"}) = 0, handle 1
    ZELKM_InsertKey(1, "my key", 2, [30 ce], 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return 0
    held elements of bytes#1
  )");
}

TEST_F(StoreImportCertificate, AsksTheLibraryEvenWithoutCopies) {
  library().answers["ZELKM_InsertKey"] = 65;
  import(5, 6);
  EXPECT_TRANSCRIPT(kImportStrings + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    GetArrayLength(bytes#2) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + kStoreOpened +
                    R"(
    ZELKM_InsertKey(1, "my key", 5, null, 6, null, 0, 0) = 65
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 65
    held nothing
  )");
}

TEST_F(StoreImportCertificate, WipesTheCopiesWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  import(2, 3);
  EXPECT_TRANSCRIPT(kImportStrings + kCertCopied + kKeyCopied + kStoreNotOpened + R"(
    free(block#1 wiped)
    free(block#2 wiped)
  )" + kStoreReleases +
                    kLabelReleased + R"(
    return 139
    held elements of bytes#1
    held elements of bytes#2
  )");
}

TEST_F(StoreImportCertificate, RefusesANullEnvironmentObjectOrNeededArgument) {
  jstring given = text("given");
  callOn(nullptr, self, c_ImportCertificate, given, given, given, 2, cert, 3, key);
  callOn(env, nullptr, c_ImportCertificate, given, given, given, 2, cert, 3, key);
  call(c_ImportCertificate, given, given, nullptr, 2, cert, 3, key);
  call(c_ImportCertificate, given, given, given, 0, cert, 3, key);
  call(c_ImportCertificate, given, given, given, 2, nullptr, 3, key);
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

class StoreAddSignerCertificate : public StoreNative {
 protected:
  void add(jboolean isBase64) {
    call(c_AddSignerCertificate, text("CurrentUser/My"), text("secret"), text("my ca"),
         text("cert"), isBase64);
  }
};

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

TEST_F(StoreAddSignerCertificate, DecodesTheFileBeforeItOpensTheStore) {
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kStoreOpened +
                    R"(
    ZELKM_StoreCACert(1, [30 df], 2, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, ReadsABinaryFileForAStoreWithoutNameAndPassword) {
  watchedLibc().addFile("cert", {0x30, 0xce});
  call(c_AddSignerCertificate, nullptr, nullptr, text("my ca"), text("cert"), JNI_FALSE);
  EXPECT_TRANSCRIPT(kNamelessStoreStrings + kLabelAndFile + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 2
    ZELKM_Malloc(2) = block#1
    fread(1, 1024) = 0
    fclose(file "cert")
  )" + kNamelessStoreOpened +
                    R"(
    ZELKM_StoreCACert(1, [30 ce], 2, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(block#1)
  )" + kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, HandsTheLibraryAnEmptyFileAndFreesNothing) {
  watchedLibc().addFile("cert", {});
  add(JNI_FALSE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 0
    fclose(file "cert")
  )" + kStoreOpened +
                    R"(
    ZELKM_StoreCACert(1, null, 0, "my ca") = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, OpensNoStoreForAFileThatCannotBeRead) {
  add(JNI_FALSE);
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    fopen("cert", "rb") = null
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 87
    held nothing
  )" + kStoreStrings +
                    kLabelAndFile +
                    R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 90
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 90
    held nothing
  )");
}

/** What came with an error is the library's own. */
TEST_F(StoreAddSignerCertificate, LeavesABufferThatCameWithAnError) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  library().outputsDespiteErrors = true;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 90, buffer#1 [30 df]
  )" + kStoreReleases +
                    kLabelAndFileReleased + R"(
    return 90
    held buffer#1
  )");
}

TEST_F(StoreAddSignerCertificate, OpensNoStoreWithoutMemory) {
  watchedLibc().addFile("cert", {0x30});
  recorder().faults.failCall("ZELKM_Malloc", 1);
  add(JNI_FALSE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    fopen("cert", "rb")
    fread(1, 1024) = 1
    ZELKM_Malloc(1) = null
    fclose(file "cert")
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 79
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, FreesNothingWhenTheLibraryTellsALengthAndHandsOutNoBuffer) {
  library().losesBuffers = true;
  library().answers["ZELKM_StoreCACert"] = 65;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, null, 2
  )" + kStoreOpened +
                    R"(
    ZELKM_StoreCACert(1, null, 2, "my ca") = 65
    ZELKM_CloseKeyDb(1) = 0
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, FreesTheBufferWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kStoreNotOpened +
                    R"(
    ZELKM_Free(buffer#1)
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 139
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, ClosesAndHandsBackTheCodeOfAFailedStore) {
  library().answers["ZELKM_StoreCACert"] = 119;
  add(JNI_TRUE);
  EXPECT_TRANSCRIPT(kStoreStrings + kLabelAndFile + R"(
    ZELKM_Base64DecodeFileToBuf("cert") = 0, buffer#1 [30 df]
  )" + kStoreOpened +
                    R"(
    ZELKM_StoreCACert(1, [30 df], 2, "my ca") = 119
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_Free(buffer#1)
  )" + kStoreReleases +
                    kLabelAndFileReleased +
                    R"(
    return 119
    held nothing
  )");
}

TEST_F(StoreAddSignerCertificate, RefusesANullEnvironmentObjectLabelOrFile) {
  jstring given = text("given");
  callOn(nullptr, self, c_AddSignerCertificate, given, given, given, given, 0);
  callOn(env, nullptr, c_AddSignerCertificate, given, given, given, given, 0);
  call(c_AddSignerCertificate, given, given, nullptr, given, 0);
  call(c_AddSignerCertificate, given, given, given, nullptr, 0);
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

}  // namespace
}  // namespace zel::test
