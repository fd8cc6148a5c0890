#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "com_nelo_zel_vosmar_basic_WEBDBKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_IsPasswordRequired =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IsPasswordRequired;
constexpr auto webDb_c_IsPasswordRequired =
    Java_com_nelo_zel_vosmar_basic_WEBDBKeyDatabase_c_1IsPasswordRequired;

class IsPasswordRequired : public NativeTest {
 protected:
  IsPasswordRequired() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(IsPasswordRequired, AsksAboutAKeyDatabaseFile) {
  call(c_IsPasswordRequired, text("a.kdb"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFilename = a.kdb
    ZELKM_IsPasswordRequired({type 1, file "a.kdb"}) = 0, 1
    ReleaseStringUTFChars("a.kdb")
    return true
    held nothing
  )");
}

TEST_F(IsPasswordRequired, IsTrueOnlyForAFlagOfOne) {
  library().flag = 0;
  call(c_IsPasswordRequired, text("a.kdb"));
  library().flag = 2;
  call(c_IsPasswordRequired, text("a.kdb"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFilename = a.kdb
    ZELKM_IsPasswordRequired({type 1, file "a.kdb"}) = 0, 0
    ReleaseStringUTFChars("a.kdb")
    return false
    held nothing
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFilename = a.kdb
    ZELKM_IsPasswordRequired({type 1, file "a.kdb"}) = 0, 2
    ReleaseStringUTFChars("a.kdb")
    return false
    held nothing
  )");
}

TEST_F(IsPasswordRequired, IsFalseForAnyCodeWhateverTheFlag) {
  library().answers["ZELKM_IsPasswordRequired"] = 101;
  library().outputsDespiteErrors = true;
  call(c_IsPasswordRequired, text("none.kdb"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("none.kdb")
    trace JNI_DEBUG......cKeyDbFilename = none.kdb
    ZELKM_IsPasswordRequired({type 1, file "none.kdb"}) = 101, 1
    ReleaseStringUTFChars("none.kdb")
    return false
    held nothing
  )");
}

TEST_F(IsPasswordRequired, PassesANameThatCouldNotBeAcquiredOnAsNull) {
  recorder().faults.failCall("GetStringUTFChars", 1);
  library().answers["ZELKM_IsPasswordRequired"] = 65;
  call(c_IsPasswordRequired, text("a.kdb"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.kdb") = null
    trace JNI_DEBUG......cKeyDbFilename = null
    ZELKM_IsPasswordRequired({type 1}) = 65
    return false
    held nothing
  )");
}

TEST_F(IsPasswordRequired, IsFalseForANullEnvironmentObjectOrName) {
  callOn(nullptr, self, c_IsPasswordRequired, text("a.kdb"));
  callOn(env, nullptr, c_IsPasswordRequired, text("a.kdb"));
  call(c_IsPasswordRequired, nullptr);
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
    return false
    held nothing
  )");
}

class WebDbIsPasswordRequired : public NativeTest {
 protected:
  WebDbIsPasswordRequired() : NativeTest("WEBDBKeyDatabase") {}
};

TEST_F(WebDbIsPasswordRequired, AsksAboutAWebDatabase) {
  call(webDb_c_IsPasswordRequired, text("a.web"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.web")
    trace JNI_DEBUG......cKeyDbFilename = a.web
    ZELKM_IsPasswordRequired({type 3, file "a.web"}) = 0, 1
    ReleaseStringUTFChars("a.web")
    return true
    held nothing
  )");
}

TEST_F(WebDbIsPasswordRequired, IsTrueOnlyForAFlagOfOne) {
  library().flag = 255;
  call(webDb_c_IsPasswordRequired, text("a.web"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("a.web")
    trace JNI_DEBUG......cKeyDbFilename = a.web
    ZELKM_IsPasswordRequired({type 3, file "a.web"}) = 0, 255
    ReleaseStringUTFChars("a.web")
    return false
    held nothing
  )");
}

TEST_F(WebDbIsPasswordRequired, IsFalseForAnyCode) {
  library().answers["ZELKM_IsPasswordRequired"] = 101;
  call(webDb_c_IsPasswordRequired, text("none.web"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("none.web")
    trace JNI_DEBUG......cKeyDbFilename = none.web
    ZELKM_IsPasswordRequired({type 3, file "none.web"}) = 101
    ReleaseStringUTFChars("none.web")
    return false
    held nothing
  )");
}

TEST_F(WebDbIsPasswordRequired, IsFalseForANullEnvironmentObjectOrName) {
  callOn(nullptr, self, webDb_c_IsPasswordRequired, text("a.web"));
  callOn(env, nullptr, webDb_c_IsPasswordRequired, text("a.web"));
  call(webDb_c_IsPasswordRequired, nullptr);
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
    return false
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
