#include "tests/transcripts/java_classes.h"

#include <string>
#include <vector>

namespace zel::test {

namespace {

constexpr const char* kTakesText = "(Ljava/lang/String;)V";
constexpr const char* kTakesBytes = "([B)V";

JavaMember method(const char* name, const char* signature) {
  return {JavaMember::kMethod, name, signature};
}

JavaMember staticMethod(const char* name, const char* signature) {
  return {JavaMember::kStaticMethod, name, signature};
}

JavaMember constructor(const char* signature) { return method("<init>", signature); }

JavaMember text(const char* field) { return {JavaMember::kField, field, "Ljava/lang/String;"}; }

/** The item classes that both packages have. */
void declareItems(JavaHeap& heap, const std::string& package, const LongSignature& certificateItem,
                  const std::vector<JavaMember>& keyItem) {
  heap.declare(package + "BERObject", {constructor(kTakesBytes)});
  heap.declare(package + "EncryptedPrivateKeyInfoItem", {constructor(kTakesBytes)});
  heap.declare(package + "PrivateKeyInfoItem", {constructor(kTakesBytes)});
  heap.declare(package + "DNItem",
               {text("cn"), text("ou"), text("o"), text("l"), text("s"), text("pc"), text("c"),
                constructor(kDnItem.signature), method("addOptionalField", kTakesText)});
  heap.declare(package + "CertificateItem",
               {constructor(kTakesBytes), constructor(certificateItem.signature)});
  heap.declare(package + "KeyItem", keyItem);
}

}  // namespace

void declareJavaClasses(JavaHeap& heap) {
  const std::string basic = kBasic;
  heap.declare(basic + "KMSystem", {});
  heap.declare(basic + "CMSKeyDatabaseException",
               {staticMethod("addCMSErrCode", "(ILjava/lang/String;)Z")});
  heap.declare(basic + "CMSKeyDatabase",
               {method("addKeyLabel", kTakesText), method("addReqKeyLabel", kTakesText)});
  heap.declare(basic + "WEBDBKeyDatabase", {});
  heap.declare(
      basic + "CryptographicToken",
      {staticMethod("addTokenLabel", kTakesText), method("addPersonalKeyLabel", kTakesText),
       method("addSignerKeyLabel", kTakesText), method("addRequestKeyLabel", kTakesText)});
  heap.declare(
      basic + "MSCertificateStore",
      {staticMethod("addCSPName", kTakesText), method("addKeyLabel", kTakesText),
       method("addPersonalKeyLabel", kTakesText), method("addSignerKeyLabel", kTakesText)});
  heap.declare(basic + "CertificateRequestItem", {constructor(kCertificateRequestItem.signature)});
  declareItems(heap, basic, kCertificateItem,
               {constructor(kKeyItem.signature), constructor(kRequestKeyItem.signature),
                method("setHasPrivateKey", "(Z)V")});

  const std::string legacy = kLegacy;
  heap.declare(legacy + "CMSKeyDatabase",
               {method("addKeyLabel", kTakesText), method("addReqKeyLabel", kTakesText)});
  declareItems(heap, legacy, kLegacyCertificateItem,
               {constructor(kLegacyKeyItem.signature), method("setHasPrivateKey", "(Z)V")});
}

}  // namespace zel::test
