// Change the entries of a key database: insert, delete, make default, trust.

#include "bridge/frame/gate.h"
#include "bridge/keydb/entries_by_label.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/block_copies.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

namespace {

/** insertUnderLabel is the frame of the two insert natives: no gate, and two blocks of bytes. */
template <typename Insert>
jint insertUnderLabel(JNIEnv* env, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
                      Block first, Block second, Insert&& insert) {
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const BlockCopies blocks = copyBlocks(env, first, second);
  const int rc = withKeyDb(file, pwd, [&](int handle) {
    return insert(handle, label, blocks.first.length, blocks.first.bytes, blocks.second.length,
                  blocks.second.bytes);
  });
  wipeAndFree(blocks);
  held.releaseAll();
  return rc;
}

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1InsertKey(
    JNIEnv* env, jobject /*self*/, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jint certLength, jbyteArray certData, jint keyLength, jbyteArray keyData, jboolean firstFlag,
    jboolean secondFlag) {
  return insertUnderLabel(
      env, keyDbFileName, keyDbPwd, keyLabel, {certLength, certData}, {keyLength, keyData},
      [&](int handle, const char* label, uint32_t certSize, const unsigned char* certBytes,
          uint32_t keySize, const unsigned char* keyBytes) {
        return ZELKM_InsertKey(handle, label, certSize, certBytes, keySize, keyBytes, firstFlag,
                               secondFlag);
      });
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1InsertReqKey(
    JNIEnv* env, jobject /*self*/, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jint firstLength, jbyteArray firstData, jint secondLength, jbyteArray secondData) {
  return insertUnderLabel(env, keyDbFileName, keyDbPwd, keyLabel, {firstLength, firstData},
                          {secondLength, secondData}, ZELKM_InsertReqKey);
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1DeleteKeyByLabel(JNIEnv* env, jobject self,
                                                                       jstring keyDbFileName,
                                                                       jstring keyDbPwd,
                                                                       jstring keyLabel,
                                                                       jboolean isRequestKey) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const int rc = withKeyDb(
      file, pwd, [&](int handle) { return deleteKeyByLabel(handle, label, isRequestKey); });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1SetDefaultKey(JNIEnv* env, jobject self,
                                                                    jstring keyDbFileName,
                                                                    jstring keyDbPwd,
                                                                    jstring keyLabel) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const int rc =
      withKeyDb(file, pwd, [&](int handle) { return ZELKM_SetDefaultKeyByLabel(handle, label); });
  held.releaseAll();
  return rc;
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1SetKeyTrust(JNIEnv* env, jobject self,
                                                                  jstring keyDbFileName,
                                                                  jstring keyDbPwd,
                                                                  jstring keyLabel,
                                                                  jboolean trusted) {
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  HeldStrings held(env);
  const char* file = held.take(keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(keyDbPwd, kTraceKeyDbPwd);
  const char* label = held.take(keyLabel, kTraceKeyLabel);
  const int rc = withKeyDb(
      file, pwd, [&](int handle) { return ZELKM_SetTrustStatus(handle, label, trusted); });
  held.releaseAll();
  return rc;
}
