#ifndef BRIDGE_KEYDB_WITH_KEY_DB_H_
#define BRIDGE_KEYDB_WITH_KEY_DB_H_

#include "bridge/kmlib/zelkm.h"

namespace zel::bridge {

/**
 * withKeyDb opens the key database, runs the operation on its handle and closes it, whatever the
 * operation answered. The result is the open's code when that failed, else the operation's.
 *
 *     int rc = withKeyDb(file, pwd, [&](int handle) {
 *       return ZELKM_SetDefaultKeyByLabel(handle, label);
 *     });
 */
template <typename Operation>
int withKeyDb(const char* fileName, const char* password, Operation&& operation) {
  int handle = 0;
  const int opened = ZELKM_OpenKeyDb(fileName, password, &handle);
  if (opened != ZELKM_OK) return opened;
  const int rc = operation(handle);
  ZELKM_CloseKeyDb(handle);
  return rc;
}

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_WITH_KEY_DB_H_
