// The failures of OpenSSL (openssl_ptr.h): its reason traced, its queue of errors emptied.

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** Takes the errors of this thread; whether one of them is that memory is exhausted. */
bool takeErrors() {
  bool isOutOfMemory = false;
  while (const unsigned long error = ERR_get_error()) {
    isOutOfMemory = isOutOfMemory || ERR_GET_REASON(error) == ERR_R_MALLOC_FAILURE;
  }
  return isOutOfMemory;
}

}  // namespace

sys::Failure cryptoFailure(int code, const char* attempt) {
  const char* reason = ERR_reason_error_string(ERR_peek_last_error());
  // Whatever it was done for, it says nothing about the bytes, the password or the algorithm.
  if (takeErrors()) code = ZELKM_ERR_MEMORY_ALLOCATE;
  return sys::fail(code, "cannot %s: %s", attempt, reason == nullptr ? "malformed" : reason);
}

}  // namespace zel::cms
