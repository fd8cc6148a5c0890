#include "bridge/marshal/strings_and_bytes.h"

#include <cstdlib>

#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::JavaByteArrayToUChar;
using bridge::kBasicItems;
using bridge::newBERObject;
using bridge::newJavaString;

class NewJavaString : public NativeTest {
 protected:
  NewJavaString() : NativeTest("CMSKeyDatabase") {}
};

TEST_F(NewJavaString, MakesAStringOfAText) {
  convert([&] { return newJavaString(env, "text"); });
  EXPECT_TRANSCRIPT(R"(
    NewStringUTF("text")
    return "text"
    held nothing
  )");
}

TEST_F(NewJavaString, MakesNothingOfNothing) {
  convert([&] { return newJavaString(env, nullptr); });
  convert([&] { return newJavaString(nullptr, "text"); });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

class JavaByteArrayToUCharTest : public NativeTest {
 protected:
  JavaByteArrayToUCharTest() : NativeTest("CMSKeyDatabase") {}

  void copy(jbyteArray array, jint expectedLength) {
    convert([&] {
      JavaByteArrayToUChar(env, array, expectedLength, &out);
      return nullptr;
    });
  }

  unsigned char notNull = 0;
  unsigned char* out = &notNull;
};

TEST_F(JavaByteArrayToUCharTest, CopiesAnArrayOfTheExpectedLength) {
  copy(bytes({1, 2, 0xff}), 3);
  EXPECT_TRANSCRIPT(R"(
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#1
    GetByteArrayElements(bytes#1) = [01 02 ff]
    return null
    held block#1
    held elements of bytes#1
  )");
  EXPECT_EQ(Bytes(out, out + 3), (Bytes{1, 2, 0xff}));
}

TEST_F(JavaByteArrayToUCharTest, WritesNullForAnotherLength) {
  copy(bytes(Bytes(10)), 9);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetArrayLength(bytes#1) = 10
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held nothing
  )");
}

TEST_F(JavaByteArrayToUCharTest, WritesNullForANegativeLength) {
  copy(bytes({1}), -1);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held nothing
  )");
}

TEST_F(JavaByteArrayToUCharTest, NeverTouchesTheArrayWhenNothingIsExpected) {
  copy(bytes({1}), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

TEST_F(JavaByteArrayToUCharTest, WritesNullForANullArray) {
  copy(nullptr, 3);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

TEST_F(JavaByteArrayToUCharTest, DoesNothingWithoutAnOutput) {
  convert([&] {
    JavaByteArrayToUChar(env, bytes({1}), 1, nullptr);
    return nullptr;
  });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

TEST_F(JavaByteArrayToUCharTest, WritesNullWithoutMemory) {
  recorder().faults.failCall("malloc", 1);
  copy(bytes({1, 2, 3}), 3);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = null
    return null
    held nothing
  )");
}

TEST_F(JavaByteArrayToUCharTest, KeepsNoBufferWithoutTheElements) {
  recorder().faults.failCall("GetByteArrayElements", 1);
  copy(bytes({1, 2, 3}), 3);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#1
    GetByteArrayElements(bytes#1) = null
    free(block#1)
    return null
    held nothing
  )");
}

class NewBerObject : public NativeTest {
 protected:
  NewBerObject() : NativeTest("CMSKeyDatabase") {}

  const unsigned char data[2] = {0x30, 0x01};
};

TEST_F(NewBerObject, WrapsTheBytes) {
  convert([&] { return newBERObject(env, kBasicItems, data, 2); });
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 01])
    NewObject(class basic/BERObject, <init>, bytes#1) = BERObject#1
    return BERObject#1
    held nothing
  )");
}

TEST_F(NewBerObject, MakesNothingOfNoBytes) {
  convert([&] { return newBERObject(env, kBasicItems, data, 0); });
  convert([&] { return newBERObject(env, kBasicItems, nullptr, 2); });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

TEST_F(NewBerObject, EndsAtTheFirstFailure) {
  recorder().faults.failCall("FindClass", 1);
  convert([&] { return newBERObject(env, kBasicItems, data, 2); });
  recorder().faults.failCall("GetMethodID", 1);
  convert([&] { return newBERObject(env, kBasicItems, data, 2); });
  recorder().faults.failCall("NewByteArray", 1);
  convert([&] { return newBERObject(env, kBasicItems, data, 2); });
  recorder().faults.failCall("NewObject", 1);
  convert([&] { return newBERObject(env, kBasicItems, data, 2); });
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = null
    return null
    held nothing
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V") = null
    return null
    held nothing
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = null
    return null
    held nothing
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 01])
    NewObject(class basic/BERObject, <init>, bytes#1) = null
    return null
    held nothing
  )");
}

TEST_F(NewBerObject, LeavesACertificatesExtraObjectUnconverted) {
  convert([&] { return bridge::nullObjectConverter(env, data); });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
