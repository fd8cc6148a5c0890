#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_IsPrivateKeyPresent =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IsPrivateKeyPresent;

class IsPrivateKeyPresent : public NativeTest {
 protected:
  IsPrivateKeyPresent() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(IsPrivateKeyPresent, IsTrueForAFlagOfOne) {
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "my key") = 0, 1
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return true
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseForAFlagOfTwo) {
  library().flag = 2;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "my key") = 0, 2
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return false
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseWhenTheLibraryFails) {
  library().answers["ZELKM_IsPrivateKeyPresent"] = 117;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("other"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("other")
    trace JNI_DEBUG......cKeyLabel = other
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "other") = 117
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("other")
    return false
    held nothing
  )");
}

/** The flag alone decides. */
TEST_F(IsPrivateKeyPresent, IsTrueForAFlagThatCameWithAnError) {
  library().answers["ZELKM_IsPrivateKeyPresent"] = 117;
  library().outputsDespiteErrors = true;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("secret"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_IsPrivateKeyPresent(1, "my key") = 117, 1
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return true
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("wrong"), text("my key"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "wrong") = 16
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("wrong")
    ReleaseStringUTFChars("my key")
    return false
    held nothing
  )");
}

TEST_F(IsPrivateKeyPresent, IsFalseForANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_IsPrivateKeyPresent, text("a.kdb"), text("p"), text("l"));
  callOn(env, nullptr, c_IsPrivateKeyPresent, text("a.kdb"), text("p"), text("l"));
  call(c_IsPrivateKeyPresent, text("a.kdb"), text("p"), text("l"));
  EXPECT_TRANSCRIPT(R"(
    return false
    held nothing
    return false
    held nothing
    GetObjectClass(this) = null
    return false
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
