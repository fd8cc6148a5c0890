// Keys between a key database and PKCS #12 files.

#include "bridge/frame/gate.h"
#include "bridge/keydb/export_labels.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

namespace {

constexpr TextTrace kTracePfxFileName{"JNI_DEBUG......cPfxFileName = %s\n"};
constexpr TextTrace kTracePfxPwd{"JNI_DEBUG......cPfxPwd = %s\n"};

/** The one export type that the library is asked for. */
constexpr int kExportType = 1;

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExportToPFXFile(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring pfxFileName,
    jstring pfxPwd, jobjectArray labels) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* pfxFile = held.take(pfxFileName, kTracePfxFileName);
  const char* pfxFilePwd = held.take(pfxPwd, kTracePfxPwd);
  if (labels == nullptr) {
    held.leaveHeld();
    return ZELKM_ERR_PARAMETER;
  }

  ZELKMLabelList* exportLabels = newExportLabels(env, labels);
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    return ZELKM_ExportKeys(handle, kExportType, pfxFile, pfxFilePwd, exportLabels);
  });
  ZELKM_FreeLabelList(exportLabels);
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ImportFromPFXFile(JNIEnv* env, jobject self,
                                                                        jstring keyDbFileName,
                                                                        jstring keyDbPwd,
                                                                        jstring pfxFileName,
                                                                        jstring pfxPwd) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* pfxFile = held.take(pfxFileName, kTracePfxFileName);
  const char* pfxFilePwd = held.take(pfxPwd, kTracePfxPwd);
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    return ZELKM_ImportKeysFromPFXFile(handle, pfxFile, pfxFilePwd);
  });
  held.releaseAll();
  return rc;
}
