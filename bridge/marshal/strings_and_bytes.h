#ifndef BRIDGE_MARSHAL_STRINGS_AND_BYTES_H_
#define BRIDGE_MARSHAL_STRINGS_AND_BYTES_H_

#include <jni.h>

#include <cstdint>

#include "bridge/marshal/item_classes.h"

/**
 * @file
 * Text and bytes across the Java Native Interface.
 *
 * What holds for every converter of this folder: none throws, none reports; the first step that
 * fails yields null and leaves a pending Java exception to the caller. Records are read and never
 * freed; what takes one over and frees it is called handOver or deliver. Local references live
 * until the native returns.
 */

namespace zel::bridge {

/** newJavaString is the text as a Java string, null for a null text or environment. */
jstring newJavaString(JNIEnv* env, const char* text);

/** newJavaByteArray is a copy of the bytes; none of them gives an empty array. */
jbyteArray newJavaByteArray(JNIEnv* env, const unsigned char* bytes, uint32_t length);

/**
 * JavaByteArrayToUChar copies the array into a new buffer, to be freed with free or wipeAndFree.
 * The buffer is null when the array is, when nothing is expected, and when the array's length is
 * not the expected one.
 */
void JavaByteArrayToUChar(JNIEnv* env, jbyteArray byteArray, jint expectedLength,
                          unsigned char** out);

/** wipeAndFree overwrites a buffer of JavaByteArrayToUChar before it frees it; null is ignored. */
void wipeAndFree(unsigned char* buffer, jint length);

/**
 * bytesShown is the precision that lets "%.*s" print a buffer as text up to its first zero byte,
 * but never past its end.
 */
int bytesShown(const unsigned char* buffer, jint length);

/** bytesAsText is the buffer for that "%.*s", "null" when it is null. */
const char* bytesAsText(const unsigned char* buffer);

/** newBERObject wraps the bytes; none of them gives null, not an empty object. */
jobject newBERObject(JNIEnv* env, const ItemClasses& classes, const unsigned char* bytes,
                     uint32_t length);

/** nullObjectConverter stands where a certificate's extra object would be converted. */
jobject nullObjectConverter(JNIEnv* env, const void* pointer);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_STRINGS_AND_BYTES_H_
