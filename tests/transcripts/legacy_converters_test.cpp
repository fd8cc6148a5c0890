#include "bridge/legacy/legacy_items.h"
#include "bridge/marshal/certificate_items.h"
#include "bridge/marshal/distinguished_names.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

using bridge::kLegacyItems;

/** The converters of the legacy package, when it lacks a class or a constructor. */
class LegacyConverters : public NativeTest {
 protected:
  LegacyConverters() : NativeTest("CMSKeyDatabase", kLegacy) {}

  void removeClass(const std::string& name) { jni.heap.removeClass(kLegacy + name); }
  void removeConstructors(const std::string& name) {
    jni.heap.removeMember(kLegacy + name, "<init>");
  }

  void convertBytes() {
    const unsigned char der[] = {0x30, 0x5b};
    convert([&] { return bridge::newBERObject(env, kLegacyItems, der, sizeof der); });
  }
  void convertDn() {
    ZELKMDNItem* dn = newDn("Alice", {0x30, 0x0a});
    convert([&] { return bridge::newJavaDNItem(env, kLegacyItems, dn); });
    freeDn(dn);
  }
  void convertCert(ZELKMCertItem* cert) {
    ZELKMCertItemList* list = newCertList({cert});
    convert([&] { return bridge::newJavaCertificateItem(env, kLegacyItems, cert); });
    freeCertList(list);
  }
  void convertCertList() {
    ZELKMCertItemList* list = newCertList({newCert({0x30, 0xce})});
    convert([&] { return bridge::newJavaCertificateItemArray(env, kLegacyItems, list); });
    freeCertList(list);
  }
};

TEST_F(LegacyConverters, NeedTheLegacyBERObject) {
  removeConstructors("BERObject");
  convertBytes();
  removeClass("BERObject");
  convertBytes();
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/security/cmskeystore/BERObject") = class cmskeystore/BERObject
    GetMethodID(class cmskeystore/BERObject, "<init>", "([B)V") = null
    return null
    held nothing
    trace JNI_DEBUG......jBERObjectClass = 0x0
    FindClass("com/nelo/security/cmskeystore/BERObject") = null
    return null
    held nothing
  )");
}

TEST_F(LegacyConverters, NeedTheLegacyDNItem) {
  removeConstructors("DNItem");
  convertDn();
  removeClass("DNItem");
  convertDn();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/security/cmskeystore/DNItem") = class cmskeystore/DNItem
    GetMethodID(class cmskeystore/DNItem, "<init>", "{DNItem}") = null
    return null
    held nothing
    FindClass("com/nelo/security/cmskeystore/DNItem") = null
    return null
    held nothing
  )");
}

TEST_F(LegacyConverters, NeedTheLegacyCertificateItem) {
  removeConstructors("CertificateItem");
  convertCert(newLabelledCert("my cert"));
  convertCert(newCert({0x30, 0xce}));
  removeClass("CertificateItem");
  convertCert(newLabelledCert("my cert"));
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    GetMethodID(class cmskeystore/CertificateItem, "<init>", "{legacy CertificateItem}") = null
    return null
    held nothing
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    GetMethodID(class cmskeystore/CertificateItem, "<init>", "([B)V") = null
    return null
    held nothing
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = null
    return null
    held nothing
  )");
}

/** An element that cannot be converted is null; without the class there is no array. */
TEST_F(LegacyConverters, NeedTheLegacyCertificateItemForAnArray) {
  removeConstructors("CertificateItem");
  convertCertList();
  removeClass("CertificateItem");
  convertCertList();
  EXPECT_TRANSCRIPT(R"(
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    trace JNI_DEBUG......jCertificateItemClass = 0x{class cmskeystore/CertificateItem}
    trace JNI_DEBUG......certCnt = 1
    NewObjectArray(1, class cmskeystore/CertificateItem, null) = CertificateItem[]#1
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = class cmskeystore/CertificateItem
    GetMethodID(class cmskeystore/CertificateItem, "<init>", "([B)V") = null
    SetObjectArrayElement(CertificateItem[]#1, 0, null)
    trace JNI_DEBUG......retArray = 0x{CertificateItem[]#1}
    return CertificateItem[]#1
    held nothing
    FindClass("com/nelo/security/cmskeystore/CertificateItem") = null
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
