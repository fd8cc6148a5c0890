#include "com_nelo_zel_vosmar_basic_CMSKeyDatabaseException.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_BuildErrCodeNameTable =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabaseException_c_1BuildErrCodeNameTable;

class BuildErrCodeNameTable : public NativeTest {
 protected:
  BuildErrCodeNameTable() : NativeTest("CMSKeyDatabaseException") {}
};

/** What offering one entry of the table looks like. */
std::string offered(int code, const std::string& name) {
  const std::string number = std::to_string(code);
  return "trace JNI_DEBUG......errKeyIndex = " + number + "\n" +
         "trace JNI_DEBUG......errKey = " + name + "\n" +  //
         "NewStringUTF(\"" + name + "\")\n" +              //
         "CallStaticBooleanMethod(class basic/CMSKeyDatabaseException, addCMSErrCode, " + number +
         ", \"" + name + "\") = ";
}

constexpr const char* kBegun = R"(
    trace JNI_DEBUG......c_BuildErrCodeNameTable......
    GetStaticMethodID(class basic/CMSKeyDatabaseException, "addCMSErrCode", "(ILjava/lang/String;)Z")
    trace JNI_DEBUG......jmethodId is found.
)";

TEST_F(BuildErrCodeNameTable, OffersEveryNameInTheOrderOfTheCodes) {
  std::string expected = kBegun;
#define ROW(code, name) expected += offered(code, #name) + "true\n";
  ZELKM_ERROR_CODES(ROW)
#undef ROW
  call(c_BuildErrCodeNameTable);
  EXPECT_TRANSCRIPT(expected + "return true\nheld nothing\n");
  const std::string transcript = recorder().transcript();
  EXPECT_NE(transcript.find("addCMSErrCode, 65, \"ZELKM_ERR_PARAMETER\""), std::string::npos);
  EXPECT_NE(transcript.find("addCMSErrCode, 66, \"ZELKM_ERR_NULL_PARAMETER\""), std::string::npos);
  EXPECT_NE(transcript.find("addCMSErrCode, 151, \"ZELKM_ERR_NO_TOKEN_PRESENT\""),
            std::string::npos);
}

TEST_F(BuildErrCodeNameTable, StopsAtTheFirstRefusal) {
  recorder().faults.failCall("CallStaticBooleanMethod", 2);
  call(c_BuildErrCodeNameTable);
  EXPECT_TRANSCRIPT(kBegun + offered(1, "ZELKM_ERR_UNKNOWN") + "true\n" +
                    offered(2, "ZELKM_ERR_ASN") + "false\n" + R"(
    return false
    held nothing
  )");
}

TEST_F(BuildErrCodeNameTable, HandsBackARefusalOfTheLastName) {
  recorder().faults.failCall("CallStaticBooleanMethod", 151);
  call(c_BuildErrCodeNameTable);
  EXPECT_NE(recorder().transcript().find("\"ZELKM_ERR_NO_TOKEN_PRESENT\") = false\nreturn false\n"),
            std::string::npos);
}

TEST_F(BuildErrCodeNameTable, OffersTheWholeTableAgain) {
  call(c_BuildErrCodeNameTable);
  const size_t once = recorder().transcript().size();
  call(c_BuildErrCodeNameTable);
  EXPECT_EQ(recorder().transcript().size(), 2 * once);
}

TEST_F(BuildErrCodeNameTable, PassesOnANameThatCouldNotBeMade) {
  recorder().faults.failCall("NewStringUTF", 1);
  recorder().faults.failCall("CallStaticBooleanMethod", 1);
  call(c_BuildErrCodeNameTable);
  EXPECT_TRANSCRIPT(std::string(kBegun) + R"(
    trace JNI_DEBUG......errKeyIndex = 1
    trace JNI_DEBUG......errKey = ZELKM_ERR_UNKNOWN
    NewStringUTF("ZELKM_ERR_UNKNOWN") = null
    CallStaticBooleanMethod(class basic/CMSKeyDatabaseException, addCMSErrCode, 1, null) = false
    return false
    held nothing
  )");
}

TEST_F(BuildErrCodeNameTable, IsFalseWithoutTheMethod) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/CMSKeyDatabaseException", "addCMSErrCode");
  call(c_BuildErrCodeNameTable);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_BuildErrCodeNameTable......
    GetStaticMethodID(class basic/CMSKeyDatabaseException, "addCMSErrCode", "(ILjava/lang/String;)Z") = null
    return false
    held nothing
  )");
}

TEST_F(BuildErrCodeNameTable, TracesItsEntryEvenForANullEnvironmentOrClass) {
  callOn(nullptr, type, c_BuildErrCodeNameTable);
  callOn(env, nullptr, c_BuildErrCodeNameTable);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......c_BuildErrCodeNameTable......
    return false
    held nothing
    trace JNI_DEBUG......c_BuildErrCodeNameTable......
    return false
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
