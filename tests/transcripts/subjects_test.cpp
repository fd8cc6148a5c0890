#include "bridge/marshal/distinguished_names.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::JavaDNItem2CDN;

class JavaDNItem2CDNTest : public NativeTest {
 protected:
  JavaDNItem2CDNTest() : NativeTest("CMSKeyDatabase") {}

  void convertToRecord(jobject item) {
    convert([&] {
      JavaDNItem2CDN(env, item, &out);
      return nullptr;
    });
  }

  ZELKMDNItem notNull{};
  ZELKMDNItem* out = &notNull;
};

constexpr const char* kFieldsLookedUp = R"(
    GetObjectClass(dn) = class basic/DNItem
    GetFieldID(class basic/DNItem, "cn", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "ou", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "o", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "l", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "s", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "pc", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "c", "Ljava/lang/String;")
)";

TEST_F(JavaDNItem2CDNTest, CopiesEveryNamedAttribute) {
  convertToRecord(dnItem({{"cn", "Alice"},
                          {"ou", "Unit"},
                          {"o", "Firm"},
                          {"l", "Town"},
                          {"s", "State"},
                          {"pc", "12345"},
                          {"c", "DE"}}));
  EXPECT_TRANSCRIPT(std::string(kFieldsLookedUp) + R"(
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, ou) = "Unit"
    GetObjectField(dn, o) = "Firm"
    GetObjectField(dn, l) = "Town"
    GetObjectField(dn, s) = "State"
    GetObjectField(dn, pc) = "12345"
    GetObjectField(dn, c) = "DE"
    malloc(104) = block#1
    ZELKM_InitDNItem(block#1)
    GetStringUTFChars("Alice")
    trace JNI_DEBUG......ccn = Alice
    ZELKM_Strdup("Alice")
    ReleaseStringUTFChars("Alice")
    GetStringUTFChars("Unit")
    trace JNI_DEBUG......cou = Unit
    ZELKM_Strdup("Unit")
    ReleaseStringUTFChars("Unit")
    GetStringUTFChars("Firm")
    trace JNI_DEBUG......co = Firm
    ZELKM_Strdup("Firm")
    ReleaseStringUTFChars("Firm")
    GetStringUTFChars("Town")
    trace JNI_DEBUG......cl = Town
    ZELKM_Strdup("Town")
    ReleaseStringUTFChars("Town")
    GetStringUTFChars("State")
    trace JNI_DEBUG......cs = State
    ZELKM_Strdup("State")
    ReleaseStringUTFChars("State")
    GetStringUTFChars("12345")
    trace JNI_DEBUG......cpc = 12345
    ZELKM_Strdup("12345")
    ReleaseStringUTFChars("12345")
    GetStringUTFChars("DE")
    trace JNI_DEBUG......cc = DE
    ZELKM_Strdup("DE")
    ReleaseStringUTFChars("DE")
    return null
    held block#1
    held text "Alice"
    held text "Unit"
    held text "Firm"
    held text "Town"
    held text "State"
    held text "12345"
    held text "DE"
  )");
  EXPECT_STREQ(out->cn, "Alice");
  EXPECT_STREQ(out->ou, "Unit");
  EXPECT_STREQ(out->o, "Firm");
  EXPECT_STREQ(out->l, "Town");
  EXPECT_STREQ(out->s, "State");
  EXPECT_STREQ(out->pc, "12345");
  EXPECT_STREQ(out->c, "DE");
  EXPECT_EQ(out->optionalField1, nullptr);
  EXPECT_EQ(out->derData, nullptr);
}

TEST_F(JavaDNItem2CDNTest, LeavesAbsentAttributesAsTheyWereInitialised) {
  convertToRecord(dnItem({{"cn", "Alice"}}));
  EXPECT_TRANSCRIPT(std::string(kFieldsLookedUp) + R"(
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, ou) = null
    GetObjectField(dn, o) = null
    GetObjectField(dn, l) = null
    GetObjectField(dn, s) = null
    GetObjectField(dn, pc) = null
    GetObjectField(dn, c) = null
    malloc(104) = block#1
    ZELKM_InitDNItem(block#1)
    GetStringUTFChars("Alice")
    trace JNI_DEBUG......ccn = Alice
    ZELKM_Strdup("Alice")
    ReleaseStringUTFChars("Alice")
    trace JNI_DEBUG......cou = null
    trace JNI_DEBUG......co = null
    trace JNI_DEBUG......cl = null
    trace JNI_DEBUG......cs = null
    trace JNI_DEBUG......cpc = null
    trace JNI_DEBUG......cc = null
    return null
    held block#1
    held text "Alice"
  )");
  EXPECT_EQ(out->ou, nullptr);
  EXPECT_EQ(out->c, nullptr);
}

TEST_F(JavaDNItem2CDNTest, CopiesAnEmptyTextAsAnEmptyText) {
  convertToRecord(dnItem({{"c", ""}}));
  EXPECT_STREQ(out->c, "");
  EXPECT_EQ(out->cn, nullptr);
}

TEST_F(JavaDNItem2CDNTest, SkipsATextThatCannotBeAcquired) {
  recorder().faults.failCall("GetStringUTFChars", 1);
  convertToRecord(dnItem({{"cn", "Alice"}}));
  EXPECT_TRANSCRIPT(std::string(kFieldsLookedUp) + R"(
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, ou) = null
    GetObjectField(dn, o) = null
    GetObjectField(dn, l) = null
    GetObjectField(dn, s) = null
    GetObjectField(dn, pc) = null
    GetObjectField(dn, c) = null
    malloc(104) = block#1
    ZELKM_InitDNItem(block#1)
    GetStringUTFChars("Alice") = null
    trace JNI_DEBUG......ccn = null
    trace JNI_DEBUG......cou = null
    trace JNI_DEBUG......co = null
    trace JNI_DEBUG......cl = null
    trace JNI_DEBUG......cs = null
    trace JNI_DEBUG......cpc = null
    trace JNI_DEBUG......cc = null
    return null
    held block#1
  )");
}

/** The text is released all the same. */
TEST_F(JavaDNItem2CDNTest, LeavesAnAttributeOutWithoutMemoryForIt) {
  recorder().faults.failCall("ZELKM_Strdup", 1);
  convertToRecord(dnItem({{"cn", "Alice"}, {"c", "DE"}}));
  EXPECT_TRANSCRIPT(std::string(kFieldsLookedUp) + R"(
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, ou) = null
    GetObjectField(dn, o) = null
    GetObjectField(dn, l) = null
    GetObjectField(dn, s) = null
    GetObjectField(dn, pc) = null
    GetObjectField(dn, c) = "DE"
    malloc(104) = block#1
    ZELKM_InitDNItem(block#1)
    GetStringUTFChars("Alice")
    trace JNI_DEBUG......ccn = Alice
    ZELKM_Strdup("Alice") = null
    ReleaseStringUTFChars("Alice")
    trace JNI_DEBUG......cou = null
    trace JNI_DEBUG......co = null
    trace JNI_DEBUG......cl = null
    trace JNI_DEBUG......cs = null
    trace JNI_DEBUG......cpc = null
    GetStringUTFChars("DE")
    trace JNI_DEBUG......cc = DE
    ZELKM_Strdup("DE")
    ReleaseStringUTFChars("DE")
    return null
    held block#1
    held text "DE"
  )");
  EXPECT_EQ(out->cn, nullptr);
  EXPECT_STREQ(out->c, "DE");
}

/** Neither lookup is checked. */
TEST_F(JavaDNItem2CDNTest, ReadsOnWhenAFieldIsNotFound) {
  recorder().faults.failCall("GetFieldID", 2);
  convertToRecord(dnItem({{"cn", "Alice"}, {"ou", "Unit"}}));
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(dn) = class basic/DNItem
    GetFieldID(class basic/DNItem, "cn", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "ou", "Ljava/lang/String;") = null
    GetFieldID(class basic/DNItem, "o", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "l", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "s", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "pc", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "c", "Ljava/lang/String;")
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, null) = null
    GetObjectField(dn, o) = null
    GetObjectField(dn, l) = null
    GetObjectField(dn, s) = null
    GetObjectField(dn, pc) = null
    GetObjectField(dn, c) = null
    malloc(104) = block#1
    ZELKM_InitDNItem(block#1)
    GetStringUTFChars("Alice")
    trace JNI_DEBUG......ccn = Alice
    ZELKM_Strdup("Alice")
    ReleaseStringUTFChars("Alice")
    trace JNI_DEBUG......cou = null
    trace JNI_DEBUG......co = null
    trace JNI_DEBUG......cl = null
    trace JNI_DEBUG......cs = null
    trace JNI_DEBUG......cpc = null
    trace JNI_DEBUG......cc = null
    return null
    held block#1
    held text "Alice"
  )");
}

TEST_F(JavaDNItem2CDNTest, WritesNullForANullItem) {
  convertToRecord(nullptr);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

TEST_F(JavaDNItem2CDNTest, WritesNullWithoutAClass) {
  recorder().faults.failCall("GetObjectClass", 1);
  convertToRecord(dnItem({}));
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(dn) = null
    return null
    held nothing
  )");
}

TEST_F(JavaDNItem2CDNTest, WritesNullWithoutMemory) {
  recorder().faults.failCall("malloc", 1);
  convertToRecord(dnItem({{"cn", "Alice"}}));
  EXPECT_EQ(out, nullptr);
  EXPECT_TRANSCRIPT(std::string(kFieldsLookedUp) + R"(
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, ou) = null
    GetObjectField(dn, o) = null
    GetObjectField(dn, l) = null
    GetObjectField(dn, s) = null
    GetObjectField(dn, pc) = null
    GetObjectField(dn, c) = null
    malloc(104) = null
    return null
    held nothing
  )");
}

TEST_F(JavaDNItem2CDNTest, DoesNothingWithoutAnOutput) {
  convert([&] {
    JavaDNItem2CDN(env, dnItem({}), nullptr);
    return nullptr;
  });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
