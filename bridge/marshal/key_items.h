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

/**
 * handOverKeyItem makes a KeyItem of the record that the library answered, after a trace of its key
 * size, and frees the record. There may be none.
 */
jobject handOverKeyItem(JNIEnv* env, const ItemClasses& classes, ZELKMKeyItem* item);

/**
 * handOverKeyItems makes a KeyItem[] of the list that the library answered with the code, and frees
 * the list. One that came with a failure is neither converted nor freed.
 */
jobjectArray handOverKeyItems(JNIEnv* env, const ItemClasses& classes, ZELKMKeyItemList* list,
                              int code);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_KEY_ITEMS_H_
