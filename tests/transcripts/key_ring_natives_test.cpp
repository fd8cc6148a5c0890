#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_Kyr2Kdb = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1Kyr2Kdb;
constexpr auto c_Kdb2Kyr = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1Kdb2Kyr;

class KeyRingNatives : public NativeTest {
 protected:
  KeyRingNatives() : NativeTest("CMSKeyDatabase") {}
};

class Kyr2Kdb : public KeyRingNatives {};

/** Java names the key ring first; the strings of the key database are acquired first. */
TEST_F(Kyr2Kdb, TakesTheKeyDatabaseFirstAndConvertsFromTheKeyRing) {
  call(c_Kyr2Kdb, text("a.kyr"), text("ring secret"), text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.kyr")
    trace JNI_DEBUG......cKyrFileName = a.kyr
    GetStringUTFChars("ring secret")
    trace JNI_DEBUG......cKyrPwd = ring secret
    ZELKM_Kyr2Kdb("a.kyr", "ring secret", "a.kdb", "secret") = 0
    ReleaseStringUTFChars("a.kyr")
    ReleaseStringUTFChars("ring secret")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(Kyr2Kdb, HandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_Kyr2Kdb"] = 16;
  call(c_Kyr2Kdb, text("a.kyr"), text("wrong"), text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.kyr")
    trace JNI_DEBUG......cKyrFileName = a.kyr
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKyrPwd = wrong
    ZELKM_Kyr2Kdb("a.kyr", "wrong", "a.kdb", "secret") = 16
    ReleaseStringUTFChars("a.kyr")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 16
    held nothing
  )");
}

TEST_F(Kyr2Kdb, PassesNullStringsOnAndReleasesNone) {
  library().answers["ZELKM_Kyr2Kdb"] = 65;
  call(c_Kyr2Kdb, nullptr, nullptr, nullptr, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKyrFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKyrPwd = null
    ZELKM_Kyr2Kdb(null, null, null, null) = 65
    return 65
    held nothing
  )");
}

TEST_F(Kyr2Kdb, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_Kyr2Kdb, text("a"), text("b"), text("c"), text("d"));
  callOn(env, nullptr, c_Kyr2Kdb, text("a"), text("b"), text("c"), text("d"));
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

class Kdb2Kyr : public KeyRingNatives {};

TEST_F(Kdb2Kyr, ConvertsToTheKeyRingAndReleasesItsStringsFirst) {
  call(c_Kdb2Kyr, text("a.kdb"), text("secret"), text("a.kyr"), text("ring secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.kyr")
    trace JNI_DEBUG......cKyrFileName = a.kyr
    GetStringUTFChars("ring secret")
    trace JNI_DEBUG......cKyrPwd = ring secret
    ZELKM_Kdb2Kyr("a.kdb", "secret", "a.kyr", "ring secret") = 0
    ReleaseStringUTFChars("a.kyr")
    ReleaseStringUTFChars("ring secret")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(Kdb2Kyr, HandsBackTheCodeOfAFailure) {
  library().answers["ZELKM_Kdb2Kyr"] = 13;
  call(c_Kdb2Kyr, text("a.kdb"), text("secret"), text("a.kyr"), text("ring secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("a.kyr")
    trace JNI_DEBUG......cKyrFileName = a.kyr
    GetStringUTFChars("ring secret")
    trace JNI_DEBUG......cKyrPwd = ring secret
    ZELKM_Kdb2Kyr("a.kdb", "secret", "a.kyr", "ring secret") = 13
    ReleaseStringUTFChars("a.kyr")
    ReleaseStringUTFChars("ring secret")
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 13
    held nothing
  )");
}

TEST_F(Kdb2Kyr, PassesNullPasswordsOnAndReleasesNone) {
  call(c_Kdb2Kyr, text("a.kdb"), nullptr, text("a.kyr"), nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    GetStringUTFChars("a.kyr")
    trace JNI_DEBUG......cKyrFileName = a.kyr
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKyrPwd = null
    ZELKM_Kdb2Kyr("a.kdb", null, "a.kyr", null) = 0
    ReleaseStringUTFChars("a.kyr")
    ReleaseStringUTFChars("a.kdb")
    return 0
    held nothing
  )");
}

TEST_F(Kdb2Kyr, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_Kdb2Kyr, text("a"), text("b"), text("c"), text("d"));
  callOn(env, nullptr, c_Kdb2Kyr, text("a"), text("b"), text("c"), text("d"));
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
