#include "tests/fake_jni/fake_jni.h"

#include <gtest/gtest.h>

#include "tests/recorder/recorder.h"

namespace zel::test {
namespace {

constexpr const char* kSetter = "(Ljava/lang/String;)V";

class FakeJniTest : public testing::Test {
 protected:
  FakeJniTest() {
    jni.heap.declare("p/Item", {{JavaMember::kMethod, "<init>", "(SJZ[B)V"},
                                {JavaMember::kMethod, "setName", kSetter},
                                {JavaMember::kStaticMethod, "accepts", "(I)Z"},
                                {JavaMember::kField, "cn", "Ljava/lang/String;"}});
  }
  void TearDown() override { recorder().reset(); }

  FakeJni jni;
  JNIEnv* env = jni.env();
};

TEST_F(FakeJniTest, BuildsAnObjectAndCallsIt) {
  jclass type = env->FindClass("p/Item");
  jmethodID constructor = env->GetMethodID(type, "<init>", "(SJZ[B)V");
  jbyteArray bytes = env->NewByteArray(2);
  const jbyte values[] = {1, 2};
  env->SetByteArrayRegion(bytes, 0, 2, values);
  jobject item =
      env->NewObject(type, constructor, -3, static_cast<jlong>(1) << 40, JNI_TRUE, bytes);
  jmethodID setName = env->GetMethodID(type, "setName", kSetter);
  env->CallVoidMethod(item, setName, env->NewStringUTF("a"));
  env->CallStaticBooleanMethod(type, env->GetStaticMethodID(type, "accepts", "(I)Z"), 65);
  EXPECT_EQ(recorder().transcript(), R"(FindClass("p/Item") = class p/Item
GetMethodID(class p/Item, "<init>", "(SJZ[B)V")
NewByteArray(2) = bytes#1
SetByteArrayRegion(bytes#1, 0, 2, [01 02])
NewObject(class p/Item, <init>, -3, 1099511627776, true, bytes#1) = Item#1
GetMethodID(class p/Item, "setName", "(Ljava/lang/String;)V")
NewStringUTF("a")
CallVoidMethod(Item#1, setName, "a")
GetStaticMethodID(class p/Item, "accepts", "(I)Z")
CallStaticBooleanMethod(class p/Item, accepts, 65) = true
)");
  EXPECT_TRUE(recorder().errors().empty());
}

TEST_F(FakeJniTest, AnswersNullForWhatIsNotDeclared) {
  EXPECT_EQ(env->FindClass("p/Other"), nullptr);
  jclass type = env->FindClass("p/Item");
  EXPECT_EQ(env->GetMethodID(type, "setName", "(I)V"), nullptr);
  EXPECT_EQ(env->GetMethodID(type, "accepts", "(I)Z"), nullptr) << "is static";
  EXPECT_TRUE(recorder().errors().empty());
}

TEST_F(FakeJniTest, FailsTheChosenCall) {
  recorder().faults.failCall("FindClass", 2);
  EXPECT_NE(env->FindClass("p/Item"), nullptr);
  EXPECT_EQ(env->FindClass("p/Item"), nullptr);
  EXPECT_NE(env->FindClass("p/Item"), nullptr);
}

TEST_F(FakeJniTest, ReadsFields) {
  jobject item = jni.heap.newObject(env->FindClass("p/Item"), "this");
  jstring name = jni.heap.newString("Alice");
  jni.heap.thing(item)->fields["cn"] = name;
  jclass type = env->GetObjectClass(item);
  EXPECT_EQ(env->GetObjectField(item, env->GetFieldID(type, "cn", "Ljava/lang/String;")), name);
}

TEST_F(FakeJniTest, CountsStringsThatAreStillHeld) {
  jstring first = jni.heap.newString("a");
  const char* characters = env->GetStringUTFChars(first, nullptr);
  env->GetStringUTFChars(jni.heap.newString("b"), nullptr);
  env->ReleaseStringUTFChars(first, characters);
  EXPECT_EQ(recorder().owned.held(), std::vector<std::string>{"string \"b\""});
  EXPECT_TRUE(recorder().errors().empty());
}

TEST_F(FakeJniTest, CallsAWrongReleaseAnError) {
  jstring first = jni.heap.newString("a");
  jstring second = jni.heap.newString("a");
  const char* characters = env->GetStringUTFChars(first, nullptr);
  env->ReleaseStringUTFChars(second, characters);
  EXPECT_EQ(recorder().errors().size(), 1U) << "another string";
  env->ReleaseStringUTFChars(first, characters);
  EXPECT_EQ(recorder().errors().size(), 1U);
  env->ReleaseStringUTFChars(first, characters);
  EXPECT_EQ(recorder().errors().size(), 2U) << "released twice";
}

TEST_F(FakeJniTest, CallsAWrongTypeAnError) {
  jclass type = env->FindClass("p/Item");
  jmethodID setName = env->GetMethodID(type, "setName", kSetter);
  jobject item = jni.heap.newObject(type);
  env->CallVoidMethod(item, setName, jni.heap.newBytes({1}));
  EXPECT_EQ(recorder().errors().size(), 1U);
}

TEST_F(FakeJniTest, CallsANullWhereNoneMayStandAnError) {
  env->GetMethodID(nullptr, "setName", kSetter);
  EXPECT_EQ(recorder().errors().size(), 1U);
  env->NewObject(env->FindClass("p/Item"), nullptr);
  EXPECT_EQ(recorder().errors().size(), 2U);
  env->SetByteArrayRegion(nullptr, 0, 0, nullptr);
  EXPECT_EQ(recorder().errors().size(), 3U);
}

using FakeJniDeathTest = FakeJniTest;

TEST_F(FakeJniDeathTest, AbortsOutsideTheListOfFunctions) {
  // The refusal prints the function's name on standard output, beside the transcript so far.
  EXPECT_DEATH(env->ExceptionCheck(), "");
  EXPECT_DEATH(env->DeleteLocalRef(nullptr), "");
  EXPECT_DEATH(env->CallIntMethod(nullptr, nullptr), "");
}

}  // namespace
}  // namespace zel::test
