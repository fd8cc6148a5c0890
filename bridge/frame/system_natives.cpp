// The natives of KMSystem: start, stop and set up the key management library and the trace.

#include <cstdio>

#include "bridge/frame/stated_leaks.h"
#include "bridge/frame/trace.h"
#include "bridge/frame/version_block.h"
#include "bridge/kmlib/zelkm.h"
#include "com_nelo_zel_vosmar_basic_KMSystem.h"

using namespace zel::bridge;

namespace {

/** Keys above this size, in bits, are strong cryptography. */
constexpr uint32_t kWeakKeySize = 512;

}  // namespace

jboolean Java_com_nelo_zel_vosmar_basic_KMSystem_c_1IsUSSharedLibraryLoaded(JNIEnv*, jclass) {
  traceMessage("JNI_DEBUG......Entered KMSystem_c_IsUSSharedLibraryLoaded().\n");
  return static_cast<jboolean>(ZELKM_GetMaxCryptoKeySize(1) > kWeakKeySize);
}

jint Java_com_nelo_zel_vosmar_basic_KMSystem_c_1enableFIPSMode(JNIEnv*, jclass, jboolean first,
                                                               jboolean second) {
  auto* info = static_cast<ZELKMCryptoInfo*>(ZELKM_Malloc(sizeof(ZELKMCryptoInfo)));
  if (info == nullptr) return ZELKM_ERR_MEMORY_ALLOCATE;
  info->firstFlag = first;
  info->secondFlag = second;
  leaveAllocated(info);  // The library keeps it for good.
  return ZELKM_SetCryptoInfo(info);
}

jint Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInitDebug(JNIEnv* env, jclass clazz,
                                                               jboolean traceOn, jboolean logOn) {
  traceMessage("JNI_KMSystem::ZELKMInitDebug 0000, entered ...\n");
  if (logOn == JNI_FALSE) {
    return Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInit(env, clazz, traceOn);
  }
  openDebugLog("vsmjdbg.log");
  // GCOVR_EXCL_BR_START: the log is on, so no trace below is skipped.
  traceMessage("JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace\n");
  const int rc = ZELKM_StartTrace("specialDifferentLogTag", "vsmcdbg.log", 8, 4096);
  traceMessage("JNI_KMSystem::ZELKMInitDebug 0020, rc=%d\n", rc);
  // GCOVR_EXCL_BR_STOP
  if (traceOn == JNI_FALSE) return ZELKM_Init();
  return Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInit(env, clazz, JNI_TRUE);
}

jint Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInit(JNIEnv*, jclass, jboolean traceOn) {
  traceMessage("JNI_DEBUG......Entered KMSystem_c_ZELKMInit().\n");
  if (traceOn == JNI_TRUE) {
    const int rc = ZELKM_StartTrace("jnidump", "jnitrace", 0, 6144);
    traceMessage("JNI_DEBUG......ZELKM_StartTrace returns = %d\n", rc);
  }
  return ZELKM_Init();
}

jint Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMCleanAll(JNIEnv*, jclass) {
  traceMessage("JNI_DEBUG......Entered KMSystem_c_ZELKMCleanAll().\n");
  closeDebugLog();
  ZELKM_CleanAll();
  return 1;
}

jint Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ShowLibInfo(JNIEnv*, jclass) {
  return std::printf("KJNI\n============\n%s\n\n", zelkjni_SCCSInfo);
}
