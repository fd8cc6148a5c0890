#include "tests/transcripts/java_classes.h"

#include <string>

namespace zel::test {

namespace {

constexpr const char* kTakesText = "(Ljava/lang/String;)V";
constexpr const char* kTakesBytes = "([B)V";

JavaMember method(const char* name, const char* signature) {
  return {JavaMember::kMethod, name, signature};
}

JavaMember constructor(const char* signature) { return method("<init>", signature); }

JavaMember text(const char* field) { return {JavaMember::kField, field, "Ljava/lang/String;"}; }

}  // namespace

void declareJavaClasses(JavaHeap& heap) {
  const std::string basic = kBasic;
  heap.declare(basic + "KMSystem", {});
  heap.declare(basic + "CMSKeyDatabaseException",
               {{JavaMember::kStaticMethod, "addCMSErrCode", "(ILjava/lang/String;)Z"}});
  heap.declare(basic + "CMSKeyDatabase",
               {method("addKeyLabel", kTakesText), method("addReqKeyLabel", kTakesText)});
  heap.declare(basic + "WEBDBKeyDatabase", {});
  heap.declare(basic + "BERObject", {constructor(kTakesBytes)});
  heap.declare(basic + "EncryptedPrivateKeyInfoItem", {constructor(kTakesBytes)});
  heap.declare(basic + "PrivateKeyInfoItem", {constructor(kTakesBytes)});
  heap.declare(
      basic + "DNItem",
      {text("cn"), text("ou"), text("o"), text("l"), text("s"), text("pc"), text("c"),
       constructor("(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;"
                   "Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;[B)V"),
       method("addOptionalField", kTakesText)});
  heap.declare(
      basic + "CertificateItem",
      {constructor(kTakesBytes),
       constructor("(SSLjava/lang/String;Lcom/nelo/zel/vosmar/basic/DNItem;"
                   "Lcom/nelo/zel/vosmar/basic/DNItem;JJLcom/nelo/zel/vosmar/basic/BERObject;"
                   "Lcom/nelo/zel/vosmar/basic/BERObject;[BLcom/nelo/zel/vosmar/basic/BERObject;"
                   "Ljava/lang/String;Ljava/lang/String;[B[B)V")});
  heap.declare(
      basic + "CertificateRequestItem",
      {constructor("(SLcom/nelo/zel/vosmar/basic/DNItem;Lcom/nelo/zel/vosmar/basic/BERObject;"
                   "Lcom/nelo/zel/vosmar/basic/BERObject;[BLcom/nelo/zel/vosmar/basic/BERObject;"
                   "Ljava/lang/String;Ljava/lang/String;[B[B)V")});
  heap.declare(
      basic + "KeyItem",
      {constructor("(Ljava/lang/String;SSLcom/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem;"
                   "[Lcom/nelo/zel/vosmar/basic/CertificateItem;"
                   "Lcom/nelo/zel/vosmar/basic/BERObject;ZZ)V"),
       constructor("(Ljava/lang/String;SSLcom/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem;"
                   "Lcom/nelo/zel/vosmar/basic/CertificateRequestItem;"
                   "Lcom/nelo/zel/vosmar/basic/BERObject;)V"),
       method("setHasPrivateKey", "(Z)V")});
}

}  // namespace zel::test
