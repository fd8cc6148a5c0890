#ifndef TESTS_TRANSCRIPTS_JAVA_CLASSES_H_
#define TESTS_TRANSCRIPTS_JAVA_CLASSES_H_

#include "tests/fake_jni/java_heap.h"

namespace zel::test {

/** Package of the item classes and of the classes with natives. */
inline constexpr const char* kBasic = "com/nelo/zel/vosmar/basic/";

/** The older package, with item classes of its own. */
inline constexpr const char* kLegacy = "com/nelo/security/cmskeystore/";

/** A constructor signature that is too long for a line, and what transcripts write for it. */
struct LongSignature {
  const char* shorthand;
  const char* signature;
};

inline constexpr LongSignature kDnItem = {
    "{DNItem}",
    "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;"
    "Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;[B)V"};

inline constexpr LongSignature kCertificateItem = {
    "{CertificateItem}",
    "(SSLjava/lang/String;Lcom/nelo/zel/vosmar/basic/DNItem;"
    "Lcom/nelo/zel/vosmar/basic/DNItem;JJLcom/nelo/zel/vosmar/basic/BERObject;"
    "Lcom/nelo/zel/vosmar/basic/BERObject;[BLcom/nelo/zel/vosmar/basic/BERObject;"
    "Ljava/lang/String;Ljava/lang/String;[B[B)V"};

inline constexpr LongSignature kCertificateRequestItem = {
    "{CertificateRequestItem}",
    "(SLcom/nelo/zel/vosmar/basic/DNItem;Lcom/nelo/zel/vosmar/basic/BERObject;"
    "Lcom/nelo/zel/vosmar/basic/BERObject;[BLcom/nelo/zel/vosmar/basic/BERObject;"
    "Ljava/lang/String;Ljava/lang/String;[B[B)V"};

inline constexpr LongSignature kKeyItem = {
    "{KeyItem}",
    "(Ljava/lang/String;SSLcom/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem;"
    "[Lcom/nelo/zel/vosmar/basic/CertificateItem;Lcom/nelo/zel/vosmar/basic/BERObject;ZZ)V"};

inline constexpr LongSignature kRequestKeyItem = {
    "{KeyItem of a request}",
    "(Ljava/lang/String;SSLcom/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem;"
    "Lcom/nelo/zel/vosmar/basic/CertificateRequestItem;Lcom/nelo/zel/vosmar/basic/BERObject;)V"};

inline constexpr LongSignature kLegacyCertificateItem = {
    "{legacy CertificateItem}",
    "(SSLjava/lang/String;Lcom/nelo/security/cmskeystore/DNItem;"
    "Lcom/nelo/security/cmskeystore/DNItem;JJLcom/nelo/security/cmskeystore/BERObject;"
    "Lcom/nelo/security/cmskeystore/BERObject;[BLcom/nelo/security/cmskeystore/BERObject;"
    "Ljava/lang/String;Ljava/lang/String;[B[B)V"};

inline constexpr LongSignature kLegacyKeyItem = {
    "{legacy KeyItem}",
    "(Ljava/lang/String;SSLcom/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem;"
    "[Lcom/nelo/security/cmskeystore/CertificateItem;Lcom/nelo/security/cmskeystore/BERObject;"
    "ZZ)V"};

inline constexpr LongSignature kLongSignatures[] = {
    kDnItem,         kCertificateItem,       kCertificateRequestItem, kKeyItem,
    kRequestKeyItem, kLegacyCertificateItem, kLegacyKeyItem};

/** declareJavaClasses() declares every class that the bridge looks up, with what it looks up. */
void declareJavaClasses(JavaHeap& heap);

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_JAVA_CLASSES_H_
