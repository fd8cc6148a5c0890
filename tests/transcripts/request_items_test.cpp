#include "bridge/marshal/request_items.h"

#include <cstdlib>
#include <utility>

#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::getJavaCertReqItem;
using bridge::newJavaReqKeyItem;

class GetJavaCertReqItem : public NativeTest {
 protected:
  GetJavaCertReqItem() : NativeTest("CMSKeyDatabase") { item->certReq = newCertReq(); }
  ~GetJavaCertReqItem() override { freeReqKeyItem(item); }

  void convertRequest() {
    convert([&] { return getJavaCertReqItem(env, item->certReq); });
  }

  ZELKMReqKeyItem* item = newReqKeyItem("my request");
};

/** The steps of a request without a subject, one after the other. */
const std::string kBegun = R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateRequestItem") = class basic/CertificateRequestItem
    GetMethodID(class basic/CertificateRequestItem, "<init>", "{CertificateRequestItem}")
)";
const std::string kWholeRequest = R"(
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 e9])
)";
const std::string kRequestInfo = R"(
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 1f])
)";
const std::string kSpki = R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 2, [30 5b])
    NewObject(class basic/BERObject, <init>, bytes#3) = BERObject#1
)";
const std::string kSignature = R"(
    NewByteArray(1) = bytes#4
    SetByteArrayRegion(bytes#4, 0, 1, [51])
)";
const std::string kAlgorithm = R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#5
    SetByteArrayRegion(bytes#5, 0, 2, [30 a1])
    NewObject(class basic/BERObject, <init>, bytes#5) = BERObject#2
    NewStringUTF("1.2.3")
    NewStringUTF("algorithm")
)";
const std::string kYieldsNull = R"(
    return null
    held nothing
)";

TEST_F(GetJavaCertReqItem, TakesEveryFieldButAnAbsentOptionalOne) {
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kRequestInfo + kSpki + kSignature + kAlgorithm + R"(
    trace JNI_DEBUG......getJavaCertReqItem(): produced certReqItem->certReqInfoItem->keySize = 0x800
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSubjectName = 0x0
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSPKI = 0x{BERObject#1}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSig = 0x{bytes#4}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgId = 0x{BERObject#2}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgIdOID = 0x{"1.2.3"}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jsigAlgIdOIDName = 0x{"algorithm"}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jBerData = 0x{bytes#1}
    NewObject(class basic/CertificateRequestItem, <init>, 2048, null, BERObject#1, null, bytes#4, BERObject#2, "1.2.3", "algorithm", bytes#1, bytes#2) = CertificateRequestItem#1
    trace JNI_DEBUG......jCertReqItemClass = 0x{class basic/CertificateRequestItem}, retObj = 0x{CertificateRequestItem#1}
    return CertificateRequestItem#1
    held nothing
  )");
}

TEST_F(GetJavaCertReqItem, TakesTheSubjectBeforeTheKeyAndTheOptionalFieldAfterIt) {
  ZELKMCertReqInfoItem* info = item->certReq->certReqInfoItem;
  info->subjectName = newDn("Alice", {0x30, 0x0a});
  info->optionalBer = copyOf({0xa0, 0x00});
  info->optionalBerLength = 2;
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kRequestInfo + R"(
    FindClass("com/nelo/zel/vosmar/basic/DNItem") = class basic/DNItem
    GetMethodID(class basic/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewObject(class basic/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#3) = DNItem#1
    trace JNI_DEBUG......jDNItemClass = 0x{class basic/DNItem}, retObj = 0x{DNItem#1}
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#4
    SetByteArrayRegion(bytes#4, 0, 2, [30 5b])
    NewObject(class basic/BERObject, <init>, bytes#4) = BERObject#1
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#5
    SetByteArrayRegion(bytes#5, 0, 2, [a0 00])
    NewObject(class basic/BERObject, <init>, bytes#5) = BERObject#2
    NewByteArray(1) = bytes#6
    SetByteArrayRegion(bytes#6, 0, 1, [51])
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#7
    SetByteArrayRegion(bytes#7, 0, 2, [30 a1])
    NewObject(class basic/BERObject, <init>, bytes#7) = BERObject#3
    NewStringUTF("1.2.3")
    NewStringUTF("algorithm")
    trace JNI_DEBUG......getJavaCertReqItem(): produced certReqItem->certReqInfoItem->keySize = 0x800
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSubjectName = 0x{DNItem#1}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSPKI = 0x{BERObject#1}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSig = 0x{bytes#6}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgId = 0x{BERObject#3}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgIdOID = 0x{"1.2.3"}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jsigAlgIdOIDName = 0x{"algorithm"}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jBerData = 0x{bytes#1}
    NewObject(class basic/CertificateRequestItem, <init>, 2048, DNItem#1, BERObject#1, BERObject#2, bytes#6, BERObject#3, "1.2.3", "algorithm", bytes#1, bytes#2) = CertificateRequestItem#1
    trace JNI_DEBUG......jCertReqItemClass = 0x{class basic/CertificateRequestItem}, retObj = 0x{CertificateRequestItem#1}
    return CertificateRequestItem#1
    held nothing
  )");
}

TEST_F(GetJavaCertReqItem, MakesNothingOfNoRecord) {
  convert([&] { return getJavaCertReqItem(env, nullptr); });
  EXPECT_TRANSCRIPT(kYieldsNull);
}

TEST_F(GetJavaCertReqItem, EndsWithoutItsClassOrConstructor) {
  recorder().faults.failCall("FindClass", 1);
  convertRequest();
  recorder().faults.failCall("GetMethodID", 1);
  convertRequest();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/CertificateRequestItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/CertificateRequestItem") = class basic/CertificateRequestItem
    GetMethodID(class basic/CertificateRequestItem, "<init>", "{CertificateRequestItem}") = null
    return null
    held nothing
  )");
}

TEST_F(GetJavaCertReqItem, EndsWithoutTheArrayOfTheWholeRequest) {
  recorder().faults.failCall("NewByteArray", 1);
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + R"(
    NewByteArray(2) = null
  )" + kYieldsNull);
}

TEST_F(GetJavaCertReqItem, EndsWithoutTheArrayOfTheRequestInfo) {
  recorder().faults.failCall("NewByteArray", 2);
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + R"(
    NewByteArray(2) = null
  )" + kYieldsNull);
}

/** The whole request is taken before the request info is missed. */
TEST_F(GetJavaCertReqItem, NeedsItsRequestInfo) {
  ZELKMCertReqInfoItem* info = std::exchange(item->certReq->certReqInfoItem, nullptr);
  convertRequest();
  item->certReq->certReqInfoItem = info;
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kYieldsNull);
}

TEST_F(GetJavaCertReqItem, NeedsItsPublicKey) {
  item->certReq->certReqInfoItem->spkiLength = 0;
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kRequestInfo + kYieldsNull);
}

TEST_F(GetJavaCertReqItem, EndsWithoutTheArrayOfTheSignature) {
  recorder().faults.failCall("NewByteArray", 4);
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kRequestInfo + kSpki + R"(
    NewByteArray(1) = null
  )" + kYieldsNull);
}

TEST_F(GetJavaCertReqItem, NeedsItsAlgorithm) {
  item->certReq->sigAlgIdLength = 0;
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kRequestInfo + kSpki + kSignature + kYieldsNull);
}

TEST_F(GetJavaCertReqItem, TracesAnObjectThatCouldNotBeMade) {
  recorder().faults.failCall("NewObject", 3);
  convertRequest();
  EXPECT_TRANSCRIPT(kBegun + kWholeRequest + kRequestInfo + kSpki + kSignature + kAlgorithm + R"(
    trace JNI_DEBUG......getJavaCertReqItem(): produced certReqItem->certReqInfoItem->keySize = 0x800
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSubjectName = 0x0
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSPKI = 0x{BERObject#1}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSig = 0x{bytes#4}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgId = 0x{BERObject#2}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jSigAlgIdOID = 0x{"1.2.3"}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jsigAlgIdOIDName = 0x{"algorithm"}
    trace JNI_DEBUG......getJavaCertReqItem(): produced jBerData = 0x{bytes#1}
    NewObject(class basic/CertificateRequestItem, <init>, 2048, null, BERObject#1, null, bytes#4, BERObject#2, "1.2.3", "algorithm", bytes#1, bytes#2) = null
    trace JNI_DEBUG......jCertReqItemClass = 0x{class basic/CertificateRequestItem}, retObj = 0x0
    return null
    held nothing
  )");
}

class NewJavaReqKeyItem : public NativeTest {
 protected:
  NewJavaReqKeyItem() : NativeTest("CMSKeyDatabase") {}
  ~NewJavaReqKeyItem() override { freeReqKeyItem(item); }

  void convertItem() {
    convert([&] { return newJavaReqKeyItem(env, item); });
  }

  ZELKMReqKeyItem* item = newReqKeyItem("my request");
};

TEST_F(NewJavaReqKeyItem, AlwaysHasAPrivateKeyEvenWithoutOne) {
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my request")
    NewObject(class basic/KeyItem, <init>, "my request", 1, 2048, null, null, null) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    return KeyItem#1
    held nothing
  )");
}

TEST_F(NewJavaReqKeyItem, TakesTheKeyThenTheBytesThenTheRequest) {
  item->epki = newEpki({0x30, 0x0e});
  item->hasBerData = 1;
  item->berData = copyOf({0x30, 0x5b});
  item->berDataLength = 2;
  item->certReq = newCertReq();
  item->certReq->certReqInfoItem->spkiLength = 0;
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my request")
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = class basic/EncryptedPrivateKeyInfoItem
    GetMethodID(class basic/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0e])
    NewObject(class basic/EncryptedPrivateKeyInfoItem, <init>, bytes#1) = EncryptedPrivateKeyInfoItem#1
    trace JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x{class basic/EncryptedPrivateKeyInfoItem}, retObj = 0x{EncryptedPrivateKeyInfoItem#1}
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/zel/vosmar/basic/BERObject") = class basic/BERObject
    GetMethodID(class basic/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 5b])
    NewObject(class basic/BERObject, <init>, bytes#2) = BERObject#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateRequestItem") = class basic/CertificateRequestItem
    GetMethodID(class basic/CertificateRequestItem, "<init>", "{CertificateRequestItem}")
    NewByteArray(2) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 2, [30 e9])
    NewByteArray(2) = bytes#4
    SetByteArrayRegion(bytes#4, 0, 2, [30 1f])
    NewObject(class basic/KeyItem, <init>, "my request", 1, 2048, EncryptedPrivateKeyInfoItem#1, null, BERObject#1) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    return KeyItem#1
    held nothing
  )");
}

TEST_F(NewJavaReqKeyItem, LooksAtTheMarkOfTheBytesBeforeThem) {
  item->berData = copyOf({0x30, 0x5b});
  item->berDataLength = 2;
  convertItem();
  item->hasBerData = 1;
  item->berDataLength = 0;
  convertItem();
  EXPECT_EQ(recorder().transcript().find("BERObject"), recorder().transcript().find("BERObject;)V"))
      << "is only in the constructor's signature";
}

TEST_F(NewJavaReqKeyItem, EndsWithoutItsClassConstructorOrSetter) {
  recorder().faults.failCall("FindClass", 1);
  convertItem();
  recorder().faults.failCall("GetMethodID", 1);
  convertItem();
  recorder().faults.failCall("GetMethodID", 2);
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my request")
    NewObject(class basic/KeyItem, <init>, "my request", 1, 2048, null, null, null) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V") = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaReqKeyItem, AsksForNoSetterOfAnObjectThatCouldNotBeMade) {
  recorder().faults.failCall("NewObject", 1);
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem of a request}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my request")
    NewObject(class basic/KeyItem, <init>, "my request", 1, 2048, null, null, null) = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaReqKeyItem, MakesNothingOfNoRecord) {
  convert([&] { return newJavaReqKeyItem(env, nullptr); });
  EXPECT_TRANSCRIPT(kYieldsNull);
}

}  // namespace
}  // namespace zel::test
