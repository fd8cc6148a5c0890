#include "engine/sys/proof_of_secret.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <array>
#include <span>

#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

constexpr std::size_t kKeyLength = 32;
constexpr std::size_t kCodeLength = 32;  // of SHA-256

bool authenticate(ByteView key, ByteView secret, std::span<std::uint8_t, kCodeLength> code) {
  return HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), secret.data(), secret.size(),
              code.data(), nullptr) != nullptr;
}

}  // namespace

ProofOfSecret::ProofOfSecret() : block_(kKeyLength + kCodeLength) {}

ByteView ProofOfSecret::key() const { return block_.bytes().first(kKeyLength); }

ByteView ProofOfSecret::code() const { return block_.bytes().subspan(kKeyLength); }

Result<ProofOfSecret> ProofOfSecret::of(ByteView secret) {
  ProofOfSecret proof;
  const std::span<std::uint8_t> block = proof.block_.bytes();
  if (RAND_priv_bytes(block.data(), kKeyLength) != 1 ||
      !authenticate(proof.key(), secret, block.last<kCodeLength>())) {
    ERR_clear_error();
    return fail(ZELKM_ERR_CRYPTO, "cannot make the proof of a secret");
  }
  return proof;
}

bool ProofOfSecret::isOf(ByteView secret) const {
  std::array<std::uint8_t, kCodeLength> given{};
  if (!authenticate(key(), secret, given)) {
    ERR_clear_error();
    return false;
  }
  return CRYPTO_memcmp(given.data(), code().data(), kCodeLength) == 0;
}

}  // namespace zel::sys
