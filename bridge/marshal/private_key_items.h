#ifndef BRIDGE_MARSHAL_PRIVATE_KEY_ITEMS_H_
#define BRIDGE_MARSHAL_PRIVATE_KEY_ITEMS_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/item_classes.h"

namespace zel::bridge {

/** newJavaEPKIItem makes an EncryptedPrivateKeyInfoItem; no bytes give an empty one. */
jobject newJavaEPKIItem(JNIEnv* env, const ItemClasses& classes, const ZELKMEPKIItem* epki);

/** newJavaPrivKeyInfoItem makes a PrivateKeyInfoItem; no bytes give an empty one. */
jobject newJavaPrivKeyInfoItem(JNIEnv* env, const ItemClasses& classes,
                               const ZELKMPrivKeyInfoItem* privKeyInfo);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_PRIVATE_KEY_ITEMS_H_
