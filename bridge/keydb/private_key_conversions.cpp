#include "bridge/keydb/private_key_conversions.h"

#include <cstring>

#include "bridge/frame/gate.h"
#include "bridge/frame/stated_leaks.h"
#include "bridge/frame/trace.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/private_key_items.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/trace_texts.h"

namespace zel::bridge {

namespace {

/** The library's record is smaller; this much has always been set aside for it. */
constexpr std::size_t kEPKIItemRoom = 64;
static_assert(sizeof(ZELKMEPKIItem) <= kEPKIItemRoom);

}  // namespace

// The early ways out leave the password held, and the copy of the key is wiped but not freed.
jobject encryptPrivateKey(JNIEnv* env, jobject self, const ItemClasses& classes, jint length,
                          jbyteArray privateKey, jstring password) {
  if (lacksAny(env, self)) return nullptr;
  HeldStrings held(env);
  const char* pwd = held.take(password, kTraceKeyDbPwd);
  if (length < 1) {
    held.leaveHeld();
    return nullptr;
  }
  unsigned char* keyBytes = nullptr;
  JavaByteArrayToUChar(env, privateKey, length, &keyBytes);
  if (keyBytes == nullptr) {
    held.leaveHeld();
    return nullptr;
  }

  ZELKMEPKIItem* epki = nullptr;
  const int rc =
      ZELKM_GetEPKIItemFromPrivateKey(keyBytes, static_cast<uint32_t>(length), pwd, &epki);
  traceMessage("JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns %d\n", rc);
  jobject item = nullptr;
  if (rc == ZELKM_OK) {
    item = newJavaEPKIItem(env, classes, epki);
    ZELKM_FreeEPKIItem(epki);
  }
  explicit_bzero(keyBytes, static_cast<std::size_t>(length));
  leaveAllocated(keyBytes);
  held.releaseAll();
  return item;
}

// The early ways out leave the password held. The copy goes with the record that it is put into.
jobject decryptPrivateKey(JNIEnv* env, jobject self, const ItemClasses& classes, jint length,
                          jbyteArray encryptedKey, jstring password) {
  if (lacksAny(env, self)) return nullptr;
  HeldStrings held(env);
  const char* pwd = held.take(password, kTraceKeyDbPwd);
  if (length < 1) {
    held.leaveHeld();
    return nullptr;
  }
  unsigned char* encryptedBytes = nullptr;
  JavaByteArrayToUChar(env, encryptedKey, length, &encryptedBytes);
  auto* epki = static_cast<ZELKMEPKIItem*>(ZELKM_Malloc(kEPKIItemRoom));
  if (epki == nullptr) {
    wipeAndFree(encryptedBytes, length);
    held.leaveHeld();
    return nullptr;
  }
  ZELKM_InitEPKIItem(&epki);
  epki->berData = encryptedBytes;
  epki->berDataLength = static_cast<uint32_t>(length);

  ZELKMPrivKeyInfoItem* privKeyInfo = nullptr;
  const int rc = ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki, pwd, &privKeyInfo);
  traceMessage("JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns %d\n", rc);
  jobject item = nullptr;
  if (rc == ZELKM_OK) {
    item = newJavaPrivKeyInfoItem(env, classes, privKeyInfo);
    ZELKM_FreePrivKeyInfoItem(privKeyInfo);
  }
  held.releaseAll();
  ZELKM_FreeEPKIItem(epki);
  return item;
}

}  // namespace zel::bridge
