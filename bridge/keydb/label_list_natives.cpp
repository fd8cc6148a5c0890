// The labels of a key database, delivered to Java one call each.

#include "bridge/frame/gate.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/label_buffer.h"
#include "bridge/marshal/label_walk.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

namespace {

/** deliverLabels delivers them all: a callback that throws does not end it. */
void deliverLabels(JNIEnv* env, jobject self, jmethodID callback, const ZELKMLabelList* list,
                   TextTrace trace, LabelBuffer& buffer) {
  forEachLabel(list, [&](const char* text) {
    const char* label = buffer.copy(text);
    trace(label);
    env->CallVoidMethod(self, callback, newJavaString(env, label));
    return ZELKM_OK;
  });
}

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1BuildKeyLabelList(JNIEnv* env, jobject self,
                                                                        jstring keyDbFileName,
                                                                        jstring keyDbPwd) {
  jclass selfClass = classOf(env, self);
  if (selfClass == nullptr) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  jmethodID addKeyLabel = labelCallback(env, selfClass, "addKeyLabel");
  if (addKeyLabel == nullptr) {
    held.leaveHeld();
    return ZELKM_ERR_PARAMETER;
  }

  ZELKMLabelList* keyLabels = nullptr;
  ZELKMLabelList* requestLabels = nullptr;
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    const int listed = ZELKM_GetKeyDbLabelList(handle, &keyLabels);
    if (listed != ZELKM_OK) return listed;
    return ZELKM_GetReqKeyDbLabelList(handle, &requestLabels);
  });

  // Key labels are delivered whatever the code; request labels only after a success.
  LabelBuffer buffer;
  if (keyLabels != nullptr) {
    deliverLabels(env, self, addKeyLabel, keyLabels, TextTrace{"JNI_DEBUG......cLabel = %s\n"},
                  buffer);
    ZELKM_FreeLabelList(keyLabels);
  }
  if (rc == ZELKM_OK && requestLabels != nullptr) {
    jmethodID addReqKeyLabel = labelCallback(env, selfClass, "addReqKeyLabel");
    if (addReqKeyLabel != nullptr) {
      deliverLabels(env, self, addReqKeyLabel, requestLabels,
                    TextTrace{"JNI_DEBUG......cReqLabel = %s\n"}, buffer);
    }
    ZELKM_FreeLabelList(requestLabels);
  }
  held.releaseAll();
  return rc;
}
