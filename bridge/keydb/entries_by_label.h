#ifndef BRIDGE_KEYDB_ENTRIES_BY_LABEL_H_
#define BRIDGE_KEYDB_ENTRIES_BY_LABEL_H_

#include <jni.h>

namespace zel::bridge {

/**
 * getJavaKeyItemByLabel reads an entry of an open key database, token or certificate store into a
 * Java KeyItem. The flag chooses the table, keys or requests; neither falls back on the other. The
 * answer is null when there is none: the item decides, not the library's code, which is lost.
 */
jobject getJavaKeyItemByLabel(JNIEnv* env, int handle, const char* label, jboolean isRequestKey);

/** deleteKeyByLabel deletes a key, or a request with its key pair, and answers the code. */
int deleteKeyByLabel(int handle, const char* label, jboolean isRequestKey);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_ENTRIES_BY_LABEL_H_
