#ifndef BRIDGE_FRAME_GATE_H_
#define BRIDGE_FRAME_GATE_H_

#include <jni.h>

/**
 * @file
 * The gate of a native: what it tests before it acquires anything. Nothing is touched while the
 * environment is null.
 *
 *     if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
 */

namespace zel::bridge {

/** lacksAny tells whether any of what a native cannot do without is null. */
template <typename... Required>
bool lacksAny(const Required*... required) {
  return ((required == nullptr) || ...);
}

/** classOf is the object's class, null when the environment, the object or the class is. */
inline jclass classOf(JNIEnv* env, jobject self) {
  return lacksAny(env, self) ? nullptr : env->GetObjectClass(self);
}

/** lacksClass tells whether there is no class: a required test, though few natives use it. */
inline bool lacksClass(JNIEnv* env, jobject self) { return classOf(env, self) == nullptr; }

/** isSignatureAlgorithm tests the selector of the natives named "Sig" and "SigExt". */
inline bool isSignatureAlgorithm(jint selector) { return selector == 1 || selector == 2; }

}  // namespace zel::bridge

#endif  // BRIDGE_FRAME_GATE_H_
