#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_ChangeKeyDbPwd = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ChangeKeyDbPwd;
constexpr auto c_StashKeyDbPwd = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1StashKeyDbPwd;

class KeyDbPasswords : public NativeTest {
 protected:
  KeyDbPasswords() : NativeTest("CMSKeyDatabase") {}
};

class ChangeKeyDbPwd : public KeyDbPasswords {};

TEST_F(ChangeKeyDbPwd, SaysTrueWhenTheLibraryChangedIt) {
  call(c_ChangeKeyDbPwd, text("a.kdb"), text("old"), text("new"), 1999);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("old")
    trace JNI_DEBUG......cOldKeyDbPwd = old
    GetStringUTFChars("new")
    trace JNI_DEBUG......cNewKeyDbPwd = new
    ZELKM_ChangeKeyDbPwd("a.kdb", "old", "new", 1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("old")
    ReleaseStringUTFChars("new")
    return true
    held nothing
  )");
}

TEST_F(ChangeKeyDbPwd, SaysFalseForAnyCode) {
  library().answers["ZELKM_ChangeKeyDbPwd"] = 68;
  call(c_ChangeKeyDbPwd, text("a.kdb"), text("old"), text("new"), -1500);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("old")
    trace JNI_DEBUG......cOldKeyDbPwd = old
    GetStringUTFChars("new")
    trace JNI_DEBUG......cNewKeyDbPwd = new
    ZELKM_ChangeKeyDbPwd("a.kdb", "old", "new", -1) = 68
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("old")
    ReleaseStringUTFChars("new")
    return false
    held nothing
  )");
}

TEST_F(ChangeKeyDbPwd, PassesNullStringsOnAndReleasesNone) {
  library().answers["ZELKM_ChangeKeyDbPwd"] = 66;
  call(c_ChangeKeyDbPwd, nullptr, nullptr, nullptr, 0);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cOldKeyDbPwd = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cNewKeyDbPwd = null
    ZELKM_ChangeKeyDbPwd(null, null, null, 0) = 66
    return false
    held nothing
  )");
}

TEST_F(ChangeKeyDbPwd, TracesItsEntryEvenForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_ChangeKeyDbPwd, text("a.kdb"), text("old"), text("new"), 0);
  callOn(env, nullptr, c_ChangeKeyDbPwd, text("a.kdb"), text("old"), text("new"), 0);
  call(c_ChangeKeyDbPwd, text("a.kdb"), text("old"), text("new"), 0);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    return false
    held nothing
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    return false
    held nothing
    trace JNI_DEBUG......c_ChangeKeyDbPwd......
    GetObjectClass(this) = null
    return false
    held nothing
  )");
}

class StashKeyDbPwd : public KeyDbPasswords {};

TEST_F(StashKeyDbPwd, NeverAsksForTheClass) {
  call(c_StashKeyDbPwd, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_StashKeyDbPwd......
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_StashKeyDbPwd("a.kdb", "secret") = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return true
    held nothing
  )");
}

TEST_F(StashKeyDbPwd, SaysFalseForAnyCode) {
  library().answers["ZELKM_StashKeyDbPwd"] = 88;
  call(c_StashKeyDbPwd, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_StashKeyDbPwd......
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_StashKeyDbPwd("a.kdb", "secret") = 88
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return false
    held nothing
  )");
}

TEST_F(StashKeyDbPwd, PassesNullStringsOnAndReleasesNone) {
  library().answers["ZELKM_StashKeyDbPwd"] = 66;
  call(c_StashKeyDbPwd, nullptr, nullptr);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_StashKeyDbPwd......
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    ZELKM_StashKeyDbPwd(null, null) = 66
    return false
    held nothing
  )");
}

TEST_F(StashKeyDbPwd, TracesItsEntryEvenForANullEnvironmentOrObject) {
  callOn(nullptr, self, c_StashKeyDbPwd, text("a.kdb"), text("secret"));
  callOn(env, nullptr, c_StashKeyDbPwd, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_StashKeyDbPwd......
    return false
    held nothing
    trace JNI_DEBUG......c_StashKeyDbPwd......
    return false
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
