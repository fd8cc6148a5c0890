#ifndef BRIDGE_MARSHAL_CERTIFICATE_ITEMS_H_
#define BRIDGE_MARSHAL_CERTIFICATE_ITEMS_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/item_classes.h"

namespace zel::bridge {

/**
 * newJavaCertificateItem makes a CertificateItem of the record. A record without a label carries
 * only the certificate's bytes, and so does its item.
 */
jobject newJavaCertificateItem(JNIEnv* env, const ItemClasses& classes, const ZELKMCertItem* cert);

/** newJavaCertificateItemArray makes a CertificateItem[] of the list, in its order. */
jobjectArray newJavaCertificateItemArray(JNIEnv* env, const ItemClasses& classes,
                                         const ZELKMCertItemList* list);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_CERTIFICATE_ITEMS_H_
