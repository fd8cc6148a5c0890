#ifndef BRIDGE_CERTSTORE_WITH_STORE_H_
#define BRIDGE_CERTSTORE_WITH_STORE_H_

#include <jni.h>

#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"

namespace zel::bridge {

/** Store names a certificate store and unlocks it. Either string may be null. */
struct Store {
  const char* cspName;
  const char* password;
};

/** takeStore acquires and traces the strings that name a store, before a native's own strings. */
Store takeStore(HeldStrings& held, jstring cspName, jstring password);

/** takeStoreTracedAsToken is the same for the natives that speak of a token's password. */
Store takeStoreTracedAsToken(HeldStrings& held, jstring cspName, jstring password);

/** openStore opens the store. The handle is the library's after a failure, too. */
int openStore(const Store& store, int* handle);

/**
 * withStore opens the store, runs the operation on its handle and closes it, whatever the operation
 * answered. The result is the open's code when that failed, else the operation's.
 *
 *     const Store store = takeStore(held, cspName, password);
 *     const char* label = held.take(keyLabel, kTraceKeyLabel);
 *     int rc = withStore(store, [&](int handle) { return ZELKM_DeleteKey(handle, label); });
 */
template <typename Operation>
int withStore(const Store& store, Operation&& operation) {
  int handle = 0;
  const int opened = openStore(store, &handle);
  if (opened != ZELKM_OK) return opened;
  const int rc = operation(handle);
  ZELKM_CloseKeyDb(handle);
  return rc;
}

}  // namespace zel::bridge

#endif  // BRIDGE_CERTSTORE_WITH_STORE_H_
