#ifndef BRIDGE_KEYDB_ENTRIES_BY_LABEL_H_
#define BRIDGE_KEYDB_ENTRIES_BY_LABEL_H_

#include <jni.h>

#include "bridge/marshal/item_classes.h"

namespace zel::bridge {

/**
 * getJavaKeyItem reads a key of an open key database, token or certificate store into a Java
 * KeyItem. The answer is null when there is none: the item decides, not the library's code, which
 * is lost.
 */
jobject getJavaKeyItem(JNIEnv* env, const ItemClasses& classes, int handle, const char* label);

/**
 * getJavaKeyItemByLabel reads a key, or a request in the same way, into a KeyItem of package basic.
 * The flag chooses the table; neither falls back on the other.
 */
jobject getJavaKeyItemByLabel(JNIEnv* env, int handle, const char* label, jboolean isRequestKey);

/** deleteKeyByLabel deletes a key, or a request with its key pair, and answers the code. */
int deleteKeyByLabel(int handle, const char* label, jboolean isRequestKey);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_ENTRIES_BY_LABEL_H_
