#include "bridge/token/with_token.h"

#include <cstring>

#include "bridge/marshal/trace_texts.h"

namespace zel::bridge {

Token takeToken(HeldStrings& held, jstring moduleName, jstring tokenLabel, jstring tokenPassword) {
  const char* module = held.take(moduleName, kTraceModuleName);
  const char* label = held.take(tokenLabel, kTraceTokenLabel);
  const char* password =
      held.takeIfGiven(tokenPassword, kTraceTokenPassword,
                       FixedTrace{"JNI_DEBUG......cCryptographicTokenPassword = NULL\n"});
  return {module, label, password};
}

int openToken(const Token& token, int* handle) {
  KeyDbLocator locator;
  std::memset(&locator, 0, KEYDB_LOCATOR_OPEN_EXTENT);
  locator.type = KEYDB_LOCATOR_TOKEN;
  locator.moduleName = token.moduleName;
  locator.tokenLabel = token.label;
  locator.password = token.password;
  return ZELKM_OpenKeyDbX(&locator, handle);
}

}  // namespace zel::bridge
