#include "bridge/marshal/token_labels.h"

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/label_buffer.h"
#include "bridge/marshal/label_walk.h"
#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

int deliverTokenLabels(JNIEnv* env, jclass type, jmethodID callback, const char* moduleName) {
  ZELKMLabelList* list = nullptr;
  const int rc = ZELKM_GetCryptoTokenLabelList(moduleName, &list);
  if (rc != ZELKM_OK || list == nullptr) return rc;
  LabelBuffer buffer;
  forEachLabel(list, [&](const char* label) {
    env->CallStaticVoidMethod(type, callback, newJavaString(env, buffer.copy(label)));
    return ZELKM_OK;
  });
  ZELKM_FreeLabelList(list);
  return rc;
}

}  // namespace zel::bridge
