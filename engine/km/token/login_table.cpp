#include "engine/km/token/login_table.h"

#include "engine/sys/trace.h"

namespace zel::km::token {

sys::Status LoginTable::join(CK_SLOT_ID slot, Pin pin) const {
  auto accepted = accepted_.find(slot);
  if (accepted == accepted_.end()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED,
                     "somebody else in this process is logged in to the token");
  }
  if (!accepted->second.isOf(pin)) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_PASSWORD,
                     "the token is in use with another PIN than the one given");
  }
  return sys::success();
}

}  // namespace zel::km::token
