#include "bridge/marshal/certificate_items.h"

#include <cstdlib>
#include <utility>

#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::kBasicItems;
using bridge::newJavaCertificateItem;
using bridge::newJavaCertificateItemArray;

class NewJavaCertificateItem : public NativeTest {
 protected:
  NewJavaCertificateItem() : NativeTest("CMSKeyDatabase") {
    list = newCertList({newLabelledCert("my cert")});
  }
  ~NewJavaCertificateItem() override { freeCertList(list); }

  void convertCert() {
    convert([&] { return newJavaCertificateItem(env, kBasicItems, list->item); });
  }

  ZELKMCertItemList* list;
};

/** The steps of a labelled certificate without names, one after the other. */
const std::string kBegun = R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "{CertificateItem}")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 ce])
    NewStringUTF("my cert")
    trace JNI_DEBUG......jCertificateItemClass effectTime = 1000
)";
const std::string kSpki = R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 5b])
    NewObject(class basic/BERObject, <init>, bytes#2) = BERObject#1
)";
const std::string kSignature = R"(
    NewByteArray(1) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 1, [51])
)";
const std::string kAlgorithm = R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#4
    SetByteArrayRegion(bytes#4, 0, 2, [30 a1])
    NewObject(class basic/BERObject, <init>, bytes#4) = BERObject#2
    NewStringUTF("1.2.3")
    NewStringUTF("algorithm")
)";
const std::string kYieldsNull = R"(
    return null
    held nothing
)";

TEST_F(NewJavaCertificateItem, TakesEveryField) {
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kSignature + kAlgorithm + R"(
    ZELKM_GetUnsignedCertFromCert([30 ce], 2) = 0, buffer#1 [30 7b]
    NewByteArray(2) = bytes#5
    SetByteArrayRegion(bytes#5, 0, 2, [30 7b])
    NewObject(class basic/CertificateItem, <init>, 3, 2048, "my cert", null, null, 1000, 2000, BERObject#1, null, bytes#3, BERObject#2, "1.2.3", "algorithm", bytes#5, bytes#1) = CertificateItem#1
    trace JNI_DEBUG......exit(): produced jCertificateItem = 0x{CertificateItem#1}
    trace JNI_DEBUG......exit(): jCertificateItemClass = 0x{class basic/CertificateItem}
    return CertificateItem#1
    held buffer#1
  )");
}

TEST_F(NewJavaCertificateItem, TakesItsTwoNames) {
  list->item->subjectDN = newDn("Alice", {0x30, 0x0a});
  list->item->issuerDN = newDn("Root", {0x30, 0x0b});
  convertCert();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "{CertificateItem}")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 ce])
    NewStringUTF("my cert")
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#2) = DNItem#1
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#1}
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 2, [30 0b])
    NewStringUTF("Root")
    NewObject(class basic/DNItem, <init>, "Root", null, null, null, null, null, null, null, bytes#3) = DNItem#2
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#2}
    trace JNI_DEBUG......jCertificateItemClass effectTime = 1000
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#4
    SetByteArrayRegion(bytes#4, 0, 2, [30 5b])
    NewObject(class basic/BERObject, <init>, bytes#4) = BERObject#1
    NewByteArray(1) = bytes#5
    SetByteArrayRegion(bytes#5, 0, 1, [51])
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#6
    SetByteArrayRegion(bytes#6, 0, 2, [30 a1])
    NewObject(class basic/BERObject, <init>, bytes#6) = BERObject#2
    NewStringUTF("1.2.3")
    NewStringUTF("algorithm")
    ZELKM_GetUnsignedCertFromCert([30 ce], 2) = 0, buffer#1 [30 7b]
    NewByteArray(2) = bytes#7
    SetByteArrayRegion(bytes#7, 0, 2, [30 7b])
    NewObject(class basic/CertificateItem, <init>, 3, 2048, "my cert", DNItem#1, DNItem#2, 1000, 2000, BERObject#1, null, bytes#5, BERObject#2, "1.2.3", "algorithm", bytes#7, bytes#1) = CertificateItem#1
    trace JNI_DEBUG......exit(): produced jCertificateItem = 0x{CertificateItem#1}
    trace JNI_DEBUG......exit(): jCertificateItemClass = 0x{class basic/CertificateItem}
    return CertificateItem#1
    held buffer#1
  )");
}

TEST_F(NewJavaCertificateItem, CutsItsNumbersToShortsAndLeavesTheTimesWhole) {
  list->item->shortValue1 = 0x10003;
  list->item->shortValue2 = -1;
  list->item->effectTime = -62135596800;
  list->item->expireTime = 253402300799;
  convertCert();
  EXPECT_NE(recorder().transcript().find("<init>, 3, -1, \"my cert\", null, null, -62135596800, "
                                         "253402300799, BERObject#1, null"),
            std::string::npos)
      << recorder().transcript();
}

TEST_F(NewJavaCertificateItem, WithoutALabelHoldsOnlyItsBytesWhateverElseIsThere) {
  std::free(std::exchange(list->item->label, nullptr));
  convertCert();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 ce])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#1) = CertificateItem#1
    return CertificateItem#1
    held nothing
  )");
}

TEST_F(NewJavaCertificateItem, TracesAnObjectThatCouldNotBeMade) {
  recorder().faults.failCall("NewObject", 3);
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kSignature + kAlgorithm + R"(
    ZELKM_GetUnsignedCertFromCert([30 ce], 2) = 0, buffer#1 [30 7b]
    NewByteArray(2) = bytes#5
    SetByteArrayRegion(bytes#5, 0, 2, [30 7b])
    NewObject(class basic/CertificateItem, <init>, 3, 2048, "my cert", null, null, 1000, 2000, BERObject#1, null, bytes#3, BERObject#2, "1.2.3", "algorithm", bytes#5, bytes#1) = null
    trace JNI_DEBUG......exit(): produced jCertificateItem = 0x0
    trace JNI_DEBUG......exit(): jCertificateItemClass = 0x{class basic/CertificateItem}
    return null
    held buffer#1
  )");
}

TEST_F(NewJavaCertificateItem, IsNullWhenTheObjectOfItsBytesCannotBeMade) {
  std::free(std::exchange(list->item->label, nullptr));
  recorder().faults.failCall("NewObject", 1);
  convertCert();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 ce])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#1) = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaCertificateItem, MakesNothingOfNoRecord) {
  convert([&] { return newJavaCertificateItem(env, kBasicItems, nullptr); });
  EXPECT_TRANSCRIPT(kYieldsNull);
}

TEST_F(NewJavaCertificateItem, EndsWithoutItsClassConstructorOrBytes) {
  recorder().faults.failCall("FindClass", 1);
  convertCert();
  recorder().faults.failCall("GetMethodID", 1);
  convertCert();
  recorder().faults.failCall("NewByteArray", 1);
  convertCert();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "{CertificateItem}") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "{CertificateItem}")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaCertificateItem, NeedsItsPublicKey) {
  std::free(std::exchange(list->item->spki, nullptr));
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kYieldsNull);
}

TEST_F(NewJavaCertificateItem, NeedsItsSignature) {
  std::free(std::exchange(list->item->sig, nullptr));
  list->item->sigLength = 0;
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kYieldsNull);
}

TEST_F(NewJavaCertificateItem, TakesASignatureOfNoLengthForNone) {
  list->item->sigLength = 0;
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kYieldsNull);
}

TEST_F(NewJavaCertificateItem, EndsWhenTheSignatureArrayCannotBeMade) {
  recorder().faults.failCall("NewByteArray", 3);
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + R"(
    NewByteArray(1) = null
  )" + kYieldsNull);
}

TEST_F(NewJavaCertificateItem, NeedsItsAlgorithm) {
  list->item->sigAlgIdLength = 0;
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kSignature + kYieldsNull);
}

TEST_F(NewJavaCertificateItem, EndsWhenTheLibraryFindsNoUnsignedPart) {
  library().answers["ZELKM_GetUnsignedCertFromCert"] = 2;
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kSignature + kAlgorithm + R"(
    ZELKM_GetUnsignedCertFromCert([30 ce], 2) = 2
  )" + kYieldsNull);
}

TEST_F(NewJavaCertificateItem, FreesTheUnsignedPartOnlyWhenItsArrayCannotBeMade) {
  recorder().faults.failCall("NewByteArray", 5);
  convertCert();
  EXPECT_TRANSCRIPT(kBegun + kSpki + kSignature + kAlgorithm + R"(
    ZELKM_GetUnsignedCertFromCert([30 ce], 2) = 0, buffer#1 [30 7b]
    NewByteArray(2) = null
    free(buffer#1)
  )" + kYieldsNull);
}

class NewJavaCertificateItemArray : public NativeTest {
 protected:
  NewJavaCertificateItemArray() : NativeTest("CMSKeyDatabase") {}
  ~NewJavaCertificateItemArray() override { freeCertList(list); }

  void convertList() {
    convert([&] { return newJavaCertificateItemArray(env, kBasicItems, list); });
  }

  ZELKMCertItemList* list = nullptr;
};

TEST_F(NewJavaCertificateItemArray, HoldsTheCertificatesInOrder) {
  list = newCertList({newCert({0x01}), newCert({0x02})});
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 2
    NewObjectArray(2, class basic/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(1) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 1, [01])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#1) = CertificateItem#1
    SetObjectArrayElement(CertificateItem[]#1, 0, CertificateItem#1)
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(1) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 1, [02])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#2) = CertificateItem#2
    SetObjectArrayElement(CertificateItem[]#1, 1, CertificateItem#2)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(NewJavaCertificateItemArray, EndsAtANodeWithoutACertificate) {
  list = newCertList({newCert({0x01}), nullptr, newCert({0x02})});
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 1
    NewObjectArray(1, class basic/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(1) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 1, [01])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#1) = CertificateItem#1
    SetObjectArrayElement(CertificateItem[]#1, 0, CertificateItem#1)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(NewJavaCertificateItemArray, IsEmptyWhenTheFirstNodeIs) {
  list = newCertList({nullptr});
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 0
    NewObjectArray(0, class basic/CertificateItem, null) = CertificateItem[]#1
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(NewJavaCertificateItemArray, StoresACertificateThatCannotBeConvertedAsNull) {
  list = newCertList({newCert({0x01})});
  recorder().faults.failCall("FindClass", 2);
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 1
    NewObjectArray(1, class basic/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = null
    SetObjectArrayElement(CertificateItem[]#1, 0, null)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    return CertificateItem[]#1
    held nothing
  )");
}

TEST_F(NewJavaCertificateItemArray, MakesNothingOfNoListClassOrArray) {
  convertList();
  list = newCertList({nullptr});
  recorder().faults.failCall("FindClass", 1);
  convertList();
  recorder().faults.failCall("NewObjectArray", 1);
  convertList();
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 0
    NewObjectArray(0, class basic/CertificateItem, null) = null
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
