#include "engine/km/store/crypto_mode.h"

#include <openssl/evp.h>
#include <openssl/provider.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>

#include "engine/cms/crypto_context.h"
#include "engine/cms/keys.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr int kSmallestApprovedRsa = 2048;
/** P-256, P-384 and P-521 by the names that OpenSSL gives them. Other curves share their sizes. */
constexpr std::array<std::string_view, 3> kApprovedCurves = {"prime256v1", "secp384r1",
                                                             "secp521r1"};

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

bool isOnApprovedCurve(sys::ByteView publicKeyInfo) {
  const auto info = cms::decodeDer<cms::PublicKeyPtr>(d2i_X509_PUBKEY, publicKeyInfo);
  const EVP_PKEY* key = info ? X509_PUBKEY_get0(info.get()) : nullptr;
  char curve[64] = "";
  const bool isNamed =
      key != nullptr && EVP_PKEY_get_group_name(key, curve, sizeof curve, nullptr) == 1;
  ERR_clear_error();
  return isNamed &&
         std::find(kApprovedCurves.begin(), kApprovedCurves.end(), curve) != kApprovedCurves.end();
}

}  // namespace

bool approvedMode() { return approved; }

sys::Status setCryptoMode(bool approvedOnly, bool validated) {
  if (validated) {
    sys::Status used = useValidatedModule();
    if (!used) return used;
  }
  approved = approvedOnly || validated;
  cms::permitLegacyAlgorithms(!approved);
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
  if (traits.algorithm == cms::KeyAlgorithm::ec && !isOnApprovedCurve(publicKeyInfo)) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "the curve is not approved");
  }
  return sys::success();
}

}  // namespace zel::km
