#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_BuildKeyLabelList =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1BuildKeyLabelList;

class BuildKeyLabelList : public NativeTest {
 protected:
  BuildKeyLabelList() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(BuildKeyLabelList, DeliversKeyLabelsThenRequestLabels) {
  library().keyLabels = [] { return newLabelList({"one", "two"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......cLabel = one
    NewStringUTF("one")
    CallVoidMethod(this, addKeyLabel, "one")
    trace JNI_DEBUG......cLabel = two
    NewStringUTF("two")
    CallVoidMethod(this, addKeyLabel, "two")
    ZELKM_FreeLabelList(label list#1)
    GetMethodID(class basic/CMSKeyDatabase, "addReqKeyLabel", "(Ljava/lang/String;)V")
    trace JNI_DEBUG......cReqLabel = request
    NewStringUTF("request")
    CallVoidMethod(this, addReqKeyLabel, "request")
    ZELKM_FreeLabelList(label list#2)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, DeliversNothingFromAnEmptyDatabase) {
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_GetReqKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, EndsAListAtALabelOfNullAndStillFreesIt) {
  library().keyLabels = [] { return newLabelList({nullptr, "behind the end"}); };
  library().requestLabels = [] { return newLabelList({"request", nullptr, "behind the end"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
    ZELKM_CloseKeyDb(1) = 0
    ZELKM_FreeLabelList(label list#1)
    GetMethodID(class basic/CMSKeyDatabase, "addReqKeyLabel", "(Ljava/lang/String;)V")
    trace JNI_DEBUG......cReqLabel = request
    NewStringUTF("request")
    CallVoidMethod(this, addReqKeyLabel, "request")
    ZELKM_FreeLabelList(label list#2)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, LeavesTheStringsHeldWithoutAddKeyLabel) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/CMSKeyDatabase", "addKeyLabel");
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V") = null
    return 65
    held string "a.kdb"
    held string "secret"
  )");
}

TEST_F(BuildKeyLabelList, FreesTheRequestListUndeliveredWithoutAddReqKeyLabel) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/CMSKeyDatabase", "addReqKeyLabel");
  library().requestLabels = [] { return newLabelList({"request"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, null
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#1
    ZELKM_CloseKeyDb(1) = 0
    GetMethodID(class basic/CMSKeyDatabase, "addReqKeyLabel", "(Ljava/lang/String;)V") = null
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, FetchesNothingWhenTheOpenFails) {
  library().answers["ZELKM_OpenKeyDb"] = 101;
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 101
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 101
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, FetchesNoRequestsWhenTheKeyListFails) {
  library().answers["ZELKM_GetKeyDbLabelList"] = 18;
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 18
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 18
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, DeliversAKeyListThatCameWithAnError) {
  library().answers["ZELKM_GetKeyDbLabelList"] = 18;
  library().outputsDespiteErrors = true;
  library().keyLabels = [] { return newLabelList({"one"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 18, label list#1
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......cLabel = one
    NewStringUTF("one")
    CallVoidMethod(this, addKeyLabel, "one")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 18
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, LeavesARequestListThatCameWithAnErrorHeld) {
  library().answers["ZELKM_GetReqKeyDbLabelList"] = 18;
  library().outputsDespiteErrors = true;
  library().keyLabels = [] { return newLabelList({"one"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 18, label list#2
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......cLabel = one
    NewStringUTF("one")
    CallVoidMethod(this, addKeyLabel, "one")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 18
    held label list#2
  )");
}

TEST_F(BuildKeyLabelList, CallsOnWithNullWhenAStringCannotBeMade) {
  recorder().faults.failCall("NewStringUTF", 1);
  library().keyLabels = [] { return newLabelList({"one", "two"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......cLabel = one
    NewStringUTF("one") = null
    CallVoidMethod(this, addKeyLabel, null)
    trace JNI_DEBUG......cLabel = two
    NewStringUTF("two")
    CallVoidMethod(this, addKeyLabel, "two")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

/** The exception is Java's to see on return. */
TEST_F(BuildKeyLabelList, DeliversOnWhenACallbackThrows) {
  jni.voidMethodsThrow = true;
  library().keyLabels = [] { return newLabelList({"one", "two"}); };
  library().requestLabels = [] { return newLabelList({"request"}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 0, label list#2
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......cLabel = one
    NewStringUTF("one")
    CallVoidMethod(this, addKeyLabel, "one") throws
    trace JNI_DEBUG......cLabel = two
    NewStringUTF("two")
    CallVoidMethod(this, addKeyLabel, "two") throws
    ZELKM_FreeLabelList(label list#1)
    GetMethodID(class basic/CMSKeyDatabase, "addReqKeyLabel", "(Ljava/lang/String;)V")
    trace JNI_DEBUG......cReqLabel = request
    NewStringUTF("request")
    CallVoidMethod(this, addReqKeyLabel, "request") throws
    ZELKM_FreeLabelList(label list#2)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

TEST_F(BuildKeyLabelList, RefusesANullEnvironmentObjectOrClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  callOn(nullptr, self, c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  callOn(env, nullptr, c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
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

TEST_F(BuildKeyLabelList, CutsLongLabels) {
  const std::string longLabel(512, 'x');
  const std::string cut(511, 'x');
  library().keyLabels = [&] { return newLabelList({longLabel.c_str()}); };
  call(c_BuildKeyLabelList, text("a.kdb"), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class basic/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetMethodID(class basic/CMSKeyDatabase, "addKeyLabel", "(Ljava/lang/String;)V")
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyDbLabelList(1) = 0, label list#1
    ZELKM_GetReqKeyDbLabelList(1) = 0, null
    ZELKM_CloseKeyDb(1) = 0
    trace JNI_DEBUG......cLabel = )" +
                    cut + R"(
    NewStringUTF(")" +
                    cut + R"(")
    CallVoidMethod(this, addKeyLabel, ")" +
                    cut + R"(")
    ZELKM_FreeLabelList(label list#1)
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    return 0
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
