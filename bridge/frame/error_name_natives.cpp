// The native of CMSKeyDatabaseException: hands the names of the result codes to Java.

#include <iterator>

#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/kmlib/zelkm.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabaseException.h"

using namespace zel::bridge;

namespace {

struct ErrorName {
  jint code;
  const char* name;
};

#define ZELKM_ERROR_NAME(code, name) {code, #name},
constexpr ErrorName kErrorNames[] = {ZELKM_ERROR_CODES(ZELKM_ERROR_NAME)};
#undef ZELKM_ERROR_NAME

static_assert(std::size(kErrorNames) == 151, "every result code has its name");

}  // namespace

jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabaseException_c_1BuildErrCodeNameTable(
    JNIEnv* env, jclass clazz) {
  traceMessage("JNI_DEBUG......c_BuildErrCodeNameTable......\n");
  if (lacksAny(env, clazz)) return JNI_FALSE;
  jmethodID addCMSErrCode =
      env->GetStaticMethodID(clazz, "addCMSErrCode", "(ILjava/lang/String;)Z");
  if (addCMSErrCode == nullptr) return JNI_FALSE;
  traceMessage("JNI_DEBUG......jmethodId is found.\n");

  jboolean accepted = JNI_FALSE;
  for (const ErrorName& error : kErrorNames) {
    traceMessage("JNI_DEBUG......errKeyIndex = %d\n", error.code);
    traceMessage("JNI_DEBUG......errKey = %s\n", error.name);
    accepted = env->CallStaticBooleanMethod(clazz, addCMSErrCode, error.code,
                                            env->NewStringUTF(error.name));
    if (accepted == JNI_FALSE) break;
  }
  return accepted;
}
