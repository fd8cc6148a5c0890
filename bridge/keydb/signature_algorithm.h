#ifndef BRIDGE_KEYDB_SIGNATURE_ALGORITHM_H_
#define BRIDGE_KEYDB_SIGNATURE_ALGORITHM_H_

#include <jni.h>

namespace zel::bridge {

/** isSignatureAlgorithm tests the selector of the natives named "Sig" and "SigExt". */
inline bool isSignatureAlgorithm(jint selector) { return selector == 1 || selector == 2; }

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_SIGNATURE_ALGORITHM_H_
