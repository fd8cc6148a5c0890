#include <cstring>
#include <set>

#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_GetKeyItemByLabel =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemByLabel;
constexpr auto c_GetKeyItemListByLabel =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1GetKeyItemListByLabel;
constexpr auto basic_c_GetKeyItemByLabel =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1GetKeyItemByLabel;

/** A key item with an object of every class below it. */
ZELKMKeyItem* newFullKeyItem() {
  ZELKMCertItem* cert = newLabelledCert("my cert");
  cert->subjectDN = newDn("Alice", {0x30, 0x0a});
  cert->subjectDN->optionalField1 = strdup("DC=one");
  cert->issuerDN = newDn("Root", {0x30, 0x0b});
  ZELKMKeyItem* item = newKeyItem("my key");
  item->hasPrivateKey = 1;
  item->epki = newEpki({0x30, 0x0e});
  item->hasBerData = 1;
  item->berData = copyOf({0x30, 0x5b});
  item->berDataLength = 2;
  item->hasCertList = 1;
  item->certList = newCertList({cert, newCert({0x30, 0xcf})});
  return item;
}

class LegacyItemTree : public NativeTest {
 protected:
  LegacyItemTree() : NativeTest("CMSKeyDatabase", kLegacy) { library().keyItem = newFullKeyItem; }

  /** typesIn() are the types of an object and of all that it was made of. */
  std::set<std::string> typesIn(jobject root) {
    const JavaThing& thing = *jni.heap.thing(root);
    std::set<std::string> types = {thing.type};
    for (jobject part : thing.elements) {
      if (part != nullptr) types.merge(typesIn(part));
    }
    return types;
  }

  static std::set<std::string> typesOfPackage(const std::string& package) {
    const auto itemType = [&package](const char* name) { return "L" + package + name + ";"; };
    return {itemType("KeyItem"),
            itemType("EncryptedPrivateKeyInfoItem"),
            '[' + itemType("CertificateItem"),
            itemType("CertificateItem"),
            itemType("DNItem"),
            itemType("BERObject"),
            "Ljava/lang/String;",
            "[B"};
  }
};

TEST_F(LegacyItemTree, HoldsNoObjectOfPackageBasic) {
  jobject item = nullptr;
  {
    const BridgeCall bridge;
    item = c_GetKeyItemByLabel(env, self, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  }
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(typesIn(item), typesOfPackage(kLegacy));
}

TEST_F(LegacyItemTree, HoldsNoObjectOfPackageBasicInAList) {
  library().keyItemList = [] { return newKeyItemList({newFullKeyItem(), newFullKeyItem()}); };
  jobject items = nullptr;
  {
    const BridgeCall bridge;
    items = c_GetKeyItemListByLabel(env, self, text("a.kdb"), text("secret"), text("my key"));
  }
  ASSERT_NE(items, nullptr);
  std::set<std::string> expected = typesOfPackage(kLegacy);
  expected.insert("[Lcom/nelo/security/cmskeystore/KeyItem;");
  EXPECT_EQ(typesIn(items), expected);
}

/** The walk tells the packages apart: the same record in package basic. */
TEST_F(LegacyItemTree, IsTheTreeOfPackageBasicUnderOtherNames) {
  jobject item = nullptr;
  {
    const BridgeCall bridge;
    item = basic_c_GetKeyItemByLabel(env, self, text("a.kdb"), text("secret"), text("my key"),
                                     JNI_FALSE);
  }
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(typesIn(item), typesOfPackage(kBasic));
}

TEST_F(LegacyItemTree, IsBuiltInTheOrderOfPackageBasic) {
  call(c_GetKeyItemByLabel, text("a.kdb"), text("secret"), text("my key"), JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    GetObjectClass(this) = class cmskeystore/CMSKeyDatabase
    GetStringUTFChars("a.kdb")
    trace JNI_DEBUG......cKeyDbFileName = a.kdb
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetStringUTFChars("my key")
    trace JNI_DEBUG......cKeyLabel = my key
    ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
    ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
    trace JNI_DEBUG......KM_GetKeyItem gets NON-NULL
    trace JNI_DEBUG......cKeyItem->keySize = 2048
    FindClass("com/nelo/security/cmskeystore/KeyItem") = class cmskeystore/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class cmskeystore/KeyItem}
    GetMethodID(class cmskeystore/KeyItem, "<init>", "{legacy KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class cmskeystore/KeyItem}, constructor=0x{<init>}
    NewStringUTF("my key")
    FindClass("com/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem") = class cmskeystore/EncryptedPrivateKeyInfoItem
    GetMethodID(class cmskeystore/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#1
    SetByteArrayRegion(bytes#1, 0, 2, [30 0e])
    NewObject(class cmskeystore/EncryptedPrivateKeyInfoItem, <init>, bytes#1) = EncryptedPrivateKeyInfoItem#1
    trace JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x{class cmskeystore/EncryptedPrivateKeyInfoItem}, retObj = 0x{EncryptedPrivateKeyInfoItem#1}
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/security/cmskeystore/BERObject") = class cmskeystore/BERObject
    GetMethodID(class cmskeystore/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 5b])
    NewObject(class cmskeystore/BERObject, <init>, bytes#2) = BERObject#1
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class cmskeystore/CertificateItem}
    trace JNI_DEBUG......certCnt = 2
    NewObjectArray(2, class cmskeystore/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    GetMethodID(class cmskeystore/CertificateItem, "<init>", "{legacy CertificateItem}")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#3
    SetByteArrayRegion(bytes#3, 0, 2, [30 ce])
    NewStringUTF("my cert")
    FindClass("com/nelo/security/cmskeystore/DNItem") = class cmskeystore/DNItem
    GetMethodID(class cmskeystore/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#4
    SetByteArrayRegion(bytes#4, 0, 2, [30 0a])
    NewStringUTF("Alice")
    NewStringUTF("DC=one")
    NewObject(class cmskeystore/DNItem, <init>, "Alice", null, null, null, null, null, null, null, bytes#4) = DNItem#1
    GetMethodID(class cmskeystore/DNItem, "addOptionalField", "(Ljava/lang/String;)V")
    CallVoidMethod(DNItem#1, addOptionalField, "DC=one")
    trace JNI_DEBUG......jDNItemClass = 0x{class cmskeystore/DNItem}, retObj = 0x{DNItem#1}
    FindClass("com/nelo/security/cmskeystore/DNItem") = class cmskeystore/DNItem
    GetMethodID(class cmskeystore/DNItem, "<init>", "{DNItem}")
    NewByteArray(2) = bytes#5
    SetByteArrayRegion(bytes#5, 0, 2, [30 0b])
    NewStringUTF("Root")
    NewObject(class cmskeystore/DNItem, <init>, "Root", null, null, null, null, null, null, null, bytes#5) = DNItem#2
    trace JNI_DEBUG......jDNItemClass = 0x{class cmskeystore/DNItem}, retObj = 0x{DNItem#2}
    trace JNI_DEBUG......jCertificateItemClass effectTime = 1000
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/security/cmskeystore/BERObject") = class cmskeystore/BERObject
    GetMethodID(class cmskeystore/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#6
    SetByteArrayRegion(bytes#6, 0, 2, [30 5b])
    NewObject(class cmskeystore/BERObject, <init>, bytes#6) = BERObject#2
    NewByteArray(1) = bytes#7
    SetByteArrayRegion(bytes#7, 0, 1, [51])
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/security/cmskeystore/BERObject") = class cmskeystore/BERObject
    GetMethodID(class cmskeystore/BERObject, "<init>", "([B)V")
    NewByteArray(2) = bytes#8
    SetByteArrayRegion(bytes#8, 0, 2, [30 a1])
    NewObject(class cmskeystore/BERObject, <init>, bytes#8) = BERObject#3
    NewStringUTF("1.2.3")
    NewStringUTF("algorithm")
    ZELKM_GetUnsignedCertFromCert([30 ce], 2) = 0, buffer#1 [30 7b]
    NewByteArray(2) = bytes#9
    SetByteArrayRegion(bytes#9, 0, 2, [30 7b])
    NewObject(class cmskeystore/CertificateItem, <init>, 3, 2048, "my cert", DNItem#1, DNItem#2, 1000, 2000, BERObject#2, null, bytes#7, BERObject#3, "1.2.3", "algorithm", bytes#9, bytes#3) = CertificateItem#1
    trace JNI_DEBUG......exit(): produced jCertificateItem = 0x{CertificateItem#1}
    trace JNI_DEBUG......exit(): jCertificateItemClass = 0x{class cmskeystore/CertificateItem}
    SetObjectArrayElement(CertificateItem[]#1, 0, CertificateItem#1)
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    GetMethodID(class cmskeystore/CertificateItem, "<init>", "([B)V")
    trace JNI_DEBUG......constructorMID 0x{<init>}
    NewByteArray(2) = bytes#10
    SetByteArrayRegion(bytes#10, 0, 2, [30 cf])
    trace JNI_DEBUG......to construct a cert (no line end)
    NewObject(class cmskeystore/CertificateItem, <init>, bytes#10) = CertificateItem#2
    SetObjectArrayElement(CertificateItem[]#1, 1, CertificateItem#2)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    NewObject(class cmskeystore/KeyItem, <init>, "my key", 1, 2048, EncryptedPrivateKeyInfoItem#1, CertificateItem[]#1, BERObject#1, false, false) = KeyItem#1
    GetMethodID(class cmskeystore/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod(KeyItem#1, setHasPrivateKey, true)
    ZELKM_FreeKeyItem(key item#1)
    ZELKM_CloseKeyDb(1) = 0
    ReleaseStringUTFChars("a.kdb")
    ReleaseStringUTFChars("secret")
    ReleaseStringUTFChars("my key")
    return KeyItem#1
    held buffer#1
  )");
}

}  // namespace
}  // namespace zel::test
