// The natives that the legacy package has in common with package basic. Each hands its arguments on
// as they are, the legacy object among them, so that callbacks are looked up in the legacy class.

#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "com_nelo_zel_vosmar_basic_KMSystem.h"

jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1CreateNewKeyDb(JNIEnv* env, jobject self,
                                                                         jstring keyDbFileName,
                                                                         jstring keyDbPwd,
                                                                         jlong expireTime) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewKeyDb(env, self, keyDbFileName,
                                                                         keyDbPwd, expireTime);
}

jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1CreateNewKeyDbFIPS(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jlong expireTime) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1CreateNewKeyDbFIPS(
      env, self, keyDbFileName, keyDbPwd, expireTime);
}

jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1OpenKeyDb(JNIEnv* env, jobject self,
                                                                    jstring keyDbFileName,
                                                                    jstring keyDbPwd) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1OpenKeyDb(env, self, keyDbFileName,
                                                                    keyDbPwd);
}

jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1BuildKeyLabelList(JNIEnv* env,
                                                                            jobject self,
                                                                            jstring keyDbFileName,
                                                                            jstring keyDbPwd) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1BuildKeyLabelList(
      env, self, keyDbFileName, keyDbPwd);
}

jboolean Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1ChangeKeyDbPwd(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring oldPwd, jstring newPwd,
    jlong expireTime) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ChangeKeyDbPwd(
      env, self, keyDbFileName, oldPwd, newPwd, expireTime);
}

jboolean Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1StashKeyDbPwd(JNIEnv* env,
                                                                            jobject self,
                                                                            jstring keyDbFileName,
                                                                            jstring keyDbPwd) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1StashKeyDbPwd(env, self, keyDbFileName,
                                                                        keyDbPwd);
}

jboolean Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1IsPrivateKeyPresent(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IsPrivateKeyPresent(
      env, self, keyDbFileName, keyDbPwd, keyLabel);
}

jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1InsertKey(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jint firstLength, jbyteArray firstData, jint secondLength, jbyteArray secondData,
    jboolean firstFlag, jboolean secondFlag) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1InsertKey(
      env, self, keyDbFileName, keyDbPwd, keyLabel, firstLength, firstData, secondLength,
      secondData, firstFlag, secondFlag);
}

jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1DeleteKeyByLabel(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring keyLabel,
    jboolean isRequestKey) {
  return Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1DeleteKeyByLabel(
      env, self, keyDbFileName, keyDbPwd, keyLabel, isRequestKey);
}

// The basic native takes a class there, and uses it for nothing.
jint Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1CMSInit(JNIEnv* env, jobject self,
                                                                  jboolean traceOn) {
  return Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInit(env, static_cast<jclass>(self),
                                                              traceOn);
}
