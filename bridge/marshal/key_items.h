#ifndef BRIDGE_MARSHAL_KEY_ITEMS_H_
#define BRIDGE_MARSHAL_KEY_ITEMS_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/item_classes.h"

namespace zel::bridge {

/** newJavaKeyItem makes a KeyItem with its certificates of the record. */
jobject newJavaKeyItem(JNIEnv* env, const ItemClasses& classes, const ZELKMKeyItem* item);

/** newJavaKeyItemArray makes a KeyItem[] of the list, in its order. */
jobjectArray newJavaKeyItemArray(JNIEnv* env, const ItemClasses& classes,
                                 const ZELKMKeyItemList* list);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_KEY_ITEMS_H_
