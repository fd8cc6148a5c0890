// Encrypt and decrypt a private key into objects of the legacy package.

#include "bridge/keydb/private_key_conversions.h"
#include "bridge/legacy/legacy_items.h"
#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"

using namespace zel::bridge;

jobject Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1EncryptPrivateKey(
    JNIEnv* env, jobject self, jint length, jbyteArray privateKey, jstring password) {
  return encryptPrivateKey(env, self, kLegacyItems, length, privateKey, password);
}

jobject Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1DecryptPrivateKey(
    JNIEnv* env, jobject self, jint length, jbyteArray encryptedKey, jstring password) {
  return decryptPrivateKey(env, self, kLegacyItems, length, encryptedKey, password);
}
