#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"
#include "tests/transcripts/subject_passage.h"

namespace zel::test {
namespace {

constexpr auto c_CreateNewSelfSignedCertificate =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewSelfSignedCertificate;
constexpr auto c_CreateNewSelfSignedCertificateSigExt =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSigExt;

class SelfSigned : public NativeTest {
 protected:
  SelfSigned() : NativeTest("CMSKeyDatabase") {}

  jobject subject() { return dnItem({{"cn", "Alice"}}); }
};

class CreateNewSelfSignedCertificate : public SelfSigned {};

TEST_F(CreateNewSelfSignedCertificate, ConvertsTheSubjectOpensCreatesAndCloses) {
  call(c_CreateNewSelfSignedCertificate, text("a.kdb"), text("secret"), 3, text("my key"), JNI_TRUE,
       2048, subject(), 365, text("a.arm"), JNI_FALSE);
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
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCert()
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateSelfSignedCert(1, "my key", 1, 3, 2048, DN{cn="Alice"}, 365, "a.arm", 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCert()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    ReleaseStringUTFChars("a.arm")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificate()
    return 0
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificate, WritesNoFileWithoutAFileName) {
  call(c_CreateNewSelfSignedCertificate, text("a.kdb"), text("secret"), 1, text("my key"),
       JNI_FALSE, 256, subject(), -1, nullptr, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCert()
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateSelfSignedCert(1, "my key", 0, 1, 256, DN{cn="Alice"}, -1, null, 1) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCert()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificate()
    return 0
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificate, OpensNothingForASubjectThatCannotBeConverted) {
  call(c_CreateNewSelfSignedCertificate, text("a.kdb"), text("secret"), 3, text("my key"), JNI_TRUE,
       2048, nullptr, 365, text("a.arm"), JNI_FALSE);
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
    trace JNI_DEBUG......to call JavaDNItem2CDN()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    ReleaseStringUTFChars("a.arm")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificate()
    return 116
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificate, FreesTheSubjectWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_CreateNewSelfSignedCertificate, text("a.kdb"), text("wrong"), 3, text("my key"), JNI_TRUE,
       2048, subject(), 365, nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCert()
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCert()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificate()
    return 16
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificate, ClosesWhenTheLibraryFails) {
  library().answers["ZELKM_CreateSelfSignedCert"] = 41;
  call(c_CreateNewSelfSignedCertificate, text("a.kdb"), text("secret"), 3, text("my key"), JNI_TRUE,
       1000, subject(), 365, nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCert()
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateSelfSignedCert(1, "my key", 1, 3, 1000, DN{cn="Alice"}, 365, null, 0) = 41
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCert()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificate()
    return 41
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificate, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_CreateNewSelfSignedCertificate, text("a.kdb"), text("p"), 3, text("l"),
         JNI_TRUE, 2048, subject(), 365, nullptr, JNI_FALSE);
  callOn(env, nullptr, c_CreateNewSelfSignedCertificate, text("a.kdb"), text("p"), 3, text("l"),
         JNI_TRUE, 2048, subject(), 365, nullptr, JNI_FALSE);
  call(c_CreateNewSelfSignedCertificate, text("a.kdb"), text("p"), 3, text("l"), JNI_TRUE, 2048,
       subject(), 365, nullptr, JNI_FALSE);
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

class CreateNewSelfSignedCertificateSigExt : public SelfSigned {};

TEST_F(CreateNewSelfSignedCertificateSigExt, CopiesTheExtensionsAndWipesThemAfterTheClose) {
  call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("secret"), 3, text("my key"),
       JNI_TRUE, 2048, subject(), 365, 2, 2, bytes({0x30, 0xee}), text("a.arm"), JNI_TRUE);
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
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 ee]
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted("block#2") +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 1, 3, 2048, DN{cn="Alice"}, 365, 2, [30 ee], 2, "a.arm", 1) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#2)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    free(block#1 wiped)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    ReleaseStringUTFChars("a.arm")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSig()
    return 0
    held elements of bytes#1
  )");
}

TEST_F(CreateNewSelfSignedCertificateSigExt, PassesNoExtensionsForALengthOfZero) {
  call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("secret"), 3, text("my key"),
       JNI_TRUE, 2048, subject(), 365, 1, 0, bytes({0x30, 0xee}), nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 1, 3, 2048, DN{cn="Alice"}, 365, 1, null, 0, null, 0) = 0
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSig()
    return 0
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificateSigExt, PassesNullForExtensionsOfAnotherLength) {
  library().answers["ZELKM_CreateSelfSignedCertSigExt"] = 66;
  call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("secret"), 3, text("my key"),
       JNI_TRUE, 2048, subject(), 365, 1, 5, bytes({0x30, 0xee}), nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted() +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CreateSelfSignedCertSigExt(1, "my key", 1, 3, 2048, DN{cn="Alice"}, 365, 1, null, 5, null, 0) = 66
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#1)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSig()
    return 66
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificateSigExt, OpensNothingForASubjectThatCannotBeConverted) {
  call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("secret"), 3, text("my key"),
       JNI_TRUE, 2048, nullptr, 365, 1, 2, bytes({0x30, 0xee}), nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 ee]
    trace JNI_DEBUG......to call JavaDNItem2CDN()
    free(block#1 wiped)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSig()
    return 116
    held elements of bytes#1
  )");
}

TEST_F(CreateNewSelfSignedCertificateSigExt, FreesSubjectAndExtensionsWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("wrong"), 3, text("my key"),
       JNI_TRUE, 2048, subject(), 365, 1, 2, bytes({0x30, 0xee}), nullptr, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    trace JNI_DEBUG......cCertFileName = null
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 ee]
    trace JNI_DEBUG......to call JavaDNItem2CDN()
  )" + subjectConverted("block#2") +
                    R"(
    trace JNI_DEBUG......to call ZELKM_CreateSelfSignedCertSig()
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    trace JNI_DEBUG......after call ZELKM_CreateSelfSignedCertSig()
    ZELKM_FreeDNItem(block#2)
    trace JNI_DEBUG......after call ZELKM_FreeDNItem()
    free(block#1 wiped)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my key")
    trace JNI_DEBUG......to exit CMSKeyDatabase_c_1CreateNewSelfSignedCertificateSig()
    return 16
    held elements of bytes#1
  )");
}

TEST_F(CreateNewSelfSignedCertificateSigExt, RefusesAnUnknownSignatureAlgorithmBeforeAnyString) {
  for (jint algorithm : {0, 3, -1}) {
    call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("secret"), 3, text("my key"),
         JNI_TRUE, 2048, subject(), 365, algorithm, 0, nullptr, nullptr, JNI_FALSE);
  }
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
    GetObjectClass(this) = class basic/CMSKeyDatabase
    return 65
    held nothing
  )");
}

TEST_F(CreateNewSelfSignedCertificateSigExt, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("p"), 3,
         text("l"), JNI_TRUE, 2048, subject(), 365, 1, 0, nullptr, nullptr, JNI_FALSE);
  callOn(env, nullptr, c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("p"), 3,
         text("l"), JNI_TRUE, 2048, subject(), 365, 1, 0, nullptr, nullptr, JNI_FALSE);
  call(c_CreateNewSelfSignedCertificateSigExt, text("a.kdb"), text("p"), 3, text("l"), JNI_TRUE,
       2048, subject(), 365, 1, 0, nullptr, nullptr, JNI_FALSE);
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
