#ifndef BRIDGE_MARSHAL_REQUEST_ITEMS_H_
#define BRIDGE_MARSHAL_REQUEST_ITEMS_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"

/**
 * @file
 * Certificate requests exist in package com.nelo.zel.vosmar.basic alone, so these converters take
 * no table of classes.
 */

namespace zel::bridge {

/** getJavaCertReqItem makes a CertificateRequestItem of the record. */
jobject getJavaCertReqItem(JNIEnv* env, const ZELKMCertReqItem* req);

/** newJavaReqKeyItem makes a KeyItem that carries a request instead of certificates. */
jobject newJavaReqKeyItem(JNIEnv* env, const ZELKMReqKeyItem* item);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_REQUEST_ITEMS_H_
