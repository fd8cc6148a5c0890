#include "bridge/marshal/distinguished_names.h"

#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::JavaDNItem2CDN;
using bridge::kBasicItems;
using bridge::newJavaDNItem;

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

class NewJavaDNItem : public NativeTest {
 protected:
  NewJavaDNItem() : NativeTest("CMSKeyDatabase") {}
  ~NewJavaDNItem() override { freeDn(dn); }

  void convertToJava() {
    convert([&] { return newJavaDNItem(env, kBasicItems, dn); });
  }

  static char* copy(const char* value) { return strdup(value); }

  ZELKMDNItem* dn = newDn("Alice", {0x30, 0x0a});
};

TEST_F(NewJavaDNItem, TakesEveryNamedAttributeAndTheDerBytes) {
  dn->ou = copy("Unit");
  dn->o = copy("Firm");
  dn->l = copy("Town");
  dn->s = copy("State");
  dn->pc = copy("12345");
  dn->c = copy("DE");
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("Unit")
    NewStringUTF("Firm")
    NewStringUTF("Town")
    NewStringUTF("State")
    NewStringUTF("12345")
    NewStringUTF("DE")
    NewObject(class basic/DNItem, <init>, "Alice", "Unit", "Firm", "Town", "State", "12345", "DE", null, bytes#1) = DNItem#1
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#1}
    return DNItem#1
    held nothing
  )");
}

TEST_F(NewJavaDNItem, AddsTheOptionalFieldsInTheirOrder) {
  dn->optionalField1 = copy("DC=one");
  dn->optionalField2 = copy("DC=two");
  dn->optionalField3 = copy("DC=three");
  dn->optionalField4 = copy("DC=four");
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("DC=one")
    NewStringUTF("DC=two")
    NewStringUTF("DC=three")
    NewStringUTF("DC=four")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#1) = DNItem#1
    GetMethodID(class basic/DNItem, "addOptionalField", "(Ljava/lang/String;)V")
    CallVoidMethod(DNItem#1, addOptionalField, "DC=one")
    CallVoidMethod(DNItem#1, addOptionalField, "DC=two")
    CallVoidMethod(DNItem#1, addOptionalField, "DC=three")
    CallVoidMethod(DNItem#1, addOptionalField, "DC=four")
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#1}
    return DNItem#1
    held nothing
  )");
}

TEST_F(NewJavaDNItem, AddsOnlyTheThirdOptionalFieldWhenItStandsAlone) {
  dn->optionalField3 = copy("DC=three");
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("DC=three")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#1) = DNItem#1
    GetMethodID(class basic/DNItem, "addOptionalField", "(Ljava/lang/String;)V")
    CallVoidMethod(DNItem#1, addOptionalField, "DC=three")
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#1}
    return DNItem#1
    held nothing
  )");
}

TEST_F(NewJavaDNItem, DropsTheObjectWithoutAddOptionalField) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/DNItem", "addOptionalField");
  dn->optionalField1 = copy("DC=one");
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("DC=one")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#1) = DNItem#1
    GetMethodID(class basic/DNItem, "addOptionalField", "(Ljava/lang/String;)V") = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaDNItem, CallsOnWithAnObjectThatCouldNotBeMade) {
  recorder().faults.failCall("NewObject", 1);
  dn->optionalField1 = copy("DC=one");
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("DC=one")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#1) = null
    GetMethodID(class basic/DNItem, "addOptionalField", "(Ljava/lang/String;)V")
    CallVoidMethod(null, addOptionalField, "DC=one")
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x0
    return null
    held nothing
  )");
}

TEST_F(NewJavaDNItem, GivesANameWithoutDerBytesAnEmptyArray) {
  freeDn(dn);
  dn = newDn("Alice", {});
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(0) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 0, null)
    NewStringUTF("Alice")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#1) = DNItem#1
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#1}
    return DNItem#1
    held nothing
  )");
}

TEST_F(NewJavaDNItem, MakesNothingOfNoName) {
  convert([&] { return newJavaDNItem(env, kBasicItems, nullptr); });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

TEST_F(NewJavaDNItem, EndsAtTheFirstFailure) {
  recorder().faults.failCall("FindClass", 1);
  convertToJava();
  recorder().faults.failCall("GetMethodID", 1);
  convertToJava();
  recorder().faults.failCall("NewByteArray", 1);
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = null
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
