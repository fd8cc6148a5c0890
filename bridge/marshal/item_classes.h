#ifndef BRIDGE_MARSHAL_ITEM_CLASSES_H_
#define BRIDGE_MARSHAL_ITEM_CLASSES_H_

namespace zel::bridge {

/**
 * ItemClasses is the table of the Java item classes of one package: names for FindClass, and the
 * constructor signatures in which classes of the package occur. The converters take it as an
 * argument, so that a second package needs a second table and no second converter:
 *
 *     jobject item = newJavaKeyItem(env, kBasicItems, keyItem);
 */
struct ItemClasses {
  const char* berObject;
  const char* dnItem;
  const char* certificateItem;
  const char* certificateItemConstructor;
  const char* encryptedPrivateKeyInfoItem;
  const char* privateKeyInfoItem;
  const char* keyItem;
  const char* keyItemConstructor;
};

/** kBytesConstructor is the signature of every constructor that takes only the bytes. */
inline constexpr const char* kBytesConstructor = "([B)V";

/** kBasicItems are the classes of package com.nelo.zel.vosmar.basic. */
inline constexpr ItemClasses kBasicItems{
    .berObject = "com/nelo/zel/vosmar/basic/BERObject",
    .dnItem = "com/nelo/zel/vosmar/basic/DNItem",
    .certificateItem = "com/nelo/zel/vosmar/basic/CertificateItem",
    .certificateItemConstructor =
        "(SSLjava/lang/String;"
        "Lcom/nelo/zel/vosmar/basic/DNItem;"
        "Lcom/nelo/zel/vosmar/basic/DNItem;"
        "JJ"
        "Lcom/nelo/zel/vosmar/basic/BERObject;"
        "Lcom/nelo/zel/vosmar/basic/BERObject;"
        "[B"
        "Lcom/nelo/zel/vosmar/basic/BERObject;"
        "Ljava/lang/String;Ljava/lang/String;[B[B)V",
    .encryptedPrivateKeyInfoItem = "com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem",
    .privateKeyInfoItem = "com/nelo/zel/vosmar/basic/PrivateKeyInfoItem",
    .keyItem = "com/nelo/zel/vosmar/basic/KeyItem",
    .keyItemConstructor =
        "(Ljava/lang/String;SS"
        "Lcom/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem;"
        "[Lcom/nelo/zel/vosmar/basic/CertificateItem;"
        "Lcom/nelo/zel/vosmar/basic/BERObject;"
        "ZZ)V",
};

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_ITEM_CLASSES_H_
