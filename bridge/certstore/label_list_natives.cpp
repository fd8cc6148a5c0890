// The names of the certificate stores, and the labels of one.

#include "bridge/certstore/with_store.h"
#include "bridge/frame/gate.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/label_buffer.h"
#include "bridge/marshal/label_walk.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/token_labels.h"
#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"

using namespace zel::bridge;

namespace {

/** LabelReceiver is the Java object that collects the labels, and its three callbacks. */
struct LabelReceiver {
  jobject object;
  jmethodID addKeyLabel;
  jmethodID addPersonalKeyLabel;
  jmethodID addSignerKeyLabel;
};

/** deliverLabels delivers each label twice: among all, then among its kind. */
int deliverLabels(JNIEnv* env, const LabelReceiver& receiver, int handle) {
  ZELKMLabelList* list = nullptr;
  int rc = ZELKM_GetKeyDbLabelList(handle, &list);
  if (rc != ZELKM_OK || list == nullptr) return rc;
  LabelBuffer buffer;
  rc = forEachLabel(list, [&](const char* text) {
    unsigned char present = 0;
    const int asked = ZELKM_IsPrivateKeyPresent(handle, text, &present);
    if (asked != ZELKM_OK) return asked;
    jstring label = newJavaString(env, buffer.copy(text));
    env->CallVoidMethod(receiver.object, receiver.addKeyLabel, label);
    jmethodID callback = present != 0 ? receiver.addPersonalKeyLabel : receiver.addSignerKeyLabel;
    env->CallVoidMethod(receiver.object, callback, label);
    return asked;
  });
  ZELKM_FreeLabelList(list);
  return rc;
}

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1GetCSPNameList(JNIEnv* env, jclass type) {
  if (lacksAny(env, type)) return ZELKM_ERR_PARAMETER;
  jmethodID addCSPName = staticLabelCallback(env, type, "addCSPName");
  if (addCSPName == nullptr) return ZELKM_ERR_PARAMETER;
  return deliverTokenLabels(env, type, addCSPName, "");
}

jint Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1BuildKeyLabelList(JNIEnv* env,
                                                                            jobject self,
                                                                            jstring cspName,
                                                                            jstring password) {
  jclass selfClass = classOf(env, self);
  if (selfClass == nullptr) return ZELKM_ERR_PARAMETER;
  LabelReceiver receiver{self, nullptr, nullptr, nullptr};
  receiver.addKeyLabel = labelCallback(env, selfClass, "addKeyLabel");
  if (receiver.addKeyLabel == nullptr) return ZELKM_ERR_PARAMETER;
  receiver.addPersonalKeyLabel = labelCallback(env, selfClass, "addPersonalKeyLabel");
  if (receiver.addPersonalKeyLabel == nullptr) return ZELKM_ERR_PARAMETER;
  receiver.addSignerKeyLabel = labelCallback(env, selfClass, "addSignerKeyLabel");
  if (receiver.addSignerKeyLabel == nullptr) return ZELKM_ERR_PARAMETER;

  HeldStrings held(env);
  const Store store = takeStore(held, cspName, password);
  const int rc = withStore(store, [&](int handle) { return deliverLabels(env, receiver, handle); });
  held.releaseAll();
  return rc;
}
