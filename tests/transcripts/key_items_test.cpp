#include "bridge/marshal/key_items.h"

#include "bridge/marshal/private_key_items.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::kBasicItems;
using bridge::newJavaEPKIItem;
using bridge::newJavaKeyItem;
using bridge::newJavaKeyItemArray;
using bridge::newJavaPrivKeyInfoItem;

class NewJavaKeyItem : public NativeTest {
 protected:
  NewJavaKeyItem() : NativeTest("CMSKeyDatabase") {}
  ~NewJavaKeyItem() override { freeKeyItem(item); }

  void convertItem() {
    convert([&] { return newJavaKeyItem(env, kBasicItems, item); });
  }

  ZELKMKeyItem* item = newKeyItem("my key");
};

TEST_F(NewJavaKeyItem, TakesAnItemWithoutKeyAndCertificates) {
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    return KeyItem#1
    held nothing
  )");
}

TEST_F(NewJavaKeyItem, TakesThePrivateKeyThenTheBytesThenTheCertificates) {
  item->hasPrivateKey = 1;
  item->epki = newEpki({0x30, 0x0e});
  item->hasBerData = 1;
  item->berData = copyOf({0x30, 0x5b});
  item->berDataLength = 2;
  item->hasCertList = 1;
  item->certList = newCertList({newCert({0x30, 0xce})});
  item->booleanValue1 = 1;
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
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
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class basic/CertificateItem}
    trace JNI_DEBUG......certCnt = 1
    NewObjectArray(1, class basic/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/CertificateItem") = class basic/CertificateItem
    GetMethodID(class basic/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 2, [30 ce])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class basic/CertificateItem, <init>, bytes#3) = CertificateItem#1
    SetObjectArrayElement(CertificateItem[]#1, 0, CertificateItem#1)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, EncryptedPrivateKeyInfoItem#1, CertificateItem[]#1, BERObject#1, true, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    return KeyItem#1
    held nothing
  )");
}

/** What is there but not marked as present is left alone. */
TEST_F(NewJavaKeyItem, LooksAtTheMarksBeforeThePointers) {
  item->epki = newEpki({0x30, 0x0e});
  item->berData = copyOf({0x30, 0x5b});
  item->berDataLength = 2;
  item->certList = newCertList({newCert({0x30, 0xce})});
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    return KeyItem#1
    held nothing
  )");
}

/** What is marked as present but not there gives null; the mark itself is passed on. */
TEST_F(NewJavaKeyItem, PassesNullForWhatIsMarkedButAbsent) {
  item->hasPrivateKey = 1;
  item->hasBerData = 1;
  item->hasCertList = 1;
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    return KeyItem#1
    held nothing
  )");
}

TEST_F(NewJavaKeyItem, CutsItsNumbersToShortsAndItsBooleansToBytes) {
  item->shortValue1 = 0x10001;
  item->keySize = 0x18000;
  item->booleanValue1 = 0x100;
  item->booleanValue2 = 0x101;
  item->hasPrivateKey = 0x200;
  convertItem();
  const std::string transcript = recorder().transcript();
  EXPECT_NE(transcript.find("\"my key\", 1, -32768, null, null, null, false, true) = KeyItem#1"),
            std::string::npos)
      << transcript;
  EXPECT_NE(transcript.find("setHasPrivateKey, false)"), std::string::npos) << transcript;
}

TEST_F(NewJavaKeyItem, EndsWithoutItsClassConstructorOrSetter) {
  recorder().faults.failCall("FindClass", 1);
  convertItem();
  recorder().faults.failCall("GetMethodID", 1);
  convertItem();
  recorder().faults.failCall("GetMethodID", 2);
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    trace JNI_DEBUG......jKeyItemClass = 0x0
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V") = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaKeyItem, AsksForNoSetterOfAnObjectThatCouldNotBeMade) {
  recorder().faults.failCall("NewObject", 1);
  convertItem();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    NewObject(class basic/KeyItem, <init>, "my key", 1, 2048, null, null, null, false, false) = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaKeyItem, MakesNothingOfNoRecord) {
  convert([&] { return newJavaKeyItem(env, kBasicItems, nullptr); });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

class NewJavaKeyItemArray : public NativeTest {
 protected:
  NewJavaKeyItemArray() : NativeTest("CMSKeyDatabase") {}
  ~NewJavaKeyItemArray() override { freeKeyItemList(list); }

  void convertList() {
    convert([&] { return newJavaKeyItemArray(env, kBasicItems, list); });
  }

  ZELKMKeyItemList* list = nullptr;
};

TEST_F(NewJavaKeyItemArray, HoldsTheItemsInOrderAndGoesPastOneThatIsNull) {
  list = newKeyItemList({newKeyItem("one"), nullptr, newKeyItem("two")});
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 3
    NewObjectArray(3, class basic/KeyItem, null) = KeyItem[]#1
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("one")
    NewObject(class basic/KeyItem, <init>, "one", 1, 2048, null, null, null, false, false) = KeyItem#1
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, false)
    SetObjectArrayElement(KeyItem[]#1, 0, KeyItem#1)
    SetObjectArrayElement(KeyItem[]#1, 1, null)
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF("two")
    NewObject(class basic/KeyItem, <init>, "two", 1, 2048, null, null, null, false, false) = KeyItem#2
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#2, setHasPrivateKey, false)
    SetObjectArrayElement(KeyItem[]#1, 2, KeyItem#2)
    return KeyItem[]#1
    held nothing
  )");
}

TEST_F(NewJavaKeyItemArray, AsksForTheClassBeforeItLooksAtTheList) {
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    return null
    held nothing
  )");
}

TEST_F(NewJavaKeyItemArray, MakesNothingWithoutItsClassOrArray) {
  list = newKeyItemList({nullptr});
  recorder().faults.failCall("FindClass", 1);
  convertList();
  recorder().faults.failCall("NewObjectArray", 1);
  convertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......cKeyItemList count is = 1
    NewObjectArray(1, class basic/KeyItem, null) = null
    return null
    held nothing
  )");
}

class NewJavaPrivateKeys : public NativeTest {
 protected:
  NewJavaPrivateKeys() : NativeTest("CMSKeyDatabase") {}

  void convertEpki(const Bytes& der) {
    ZELKMEPKIItem* epki = newEpki(der);
    convert([&] { return newJavaEPKIItem(env, kBasicItems, epki); });
    freeEpki(epki);
  }
  void convertPrivKeyInfo(const Bytes& der) {
    ZELKMPrivKeyInfoItem* privKeyInfo = newPrivKeyInfo(der);
    convert([&] { return newJavaPrivKeyInfoItem(env, kBasicItems, privKeyInfo); });
    freePrivKeyInfo(privKeyInfo);
  }
};

TEST_F(NewJavaPrivateKeys, WrapAnEncryptedKey) {
  convertEpki({0x30, 0x0e});
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = class basic/EncryptedPrivateKeyInfoItem
    GetMethodID(class basic/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0e])
    NewObject(class basic/EncryptedPrivateKeyInfoItem, <init>, bytes#1) = EncryptedPrivateKeyInfoItem#1
    trace JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x{class basic/EncryptedPrivateKeyInfoItem}, retObj = 0x{EncryptedPrivateKeyInfoItem#1}
    return EncryptedPrivateKeyInfoItem#1
    held nothing
  )");
}

TEST_F(NewJavaPrivateKeys, WrapAKeyInClear) {
  convertPrivKeyInfo({0x30, 0x0f});
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/PrivateKeyInfoItem") = class basic/PrivateKeyInfoItem
    GetMethodID(class basic/PrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0f])
    NewObject(class basic/PrivateKeyInfoItem, <init>, bytes#1) = PrivateKeyInfoItem#1
    trace JNI_DEBUG......jPrivateKeyInfoItem = 0x{class basic/PrivateKeyInfoItem}, retObj = 0x{PrivateKeyInfoItem#1}
    return PrivateKeyInfoItem#1
    held nothing
  )");
}

TEST_F(NewJavaPrivateKeys, WrapNoBytesAsAnEmptyArray) {
  convertEpki({});
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = class basic/EncryptedPrivateKeyInfoItem
    GetMethodID(class basic/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(0) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 0, null)
    NewObject(class basic/EncryptedPrivateKeyInfoItem, <init>, bytes#1) = EncryptedPrivateKeyInfoItem#1
    trace JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x{class basic/EncryptedPrivateKeyInfoItem}, retObj = 0x{EncryptedPrivateKeyInfoItem#1}
    return EncryptedPrivateKeyInfoItem#1
    held nothing
  )");
}

TEST_F(NewJavaPrivateKeys, TraceAnObjectThatCouldNotBeMade) {
  recorder().faults.failCall("NewObject", 1);
  convertPrivKeyInfo({0x30, 0x0f});
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/PrivateKeyInfoItem") = class basic/PrivateKeyInfoItem
    GetMethodID(class basic/PrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0f])
    NewObject(class basic/PrivateKeyInfoItem, <init>, bytes#1) = null
    trace JNI_DEBUG......jPrivateKeyInfoItem = 0x{class basic/PrivateKeyInfoItem}, retObj = 0x0
    return null
    held nothing
  )");
}

TEST_F(NewJavaPrivateKeys, EndAtTheFirstFailure) {
  recorder().faults.failCall("FindClass", 1);
  convertEpki({1});
  recorder().faults.failCall("GetMethodID", 1);
  convertEpki({1});
  recorder().faults.failCall("NewByteArray", 1);
  convertEpki({1});
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = class basic/EncryptedPrivateKeyInfoItem
    GetMethodID(class basic/EncryptedPrivateKeyInfoItem, "<init>", "([B)V") = null
    return null
    held nothing
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = class basic/EncryptedPrivateKeyInfoItem
    GetMethodID(class basic/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(1) = null
    return null
    held nothing
  )");
}

TEST_F(NewJavaPrivateKeys, AreNothingWithoutARecord) {
  convert([&] { return newJavaEPKIItem(env, kBasicItems, nullptr); });
  convert([&] { return newJavaPrivKeyInfoItem(env, kBasicItems, nullptr); });
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
