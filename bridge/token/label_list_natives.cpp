// The labels of a token, sorted into personal keys, signers and requests as Java receives them.

#include "bridge/frame/gate.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/label_buffer.h"
#include "bridge/marshal/label_walk.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/token/with_token.h"
#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"

using namespace zel::bridge;

namespace {

/** LabelReceiver is the Java object that collects the labels, and its three callbacks. */
struct LabelReceiver {
  jobject object;
  jmethodID addPersonalKeyLabel;
  jmethodID addSignerKeyLabel;
  jmethodID addRequestKeyLabel;
};

int deliverKeyLabels(JNIEnv* env, const LabelReceiver& receiver, int handle, LabelBuffer& buffer) {
  ZELKMLabelList* list = nullptr;
  int rc = ZELKM_GetKeyDbLabelList(handle, &list);
  if (rc != ZELKM_OK || list == nullptr) return rc;
  rc = forEachLabel(list, [&](const char* label) {
    unsigned char present = 0;
    const int asked = ZELKM_IsPrivateKeyPresent(handle, label, &present);
    if (asked != ZELKM_OK) return asked;
    jmethodID callback = present != 0 ? receiver.addPersonalKeyLabel : receiver.addSignerKeyLabel;
    env->CallVoidMethod(receiver.object, callback, newJavaString(env, buffer.copy(label)));
    return asked;
  });
  ZELKM_FreeLabelList(list);
  return rc;
}

int deliverRequestLabels(JNIEnv* env, const LabelReceiver& receiver, int handle,
                         LabelBuffer& buffer) {
  ZELKMLabelList* list = nullptr;
  const int rc = ZELKM_GetReqKeyDbLabelList(handle, &list);
  if (rc != ZELKM_OK || list == nullptr) return rc;
  forEachLabel(list, [&](const char* label) {
    env->CallVoidMethod(receiver.object, receiver.addRequestKeyLabel,
                        newJavaString(env, buffer.copy(label)));
    return ZELKM_OK;
  });
  ZELKM_FreeLabelList(list);
  return rc;
}

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1BuildKeyLabelList(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword) {
  if (lacksAny(env, self, moduleName, tokenLabel)) return ZELKM_ERR_PARAMETER;
  jclass selfClass = env->GetObjectClass(self);
  if (selfClass == nullptr) return ZELKM_ERR_PARAMETER;
  LabelReceiver receiver{self, nullptr, nullptr, nullptr};
  receiver.addPersonalKeyLabel = labelCallback(env, selfClass, "addPersonalKeyLabel");
  if (receiver.addPersonalKeyLabel == nullptr) return ZELKM_ERR_PARAMETER;
  receiver.addSignerKeyLabel = labelCallback(env, selfClass, "addSignerKeyLabel");
  if (receiver.addSignerKeyLabel == nullptr) return ZELKM_ERR_PARAMETER;
  receiver.addRequestKeyLabel = labelCallback(env, selfClass, "addRequestKeyLabel");
  if (receiver.addRequestKeyLabel == nullptr) return ZELKM_ERR_PARAMETER;

  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  const int rc = withToken(token, [&](int handle) {
    LabelBuffer buffer;
    const int listed = deliverKeyLabels(env, receiver, handle, buffer);
    if (listed != ZELKM_OK) return listed;
    return deliverRequestLabels(env, receiver, handle, buffer);
  });
  held.releaseAll();
  return rc;
}
