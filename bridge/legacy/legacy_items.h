#ifndef BRIDGE_LEGACY_LEGACY_ITEMS_H_
#define BRIDGE_LEGACY_LEGACY_ITEMS_H_

#include "bridge/marshal/item_classes.h"

namespace zel::bridge {

/** kLegacyItems are the classes of package com.nelo.security.cmskeystore. */
inline constexpr ItemClasses kLegacyItems{
    .berObject = "com/nelo/security/cmskeystore/BERObject",
    .dnItem = "com/nelo/security/cmskeystore/DNItem",
    .certificateItem = "com/nelo/security/cmskeystore/CertificateItem",
    .certificateItemConstructor =
        "(SSLjava/lang/String;"
        "Lcom/nelo/security/cmskeystore/DNItem;"
        "Lcom/nelo/security/cmskeystore/DNItem;"
        "JJ"
        "Lcom/nelo/security/cmskeystore/BERObject;"
        "Lcom/nelo/security/cmskeystore/BERObject;"
        "[B"
        "Lcom/nelo/security/cmskeystore/BERObject;"
        "Ljava/lang/String;Ljava/lang/String;[B[B)V",
    .encryptedPrivateKeyInfoItem = "com/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem",
    .privateKeyInfoItem = "com/nelo/security/cmskeystore/PrivateKeyInfoItem",
    .keyItem = "com/nelo/security/cmskeystore/KeyItem",
    .keyItemConstructor =
        "(Ljava/lang/String;SS"
        "Lcom/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem;"
        "[Lcom/nelo/security/cmskeystore/CertificateItem;"
        "Lcom/nelo/security/cmskeystore/BERObject;"
        "ZZ)V",
};

}  // namespace zel::bridge

#endif  // BRIDGE_LEGACY_LEGACY_ITEMS_H_
