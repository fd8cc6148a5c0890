#ifndef BRIDGE_KEYDB_PRIVATE_KEY_CONVERSIONS_H_
#define BRIDGE_KEYDB_PRIVATE_KEY_CONVERSIONS_H_

#include <jni.h>

#include "bridge/marshal/item_classes.h"

/**
 * @file
 * Whole natives that exist once for each package of item classes: null for every failure.
 */

namespace zel::bridge {

/** encryptPrivateKey makes an EncryptedPrivateKeyInfoItem of a DER PrivateKeyInfo. */
jobject encryptPrivateKey(JNIEnv* env, jobject self, const ItemClasses& classes, jint length,
                          jbyteArray privateKey, jstring password);

/** decryptPrivateKey makes a PrivateKeyInfoItem of a DER EncryptedPrivateKeyInfo. */
jobject decryptPrivateKey(JNIEnv* env, jobject self, const ItemClasses& classes, jint length,
                          jbyteArray encryptedKey, jstring password);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_PRIVATE_KEY_CONVERSIONS_H_
