#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

sys::Failure cryptoFailure(int code, const char* attempt) {
  const char* reason = ERR_reason_error_string(ERR_peek_last_error());
  ERR_clear_error();
  return sys::fail(code, "cannot %s: %s", attempt, reason == nullptr ? "malformed" : reason);
}

}  // namespace zel::cms
