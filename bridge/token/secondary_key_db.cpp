#include "bridge/token/secondary_key_db.h"

#include <cstring>

namespace zel::bridge {

namespace {

constexpr TextTrace kTraceFileName{"JNI_DEBUG......cSecondaryKeyDbFileName = %s\n"};
constexpr FixedTrace kTraceNoFileName{"JNI_DEBUG......cSecondaryKeyDbFileName = NULL\n"};
constexpr TextTrace kTracePassword{"JNI_DEBUG......cSecondaryKeyDbFilePassword = %s\n"};
constexpr FixedTrace kTraceNoPassword{"JNI_DEBUG......cSecondaryKeyDbFilePassword = NULL\n"};

int openSecondary(const SecondaryKeyDb& secondary, int* handle) {
  KeyDbLocator locator;
  std::memset(&locator, 0, KEYDB_LOCATOR_OPEN_EXTENT);
  locator.type = KEYDB_LOCATOR_KEY_DATABASE;
  locator.fileName = secondary.fileName;
  locator.password = secondary.password;
  return ZELKM_OpenKeyDbX(&locator, handle);
}

void closeAndForget(int* handle) {
  ZELKM_CloseKeyDb(*handle);
  *handle = 0;
}

}  // namespace

SecondaryKeyDb takeSecondaryKeyDb(HeldStrings& held, jstring fileName, jstring password) {
  const char* file = held.takeIfGiven(fileName, kTraceFileName, kTraceNoFileName);
  const char* pwd = held.takeIfGiven(password, kTracePassword, kTraceNoPassword);
  return {file, pwd};
}

int openTokenKeyDb(const Token& token, const SecondaryKeyDb& secondary, TokenHandles* handles) {
  *handles = {};
  int rc = openToken(token, &handles->token);
  if (rc != ZELKM_OK) return rc;
  if (secondary.fileName == nullptr) return ZELKM_OK;

  rc = openSecondary(secondary, &handles->secondary);
  if (rc != ZELKM_OK) {
    closeAndForget(&handles->token);
    return rc;
  }
  rc = ZELKM_SetSecondaryKeyDb(handles->token, handles->secondary);
  if (rc != ZELKM_OK) {
    closeAndForget(&handles->secondary);
    closeAndForget(&handles->token);
    return rc;
  }
  return ZELKM_OK;
}

void closeTokenKeyDb(const TokenHandles& handles) {
  if (handles.secondary != 0) {
    ZELKM_UnsetSecondaryKeyDb(handles.token);
    ZELKM_CloseKeyDb(handles.secondary);
  }
  if (handles.token != 0) ZELKM_CloseKeyDb(handles.token);
}

}  // namespace zel::bridge
