#ifndef TESTS_TRANSCRIPTS_NATIVE_TEST_H_
#define TESTS_TRANSCRIPTS_NATIVE_TEST_H_

#include <gtest/gtest.h>
#include <jni.h>

#include <initializer_list>
#include <map>
#include <string>
#include <type_traits>

#include "tests/fake_jni/fake_jni.h"
#include "tests/recorder/recorder.h"
#include "tests/recorder/watched_libc.h"
#include "tests/recording_double/recording_double.h"
#include "tests/transcripts/java_classes.h"

/**
 * @file
 * The fixture of the transcripts: a native is called once with everything that it touches scripted,
 * and all that it did is compared with a text, to be read beside the native's own body.
 *
 *     TEST_F(OpenKeyDb, HandsBackTheCodeOfAFailedOpen) {
 *       library().answers["ZELKM_OpenKeyDb"] = 16;
 *       call(c_OpenKeyDb, text("a.kdb"), text("wrong"));
 *       EXPECT_TRANSCRIPT(R"(
 *         GetObjectClass(this) = class basic/CMSKeyDatabase
 *         GetStringUTFChars("a.kdb")
 *         trace JNI_DEBUG......cKeyDbFileName = a.kdb
 *         ...
 *         ReleaseStringUTFChars("a.kdb")
 *         return 16
 *         held nothing
 *       )");
 *     }
 *
 * One line is one event, in the order of the events:
 *   a JNI function or library operation with its arguments, and its result after "=" when it has
 *     one: text is quoted, bytes are in hexadecimal, objects have names, an opened handle or a
 *     record handed out follows the code;
 *   malloc, free, fopen, fread and fclose; "wiped" marks a block that was overwritten first;
 *   trace, stdout or a file's name: a line written to that stream; 0x{...} stands for the number of
 *     the reference that it names;
 *   return: the native's result;
 *   held: all that the native was given and did not give back.
 * Nothing is left out; only the long constructor signatures have the shorthands of java_classes.h,
 * "{KeyItem}" for one, which stand for the whole text. An ERROR line fails the test even when the
 * transcript expects it.
 */

namespace zel::test {

class NativeTest : public testing::Test {
 protected:
  /** The natives under test are called on "this", an object of the class, or on the class. */
  explicit NativeTest(const std::string& className, const std::string& package = kBasic);
  ~NativeTest() override;

  jstring text(const std::string& value) { return jni.heap.newString(value); }
  /** bytes() is an array; one of several needs a name, since arguments are made in any order. */
  jbyteArray bytes(const Bytes& value, const std::string& name = "") {
    return jni.heap.newBytes(value, name);
  }
  /** texts() is an array of strings, of which any may be null. */
  jobjectArray texts(std::initializer_list<const char*> values);
  /** dnItem() is a DNItem named "dn", with the fields that are given. */
  jobject dnItem(const std::map<std::string, std::string>& fields);
  jclass classOf(const char* basicName) {
    return jni.heap.classNamed(kBasic + std::string(basicName));
  }

  /** call() calls a native with the environment and with "this", or the class if it is static. */
  template <typename Result, typename Receiver, typename... Arguments>
  void call(Result (*native)(JNIEnv*, Receiver, Arguments...),
            std::type_identity_t<Arguments>... arguments) {
    callOn(env, static_cast<Receiver>(std::is_same_v<Receiver, jclass> ? type : self), native,
           arguments...);
  }

  /** callOn() calls a native with any environment and receiver, null included. */
  template <typename Result, typename Receiver, typename... Arguments>
  void callOn(JNIEnv* environment, std::type_identity_t<Receiver> receiver,
              Result (*native)(JNIEnv*, Receiver, Arguments...),
              std::type_identity_t<Arguments>... arguments) {
    Result result;
    {
      const BridgeCall bridge;
      result = native(environment, receiver, arguments...);
    }
    finish(shown(result));
  }

  /** convert() runs a converter, or any other piece of the bridge, in the same way. */
  template <typename Piece>
  void convert(Piece piece) {
    jobject result = nullptr;
    {
      const BridgeCall bridge;
      result = piece();
    }
    finish(shown(result));
  }

  FakeJni jni;
  JNIEnv* env = jni.env();
  jclass type;
  jobject self;

 private:
  std::string shown(jint result) { return std::to_string(result); }
  std::string shown(jboolean result);
  std::string shown(jobject result) { return jni.heap.shown(result); }
  static void finish(const std::string& result);
};

/** Compares the transcript so far with the text, whose indentation does not matter. */
testing::AssertionResult transcriptIs(const std::string& expected);

#define EXPECT_TRANSCRIPT(expected) EXPECT_TRUE(zel::test::transcriptIs(expected))

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_NATIVE_TEST_H_
