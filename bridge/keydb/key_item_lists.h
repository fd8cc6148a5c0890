#ifndef BRIDGE_KEYDB_KEY_ITEM_LISTS_H_
#define BRIDGE_KEYDB_KEY_ITEM_LISTS_H_

#include <jni.h>

#include "bridge/marshal/item_classes.h"

/**
 * @file
 * Whole natives that exist once for each package of item classes: null for every failure.
 */

namespace zel::bridge {

/** getKeyItemListByLabel makes a KeyItem[] of all entries that share a label. */
jobjectArray getKeyItemListByLabel(JNIEnv* env, jobject self, const ItemClasses& classes,
                                   jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel);

/** getKeyItemsByPublicKey makes a KeyItem[] of all entries that hold a public key. */
jobjectArray getKeyItemsByPublicKey(JNIEnv* env, jobject self, const ItemClasses& classes,
                                    jstring keyDbFileName, jstring keyDbPwd, jint publicKeyLength,
                                    jbyteArray publicKey);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_KEY_ITEM_LISTS_H_
