#ifndef BRIDGE_MARSHAL_DISTINGUISHED_NAMES_H_
#define BRIDGE_MARSHAL_DISTINGUISHED_NAMES_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/item_classes.h"

namespace zel::bridge {

/**
 * JavaDNItem2CDN makes a record of the seven named attributes of a Java DNItem, null on failure.
 * Of the Java class only its fields are used, so any package's DNItem will do. The caller releases
 * the record with ZELKM_FreeDNItem.
 */
void JavaDNItem2CDN(JNIEnv* env, jobject dnItem, ZELKMDNItem** out);

/** newJavaDNItem makes a DNItem of the record, its optional fields included. */
jobject newJavaDNItem(JNIEnv* env, const ItemClasses& classes, const ZELKMDNItem* dn);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_DISTINGUISHED_NAMES_H_
