#ifndef BRIDGE_KEYDB_EXPORT_LABELS_H_
#define BRIDGE_KEYDB_EXPORT_LABELS_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"

namespace zel::bridge {

/**
 * newExportLabels makes the list of labels that an export is given, to be released with
 * ZELKM_FreeLabelList. Of two or more labels the first is not in the list: Java programs have been
 * written to that, so it stays.
 */
ZELKMLabelList* newExportLabels(JNIEnv* env, jobjectArray labels);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_EXPORT_LABELS_H_
