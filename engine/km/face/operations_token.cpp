// The key database that a token is lent.

#include <functional>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/operation.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/token/token_store.h"

using namespace zel;
using namespace zel::km;

namespace {

/** ZELKM_ERR_INVALID_DATABASE_TYPE (134) when anything but a key database is to be lent. */
sys::Status requireLendable(int secondaryHandle) {
  sys::Result<OpenStore> secondary = HandleTable::instance().borrow(secondaryHandle);
  if (!secondary) return secondary.failure();
  if (dynamic_cast<KeyDatabase*>(&secondary.value().store()) == nullptr) {
    return sys::fail(ZELKM_ERR_INVALID_DATABASE_TYPE, "only a key database is lent to a token");
  }
  return sys::success();
}

/** The store by its handle, which may be closed before the token asks for it. */
token::StoreOnLoan onLoan(int handle) {
  return [handle](const std::function<sys::Status(Store&)>& body) -> sys::Status {
    sys::Result<OpenStore> lent = HandleTable::instance().borrow(handle);
    if (!lent) return lent.failure();
    return body(lent.value().store());
  };
}

/** ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER (135) when something else than a token is lent to. */
template <typename Body>
int onToken(const char* operation, int handle, Body&& body) {
  return onStore(operation, handle, [&](Store& store) -> sys::Status {
    auto* tokenStore = dynamic_cast<token::TokenStore*>(&store);
    if (tokenStore == nullptr) {
      return sys::fail(ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER, "only a token takes a secondary");
    }
    return body(*tokenStore);
  });
}

}  // namespace

int ZELKM_SetSecondaryKeyDb(int tokenHandle, int secondaryHandle) {
  // Looked at before the token is taken on loan, so that nobody waits for two stores at once here.
  const int lendable = answering(__func__, [&] { return requireLendable(secondaryHandle); });
  if (lendable != ZELKM_OK) return lendable;
  return onToken(__func__, tokenHandle, [&](token::TokenStore& store) -> sys::Status {
    store.setSecondary(onLoan(secondaryHandle));
    return sys::success();
  });
}

int ZELKM_UnsetSecondaryKeyDb(int tokenHandle) {
  return onToken(__func__, tokenHandle,
                 [](token::TokenStore& store) { return store.unsetSecondary(); });
}
