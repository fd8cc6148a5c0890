#ifndef BRIDGE_MARSHAL_TOKEN_LABELS_H_
#define BRIDGE_MARSHAL_TOKEN_LABELS_H_

#include <jni.h>

namespace zel::bridge {

/**
 * deliverTokenLabels asks the library for the tokens of a module and hands each label to a static
 * method of the class. An empty module name, not a null one, asks for the certificate stores.
 */
int deliverTokenLabels(JNIEnv* env, jclass type, jmethodID callback, const char* moduleName);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_TOKEN_LABELS_H_
