#include "bridge/marshal/distinguished_names.h"

#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::kBasicItems;
using bridge::newJavaDNItem;

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

TEST_F(NewJavaDNItem, AddsNullForAnOptionalFieldWhoseStringCannotBeMade) {
  recorder().faults.failCall("NewStringUTF", 2);
  dn->optionalField1 = copy("DC=one");
  dn->optionalField2 = copy("DC=two");
  convertToJava();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("DC=one") = null
    NewStringUTF("DC=two")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#1) = DNItem#1
    GetMethodID(class basic/DNItem, "addOptionalField", "(Ljava/lang/String;)V")
    CallVoidMethod(DNItem#1, addOptionalField, null)
    CallVoidMethod(DNItem#1, addOptionalField, "DC=two")
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
