#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"
#include "tests/transcripts/store_passages.h"
#include "tests/transcripts/subject_passage.h"

namespace zel::test {
namespace {

constexpr auto c_CreateNewSelfSignedCertificate =
    Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1CreateNewSelfSignedCertificate;

class StoreCreateNewSelfSignedCertificate : public StoreNative {
 protected:
  void create(jint signatureAlgorithm, jint extensionsLength) {
    call(c_CreateNewSelfSignedCertificate, text("CurrentUser/My"), text("secret"), 3,
         text("my key"), 2048, subject, 365, signatureAlgorithm, extensionsLength, extensions);
  }

  jobject subject = dnItem({{"cn", "Alice"}});
  jbyteArray extensions = bytes({0x30, 0x02, 0x05, 0x00});
};

const std::string kClassAndStrings = R"(
    GetObjectClass(this) = class basic/MSCertificateStore
)" + kStoreStrings + R"(
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kExtensionsCopied = R"(
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(4) = block#1
    GetByteArrayElements(bytes#1) = [30 02 05 00]
)";
const std::string kReleasesAndExit = kStoreReleases + R"(
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit MSCertificateStore_c_1CreateNewSelfSignedCertificate()
)";

TEST_F(StoreCreateNewSelfSignedCertificate, ConvertsTheSubjectOpensCreatesAndCloses) {
  create(1, 0);
  EXPECT_TRANSCRIPT(kClassAndStrings + R"(
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
  )" + kStoreOpened +
                    R"(
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 0, 3, 2048, DN{cn="Alice"}, 365, 1, null, 0, null, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
  )" + kReleasesAndExit +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, CopiesExtensionsAndWipesThem) {
  create(2, 4);
  EXPECT_TRANSCRIPT(kClassAndStrings + kExtensionsCopied + R"(
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted("block#2") +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
  )" + kStoreOpened +
                    R"(
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 0, 3, 2048, DN{cn="Alice"}, 365, 2, [30 02 05 00], 4, null, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#2)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    free(block#1 wiped)
  )" + kReleasesAndExit +
                    R"(
    return 0
    held elements of bytes#1
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, PassesExtensionsThatCannotBeCopiedOnAsNull) {
  library().answers["ZELKM_CreateSelfSignedCertSigExt"] = 65;
  create(1, 5);
  EXPECT_TRANSCRIPT(kClassAndStrings + R"(
    GetArrayLength(bytes#1) = 4
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
  )" + kStoreOpened +
                    R"(
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 0, 3, 2048, DN{cn="Alice"}, 365, 1, null, 5, null, 0) = 65
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
  )" + kReleasesAndExit +
                    R"(
    return 65
    held nothing
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, TakesNullForEveryString) {
  call(c_CreateNewSelfSignedCertificate, nullptr, nullptr, 3, nullptr, 256, subject, 365, 1, -1,
       nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/MSCertificateStore
  )" + kNamelessStoreStrings +
                    R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyLabel = null
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
  )" + kNamelessStoreOpened +
                    R"(
    ZELKM_CreateSelfSignedCertSigExt(1, null, 0, 3, 256, DN{cn="Alice"}, 365, 1, null, 4294967295, null, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    trace JNI_DEBUG......to exit MSCertificateStore_c_1CreateNewSelfSignedCertificate()
    return 0
    held nothing
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, OpensNoStoreWithoutASubject) {
  subject = nullptr;
  create(1, 4);
  EXPECT_TRANSCRIPT(kClassAndStrings + kExtensionsCopied + R"(
    trace JNI_DEBUG......to call JavaDNItem2CDN()
    free(block#1 wiped)
  )" + kReleasesAndExit +
                    R"(
    return 116
    held elements of bytes#1
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, TracesAndFreesOnWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDbX"] = 139;
  create(1, 0);
  EXPECT_TRANSCRIPT(kClassAndStrings + R"(
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
  )" + kStoreNotOpened +
                    R"(
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
  )" + kReleasesAndExit +
                    R"(
    return 139
    held nothing
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, AcquiresNothingForAnotherAlgorithm) {
  create(0, 0);
  create(3, 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/MSCertificateStore
    return 65
    held nothing
    GetObjectClass(this) = class basic/MSCertificateStore
    return 65
    held nothing
  )");
}

TEST_F(StoreCreateNewSelfSignedCertificate, RefusesANullEnvironmentObjectOrClass) {
  constexpr auto native = c_CreateNewSelfSignedCertificate;
  jstring given = text("given");
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, native, given, given, 3, given, 2048, subject, 365, 1, 0, nullptr);
  callOn(env, nullptr, native, given, given, 3, given, 2048, subject, 365, 1, 0, nullptr);
  create(1, 0);
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
