#ifndef BRIDGE_TOKEN_SECONDARY_KEY_DB_H_
#define BRIDGE_TOKEN_SECONDARY_KEY_DB_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/token/with_token.h"

namespace zel::bridge {

/**
 * SecondaryKeyDb is the key database file that the library may consult beside a token. Without a
 * file name there is none, and the password is not used.
 */
struct SecondaryKeyDb {
  const char* fileName;
  const char* password;
};

/** takeSecondaryKeyDb acquires and traces the two strings, after those of the token. */
SecondaryKeyDb takeSecondaryKeyDb(HeldStrings& held, jstring fileName, jstring password);

/** TokenHandles are an open token and the secondary key database lent to it, 0 for none. */
struct TokenHandles {
  int token;
  int secondary;
};

/** openTokenKeyDb opens both, or after a failure neither, and answers the first failure's code. */
int openTokenKeyDb(const Token& token, const SecondaryKeyDb& secondary, TokenHandles* handles);

/** closeTokenKeyDb takes the secondary key database back before it closes it and the token. */
void closeTokenKeyDb(const TokenHandles& handles);

/** withTokenKeyDb is withToken with a secondary key database; the handle is the token's. */
template <typename Operation>
int withTokenKeyDb(const Token& token, const SecondaryKeyDb& secondary, Operation&& operation) {
  TokenHandles handles{};
  const int opened = openTokenKeyDb(token, secondary, &handles);
  if (opened != ZELKM_OK) return opened;
  const int rc = operation(handles.token);
  closeTokenKeyDb(handles);
  return rc;
}

}  // namespace zel::bridge

#endif  // BRIDGE_TOKEN_SECONDARY_KEY_DB_H_
