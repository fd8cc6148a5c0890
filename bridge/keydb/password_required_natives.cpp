// Ask whether a database is protected by a password, without opening it.

#include <cstring>

#include "bridge/frame/gate.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "com_nelo_zel_vosmar_basic_WEBDBKeyDatabase.h"

using namespace zel::bridge;

namespace {

jboolean isPasswordRequired(JNIEnv* env, jobject self, jstring keyDbFileName, uint32_t type) {
  if (lacksAny(env, self, keyDbFileName)) return JNI_FALSE;
  HeldStrings held(env);
  // Unlike everywhere else, the trace spells "Filename".
  const char* file = held.take(keyDbFileName, TextTrace{"JNI_DEBUG......cKeyDbFilename = %s\n"});
  KeyDbLocator locator;
  std::memset(&locator, 0, KEYDB_LOCATOR_QUERY_EXTENT);
  locator.type = type;
  locator.fileName = file;
  unsigned char required = 0;
  const int rc = ZELKM_IsPasswordRequired(&locator, &required);
  held.releaseAll();
  return static_cast<jboolean>(rc == ZELKM_OK && required == 1);
}

}  // namespace

jboolean Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IsPasswordRequired(
    JNIEnv* env, jobject self, jstring keyDbFileName) {
  return isPasswordRequired(env, self, keyDbFileName, KEYDB_LOCATOR_KEY_DATABASE);
}

jboolean Java_com_nelo_zel_vosmar_basic_WEBDBKeyDatabase_c_1IsPasswordRequired(
    JNIEnv* env, jobject self, jstring keyDbFileName) {
  return isPasswordRequired(env, self, keyDbFileName, KEYDB_LOCATOR_WEBDB);
}
