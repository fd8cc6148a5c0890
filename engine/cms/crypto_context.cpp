#include "engine/cms/crypto_context.h"

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/provider.h>

#include <atomic>

#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

std::atomic<bool> legacyPermitted = true;

}  // namespace

void permitLegacyAlgorithms(bool permitted) { legacyPermitted = permitted; }

OSSL_LIB_CTX* legacyCryptoContext() {
  if (!legacyPermitted) return nullptr;
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
