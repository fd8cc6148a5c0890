#include "engine/km/crypto_mode.h"

#include <openssl/evp.h>
#include <openssl/provider.h>

#include <atomic>

#include "engine/cms/keys.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr int kSmallestApprovedRsa = 2048;

std::atomic<bool> approved = false;

sys::Status useValidatedModule() {
  // The base provider has the encoders that the validated module lacks. Both stay for good.
  if (OSSL_PROVIDER_load(nullptr, "fips") == nullptr ||
      OSSL_PROVIDER_load(nullptr, "base") == nullptr ||
      EVP_default_properties_enable_fips(nullptr, 1) != 1) {
    return cms::cryptoFailure(ZELKM_ERR_UNSUPPORTED_OPTION,
                              "load OpenSSL's validated fips provider");
  }
  return sys::success();
}

}  // namespace

bool approvedMode() { return approved; }

sys::Status setCryptoMode(bool approvedOnly, bool validated) {
  if (validated) {
    sys::Status used = useValidatedModule();
    if (!used) return used;
  }
  approved = approvedOnly || validated;
  return sys::success();
}

sys::Status checkApproved(sys::ByteView publicKeyInfo) {
  sys::Result<cms::KeyTraits> key = cms::describePublicKey(publicKeyInfo);
  if (!key) return key.failure();
  const cms::KeyTraits& traits = key.value();
  if (traits.algorithm != cms::KeyAlgorithm::rsa && traits.algorithm != cms::KeyAlgorithm::ec) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "the key's algorithm is not approved");
  }
  if (traits.algorithm == cms::KeyAlgorithm::rsa && traits.size < kSmallestApprovedRsa) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE, "%d bits are not approved",
                     traits.size);
  }
  if (traits.algorithm == cms::KeyAlgorithm::ec && traits.size != 256 && traits.size != 384 &&
      traits.size != 521) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "the curve is not approved");
  }
  return sys::success();
}

}  // namespace zel::km
