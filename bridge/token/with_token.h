#ifndef BRIDGE_TOKEN_WITH_TOKEN_H_
#define BRIDGE_TOKEN_WITH_TOKEN_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"

namespace zel::bridge {

inline constexpr TextTrace kTraceModuleName{"JNI_DEBUG......cCryptographicModuleName = %s\n"};
inline constexpr TextTrace kTraceTokenLabel{"JNI_DEBUG......cCryptographicTokenLabel = %s\n"};

/** Token names a PKCS #11 token and unlocks it. Its strings are borrowed. */
struct Token {
  const char* moduleName;
  const char* label;
  const char* password;  // null when none is given
};

/** takeToken acquires and traces the strings that name a token, before a native's own strings. */
Token takeToken(HeldStrings& held, jstring moduleName, jstring tokenLabel, jstring tokenPassword);

/** openToken opens the token alone. The handle is the library's after a failure, too. */
int openToken(const Token& token, int* handle);

/**
 * withToken opens the token, runs the operation on its handle and closes it, whatever the operation
 * answered. The result is the open's code when that failed, else the operation's.
 *
 *     const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
 *     const char* label = held.take(keyLabel, kTraceKeyLabel);
 *     int rc = withToken(token, [&](int handle) { return ZELKM_DeleteKey(handle, label); });
 */
template <typename Operation>
int withToken(const Token& token, Operation&& operation) {
  int handle = 0;
  const int opened = openToken(token, &handle);
  if (opened != ZELKM_OK) return opened;
  const int rc = operation(handle);
  ZELKM_CloseKeyDb(handle);
  return rc;
}

}  // namespace zel::bridge

#endif  // BRIDGE_TOKEN_WITH_TOKEN_H_
