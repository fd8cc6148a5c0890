// The certificates of a PKCS #7 file. No key database is opened.

#include <cstring>

#include "bridge/frame/gate.h"
#include "bridge/keydb/certificate_file.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/certificate_items.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

// The library is asked even when the file could not be read, and then says what it thinks of a
// null buffer; the code of the reading is lost.
jobjectArray Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1ExtractCertFromPKCS7Data(
    JNIEnv* env, jobject self, jstring certFileName, jboolean isBase64) {
  if (lacksAny(env, self)) return nullptr;
  HeldStrings held(env);
  const char* certFile = held.take(certFileName, kTraceCertFileName);
  unsigned char* buffer = nullptr;
  uint32_t length = 0;
  readCertFileKeepingLength(certFile, isBase64, &buffer, &length);
  held.releaseAll();

  ZELKMCertItemList* certList = nullptr;
  const int rc = ZELKM_ExtractCertListFromPKCS7Data(buffer, length, &certList);
  jobjectArray items = nullptr;
  if (rc == ZELKM_OK) {
    items = newJavaCertificateItemArray(env, kBasicItems, certList);
    if (certList != nullptr) ZELKM_FreeCertItemList(certList);
  }
  if (buffer != nullptr) {
    explicit_bzero(buffer, length);
    ZELKM_Free(buffer);
  }
  return items;
}
