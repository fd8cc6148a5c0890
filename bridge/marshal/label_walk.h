#ifndef BRIDGE_MARSHAL_LABEL_WALK_H_
#define BRIDGE_MARSHAL_LABEL_WALK_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"

namespace zel::bridge {

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

/**
 * deliverTokenLabels asks the library for the tokens of a module and hands each label to a static
 * method of the class. An empty module name, not a null one, asks for the certificate stores.
 */
int deliverTokenLabels(JNIEnv* env, jclass type, jmethodID callback, const char* moduleName);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_LABEL_WALK_H_
