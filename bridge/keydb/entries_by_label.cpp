#include "bridge/keydb/entries_by_label.h"

#include "bridge/frame/trace.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/key_items.h"
#include "bridge/marshal/request_items.h"

namespace zel::bridge {

namespace {

jobject getRequestKeyItem(JNIEnv* env, int handle, const char* label) {
  ZELKMReqKeyItem* item = nullptr;
  ZELKM_GetReqKeyItemByLabel(handle, label, &item);
  traceMessage("JNI_DEBUG......KM_GetReqKeyItem gets %s\n", nullOrNot(item));
  if (item == nullptr) return nullptr;
  traceMessage("JNI_DEBUG......cReqKeyItem->keySize = %d\n", item->keySize);
  jobject keyItem = newJavaReqKeyItem(env, item);
  ZELKM_FreeReqKeyItem(item);
  return keyItem;
}

}  // namespace

jobject getJavaKeyItem(JNIEnv* env, const ItemClasses& classes, int handle, const char* label) {
  ZELKMKeyItem* item = nullptr;
  ZELKM_GetKeyItemByLabel(handle, label, &item);
  traceMessage("JNI_DEBUG......KM_GetKeyItem gets %s\n", nullOrNot(item));
  return handOverKeyItem(env, classes, item);
}

jobject getJavaKeyItemByLabel(JNIEnv* env, int handle, const char* label, jboolean isRequestKey) {
  return isRequestKey == JNI_FALSE ? getJavaKeyItem(env, kBasicItems, handle, label)
                                   : getRequestKeyItem(env, handle, label);
}

int deleteKeyByLabel(int handle, const char* label, jboolean isRequestKey) {
  return isRequestKey == JNI_FALSE ? ZELKM_DeleteKey(handle, label)
                                   : ZELKM_DeleteRequestKeyPair(handle, label);
}

}  // namespace zel::bridge
