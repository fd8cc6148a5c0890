#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_CreateNewKeyDb = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewKeyDb;
constexpr auto c_CreateNewKeyDbFIPS =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewKeyDbFIPS;
constexpr auto c_OpenKeyDb = Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1OpenKeyDb;

class Lifecycle : public NativeTest {
 protected:
  Lifecycle() : NativeTest("CMSKeyDatabase") {}
};

class CreateNewKeyDb : public Lifecycle {};

TEST_F(CreateNewKeyDb, CreatesAndClosesAtOnce) {
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 5000);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDb("a.kdb", "secret", 5) = 0, handle 1
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(CreateNewKeyDb, HandsBackTheCodeOfAFailedCreate) {
  library().answers["ZELKM_CreateNewKeyDb"] = 9;
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDb("a.kdb", "secret", 0) = 9
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 9
    held nothing
  )");
}

TEST_F(CreateNewKeyDb, ClosesNoHandleOfZero) {
  library().opensWithoutHandle = true;
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDb("a.kdb", "secret", 0) = 0, handle 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(CreateNewKeyDb, ClosesNothingWhenAFailedCreateLeavesAHandle) {
  library().answers["ZELKM_CreateNewKeyDb"] = 13;
  library().outputsDespiteErrors = true;
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDb("a.kdb", "secret", 0) = 13, handle 1
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 13
    held handle 1
  )");
}

TEST_F(CreateNewKeyDb, IgnoresTheCodeOfTheClose) {
  library().answers["ZELKM_CloseKeyDb"] = 100;
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDb("a.kdb", "secret", 0) = 0, handle 1
    ZELKM_CloseKeyDb(1) = 100
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

/** The lifetime in seconds that the library is given for one in milliseconds. */
class CreateNewKeyDbLifetime : public Lifecycle {
 protected:
  void expectSeconds(jlong milliseconds, const std::string& seconds) {
    recorder().reset();
    resetLibrary();
    {
      const BridgeCall bridge;
      c_CreateNewKeyDb(env, self, text("a.kdb"), text("secret"), milliseconds);
    }
    EXPECT_NE(recorder().transcript().find("\"secret\", " + seconds + ") = 0"), std::string::npos)
        << recorder().transcript();
  }
};

TEST_F(CreateNewKeyDbLifetime, IsInSecondsTruncatedTowardZero) {
  expectSeconds(999, "0");
  expectSeconds(1000, "1");
  expectSeconds(-1500, "-1");
  expectSeconds(31536000000000, "31536000000");
}

TEST_F(CreateNewKeyDb, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  callOn(env, nullptr, c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    return 65
    held nothing
    return 65
    held nothing
  )");
}

TEST_F(CreateNewKeyDb, RefusesAnObjectWithoutAClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  call(c_CreateNewKeyDb, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = null
    return 65
    held nothing
  )");
}

TEST_F(CreateNewKeyDb, PassesNullStringsOnAndReleasesNone) {
  call(c_CreateNewKeyDb, nullptr, nullptr, 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbFileName = null
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    ZELKM_CreateNewKeyDb(null, null, 0) = 0, handle 1
    ZELKM_CloseKeyDb(1) = 0
    return 0
    held nothing
  )");
}

class CreateNewKeyDbFips : public Lifecycle {};

TEST_F(CreateNewKeyDbFips, CreatesAndClosesAtOnce) {
  call(c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 86400000);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDbFIPS("a.kdb", "secret", 86400) = 0, handle 1
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(CreateNewKeyDbFips, HandsBackTheCodeOfAFailedCreate) {
  library().answers["ZELKM_CreateNewKeyDbFIPS"] = 80;
  call(c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDbFIPS("a.kdb", "secret", 0) = 80
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 80
    held nothing
  )");
}

TEST_F(CreateNewKeyDbFips, ClosesNoHandleOfZero) {
  library().opensWithoutHandle = true;
  call(c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 0);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_CreateNewKeyDbFIPS("a.kdb", "secret", 0) = 0, handle 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(CreateNewKeyDbFips, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 0);
  callOn(env, nullptr, c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 0);
  call(c_CreateNewKeyDbFIPS, text("a.kdb"), text("secret"), 0);
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

class OpenKeyDb : public Lifecycle {};

TEST_F(OpenKeyDb, ClosesAtOnceWhatItOpened) {
  call(c_OpenKeyDb, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(OpenKeyDb, HandsBackTheCodeOfAWrongPassword) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_OpenKeyDb, text("a.kdb"), text("wrong"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    return 16
    held nothing
  )");
}

TEST_F(OpenKeyDb, ClosesNoHandleOfZero) {
  library().opensWithoutHandle = true;
  call(c_OpenKeyDb, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(OpenKeyDb, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_OpenKeyDb, text("a.kdb"), text("secret"));
  callOn(env, nullptr, c_OpenKeyDb, text("a.kdb"), text("secret"));
  call(c_OpenKeyDb, text("a.kdb"), text("secret"));
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

TEST_F(OpenKeyDb, TracesAStringThatCouldNotBeAcquiredAsNull) {
  recorder().faults.failCall("GetStringUTFChars", 2);
  library().answers["ZELKM_OpenKeyDb"] = 66;
  call(c_OpenKeyDb, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret") = null
    trace JNI_DEBUG......cKeyDbPwd = null
    ZELKM_OpenKeyDb("a.kdb", null) = 66
    ReleaseStringUTFChars("a.kdb")
    return 66
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
