#include "bridge/marshal/held_strings.h"

#include <gtest/gtest.h>

#include "tests/fake_jni/fake_jni.h"
#include "tests/recorder/recorder.h"

namespace zel::bridge {
namespace {

constexpr TextTrace kTrace{"taken %s\n"};

class HeldStringsTest : public testing::Test {
 protected:
  ~HeldStringsTest() override { test::recorder().reset(); }

  jstring text(const char* value) { return jni_.heap.newString(value); }
  JNIEnv* env() { return jni_.env(); }

 private:
  test::FakeJni jni_;
};

TEST_F(HeldStringsTest, ReleasesInTheOrderOfTaking) {
  HeldStrings held(env());
  EXPECT_STREQ(held.take(text("a"), kTrace), "a");
  EXPECT_STREQ(held.take(text("b"), kTrace), "b");
  held.releaseAll();
  EXPECT_EQ(test::recorder().transcript(),
            "GetStringUTFChars(\"a\")\n"
            "GetStringUTFChars(\"b\")\n"
            "ReleaseStringUTFChars(\"a\")\n"
            "ReleaseStringUTFChars(\"b\")\n");
}

TEST_F(HeldStringsTest, ReleasesInAnyOtherOrderWhenTold) {
  HeldStrings held(env());
  const char* a = held.take(text("a"), kTrace);
  const char* b = held.take(text("b"), kTrace);
  const char* c = held.take(text("c"), kTrace);
  held.releaseInOrder({c, a, b});
  EXPECT_EQ(test::recorder().transcript(),
            "GetStringUTFChars(\"a\")\n"
            "GetStringUTFChars(\"b\")\n"
            "GetStringUTFChars(\"c\")\n"
            "ReleaseStringUTFChars(\"c\")\n"
            "ReleaseStringUTFChars(\"a\")\n"
            "ReleaseStringUTFChars(\"b\")\n");
}

TEST_F(HeldStringsTest, DoesNotReleaseWhatCouldNotBeAcquired) {
  test::recorder().faults.failCall("GetStringUTFChars", 1);
  HeldStrings held(env());
  const char* a = held.take(text("a"), kTrace);
  const char* b = held.take(text("b"), kTrace);
  EXPECT_EQ(a, nullptr);
  held.releaseInOrder({b, a});
  EXPECT_EQ(test::recorder().transcript(),
            "GetStringUTFChars(\"a\") = null\n"
            "GetStringUTFChars(\"b\")\n"
            "ReleaseStringUTFChars(\"b\")\n");
}

TEST_F(HeldStringsTest, LeavesAnOptionalNullAlone) {
  HeldStrings held(env());
  EXPECT_EQ(held.takeIfGiven(nullptr), nullptr);
  EXPECT_EQ(held.takeIfGiven(nullptr, kTrace), nullptr);
  held.releaseAll();
  EXPECT_EQ(test::recorder().transcript(), "");
}

#ifndef NDEBUG
TEST_F(HeldStringsTest, InsistsOnADecision) {
  EXPECT_DEATH(
      {
        HeldStrings held(env());
        held.take(text("a"), kTrace);
      },
      "release the strings or leave them held");
}

TEST_F(HeldStringsTest, InsistsOnStringsThatItHolds) {
  EXPECT_DEATH(
      {
        HeldStrings held(env());
        held.take(text("a"), kTrace);
        held.releaseInOrder({"b"});
      },
      "only what is held is released");
}
#endif

}  // namespace
}  // namespace zel::bridge
