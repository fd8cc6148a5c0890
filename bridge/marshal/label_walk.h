#ifndef BRIDGE_MARSHAL_LABEL_WALK_H_
#define BRIDGE_MARSHAL_LABEL_WALK_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"

namespace zel::bridge {

/** labelCallback is the method of that name by which an object of the class takes a label. */
inline jmethodID labelCallback(JNIEnv* env, jclass type, const char* name) {
  return env->GetMethodID(type, name, "(Ljava/lang/String;)V");
}

/** staticLabelCallback is the method by which the class itself takes one. */
inline jmethodID staticLabelCallback(JNIEnv* env, jclass type, const char* name) {
  return env->GetStaticMethodID(type, name, "(Ljava/lang/String;)V");
}

/**
 * forEachLabel visits the labels of the list in its order, up to a null node or a null label. The
 * visitor answers a code; one that is not 0 ends the walk and becomes its result.
 *
 *     int rc = forEachLabel(list, [&](const char* label) { ... return ZELKM_OK; });
 *     ZELKM_FreeLabelList(list);
 */
template <typename Visitor>
int forEachLabel(const ZELKMLabelList* list, Visitor&& visitor) {
  for (; list != nullptr && list->label != nullptr; list = list->next) {
    const int rc = visitor(list->label);
    if (rc != ZELKM_OK) return rc;
  }
  return ZELKM_OK;
}

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_LABEL_WALK_H_
