#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"
#include "tests/transcripts/subject_passage.h"

namespace zel::test {
namespace {

constexpr auto c_CreateNewCertRequest =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewCertRequest;
constexpr auto c_CreateNewCertRequestSigExt =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewCertRequestSigExt;

class CertificateRequests : public NativeTest {
 protected:
  CertificateRequests() : NativeTest("CMSKeyDatabase") {}

  jobject subject() { return dnItem({{"cn", "Alice"}}); }
};

const std::string kThreeStrings = R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
)";
const std::string kThreeReleases = R"(
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
)";

class CreateNewCertRequest : public CertificateRequests {
 protected:
  void create(jobject dn, jstring fileName) {
    call(c_CreateNewCertRequest, text("a.kdb"), text("secret"), text("my key"), 2048, dn, fileName,
         JNI_TRUE);
  }
  void exportAgain(jobject dn, jstring fileName) {
    call(c_CreateNewCertRequest, text("a.kdb"), text("secret"), text("my key"), 2048, dn, fileName,
         JNI_FALSE);
  }

  const std::string kFileName = R"(
    GetStringUTFChars("r.arm")
    trace JNI_DEBUG......cCertReqFileName = r.arm
  )";
};

TEST_F(CreateNewCertRequest, MakesANewRequest) {
  create(subject(), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + subjectConverted() + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateNewCertReq(1, "my key", 2048, DN{cn="Alice"}, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 0
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, ExportsAnOldRequestAgainWithoutLookingAtTheSubject) {
  exportAgain(nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReq(1, "my key", "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 0
    held nothing
  )");
}

/** The file name is acquired whether or not there is one, and released only when there is. */
TEST_F(CreateNewCertRequest, AcquiresANullFileNameAndReleasesNone) {
  exportAgain(subject(), nullptr);
  EXPECT_TRANSCRIPT(kThreeStrings + R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cCertReqFileName = null
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReq(1, "my key", null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, OpensNothingForASubjectThatCannotBeConverted) {
  create(nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + kThreeReleases + R"(
    ReleaseStringUTFChars("r.arm")
    return 116
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, FreesTheSubjectWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  create(subject(), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + subjectConverted() + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    ZELKM_FreeDNItem(block#1)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 16
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, ExportsNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 101;
  exportAgain(nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 101
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 101
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, ClosesWhenTheRequestCannotBeMade) {
  library().answers["ZELKM_CreateNewCertReq"] = 23;
  create(subject(), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + subjectConverted() + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateNewCertReq(1, "my key", 2048, DN{cn="Alice"}, "r.arm", 0, 0) = 23
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 23
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, ClosesWhenTheRequestCannotBeExported) {
  library().answers["ZELKM_ReCreateCertReq"] = 117;
  exportAgain(nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReq(1, "my key", "r.arm", 0, 0) = 117
    ZELKM_CloseKeyDb(1) = 0
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 117
    held nothing
  )");
}

TEST_F(CreateNewCertRequest, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_CreateNewCertRequest, text("a"), text("p"), text("l"), 2048, subject(),
         text("f"), JNI_TRUE);
  callOn(env, nullptr, c_CreateNewCertRequest, text("a"), text("p"), text("l"), 2048, subject(),
         text("f"), JNI_TRUE);
  create(subject(), text("f"));
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

class CreateNewCertRequestSigExt : public CertificateRequests {
 protected:
  void create(jobject dn, jint algorithm, jint extLength, jbyteArray extData, jstring fileName) {
    call(c_CreateNewCertRequestSigExt, text("a.kdb"), text("secret"), text("my key"), 2048, dn,
         algorithm, extLength, extData, fileName, JNI_TRUE);
  }
  void exportAgain(jint algorithm, jint extLength, jbyteArray extData, jstring fileName) {
    call(c_CreateNewCertRequestSigExt, text("a.kdb"), text("secret"), text("my key"), 2048, nullptr,
         algorithm, extLength, extData, fileName, JNI_FALSE);
  }

  /** Only the first three strings are traced. */
  const std::string kFileName = R"(
    GetStringUTFChars("r.arm")
  )";
  const std::string kExtensionsCopied = R"(
    GetArrayLength(extensions) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(extensions) = [30 ee]
  )";
};

TEST_F(CreateNewCertRequestSigExt, MakesANewRequestWithExtensions) {
  create(subject(), 2, 2, bytes({0x30, 0xee}, "extensions"), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + kExtensionsCopied + subjectConverted("block#2") +
                    R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateNewCertReqSigExt(1, "my key", 2048, DN{cn="Alice"}, 2, [30 ee], 2, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#2)
    free(block#1 wiped)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 0
    held elements of extensions
  )");
}

TEST_F(CreateNewCertRequestSigExt, WritesNoFileWithoutAFileNameAndCopiesNoExtensionsOfNoLength) {
  create(subject(), 1, 0, bytes({1}, "extensions"), nullptr);
  EXPECT_TRANSCRIPT(kThreeStrings + subjectConverted() + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateNewCertReqSigExt(1, "my key", 2048, DN{cn="Alice"}, 1, null, 0, null, 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kThreeReleases +
                    R"(
    return 0
    held nothing
  )");
}

TEST_F(CreateNewCertRequestSigExt, ExportsAnOldRequestAgainWithTheAlgorithm) {
  exportAgain(2, 2, bytes({0x30, 0xee}, "extensions"), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + kExtensionsCopied + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_ReCreateCertReqSig(1, "my key", 2, "r.arm", 0, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    free(block#1 wiped)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 0
    held elements of extensions
  )");
}

TEST_F(CreateNewCertRequestSigExt, OpensNothingForASubjectThatCannotBeConverted) {
  create(nullptr, 1, 2, bytes({0x30, 0xee}, "extensions"), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + kExtensionsCopied + R"(
    free(block#1 wiped)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 116
    held elements of extensions
  )");
}

TEST_F(CreateNewCertRequestSigExt, FreesTheSubjectWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  create(subject(), 1, 0, nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + subjectConverted() + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    ZELKM_FreeDNItem(block#1)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 16
    held nothing
  )");
}

TEST_F(CreateNewCertRequestSigExt, ExportsNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  exportAgain(1, 2, bytes({0x30, 0xee}, "extensions"), text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + kExtensionsCopied + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 16
    free(block#1 wiped)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 16
    held elements of extensions
  )");
}

TEST_F(CreateNewCertRequestSigExt, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_CreateNewCertReqSigExt"] = 133;
  library().answers["ZELKM_ReCreateCertReqSig"] = 117;
  create(subject(), 1, 5, bytes({1}, "extensions"), text("r.arm"));
  exportAgain(1, 0, nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(kThreeStrings + kFileName + R"(
    GetArrayLength(extensions) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
  )" + subjectConverted() +
                    R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateNewCertReqSigExt(1, "my key", 2048, DN{cn="Alice"}, 1, null, 5, "r.arm", 0, 0) = 133
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeDNItem(block#1)
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 133
    held nothing
  )" + kThreeStrings +
                    kFileName + R"(
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 2
    ZELKM_ReCreateCertReqSig(2, "my key", 1, "r.arm", 0, 0) = 117
    ZELKM_CloseKeyDb(2) = 0
  )" + kThreeReleases +
                    R"(
    ReleaseStringUTFChars("r.arm")
    return 117
    held nothing
  )");
}

TEST_F(CreateNewCertRequestSigExt, RefusesAnUnknownSignatureAlgorithmBeforeAnyString) {
  for (jint algorithm : {0, 3}) create(subject(), algorithm, 0, nullptr, text("r.arm"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
  )");
}

TEST_F(CreateNewCertRequestSigExt, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_CreateNewCertRequestSigExt, text("a"), text("p"), text("l"), 2048,
         subject(), 1, 0, nullptr, text("f"), JNI_TRUE);
  callOn(env, nullptr, c_CreateNewCertRequestSigExt, text("a"), text("p"), text("l"), 2048,
         subject(), 1, 0, nullptr, text("f"), JNI_TRUE);
  create(subject(), 1, 0, nullptr, text("f"));
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
