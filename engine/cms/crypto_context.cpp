#include "engine/cms/crypto_context.h"

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/provider.h>

#include "engine/sys/trace.h"

namespace zel::cms {

OSSL_LIB_CTX* legacyCryptoContext() {
  static OSSL_LIB_CTX* const context = [] {
    OSSL_LIB_CTX* fresh = OSSL_LIB_CTX_new();
    if (fresh == nullptr) return fresh;
    OSSL_PROVIDER_load(fresh, "default");
    if (OSSL_PROVIDER_load(fresh, "legacy") == nullptr) {
      sys::traceLine("OpenSSL's legacy provider is not installed: RC2 and DES are not known");
      ERR_clear_error();
    }
    return fresh;
  }();
  return context;
}

}  // namespace zel::cms
