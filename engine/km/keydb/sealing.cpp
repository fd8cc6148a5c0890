#include "engine/km/keydb/sealing.h"

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <openssl/rand.h>

#include <algorithm>
#include <memory>

#include "engine/cms/openssl_ptr.h"

namespace zel::km {

namespace {

using cms::CipherContextPtr;
using cms::cryptoFailure;

using KdfPtr = std::unique_ptr<EVP_KDF, cms::Releaser<EVP_KDF_free>>;
using KdfContextPtr = std::unique_ptr<EVP_KDF_CTX, cms::Releaser<EVP_KDF_CTX_free>>;

int lengthOf(sys::ByteView bytes) { return static_cast<int>(bytes.size()); }

bool addContext(EVP_CIPHER_CTX* cipher, sys::ByteView context) {
  int length = 0;
  return EVP_CipherUpdate(cipher, nullptr, &length, context.data(), lengthOf(context)) == 1;
}

}  // namespace

sys::Result<Sealed> seal(sys::ByteView key, sys::ByteView context, sys::ByteView plain) {
  Sealed sealed(kSealLength + plain.size());
  sys::Status done = sealInto(sealed, key, context, plain);
  if (!done) return done.failure();
  return sealed;
}

sys::Status sealInto(std::span<std::uint8_t> sealed, sys::ByteView key, sys::ByteView context,
                     sys::ByteView plain) {
  std::uint8_t* nonce = sealed.data();
  std::uint8_t* tag = nonce + kNonceLength;
  std::uint8_t* ciphertext = tag + kTagLength;
  sys::Status random = fillRandom({nonce, kNonceLength});
  if (!random) return random;
  CipherContextPtr cipher(EVP_CIPHER_CTX_new());
  int length = 0;
  if (!cipher ||
      EVP_EncryptInit_ex2(cipher.get(), EVP_aes_256_gcm(), key.data(), nonce, nullptr) != 1 ||
      !addContext(cipher.get(), context) ||
      EVP_EncryptUpdate(cipher.get(), ciphertext, &length, plain.data(), lengthOf(plain)) != 1 ||
      EVP_EncryptFinal_ex(cipher.get(), ciphertext + plain.size(), &length) != 1 ||
      EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_GET_TAG, kTagLength, tag) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "seal a record");
  }
  return sys::success();
}

sys::Result<sys::SecretBytes> unseal(sys::ByteView key, sys::ByteView context,
                                     sys::ByteView sealed) {
  if (sealed.size() < kSealLength) return sys::Failure{ZELKM_ERR_DATABASE_KEY_INTEGRITY};
  const std::uint8_t* nonce = sealed.data();
  std::array<std::uint8_t, kTagLength> tag;
  std::copy_n(sealed.begin() + kNonceLength, kTagLength, tag.begin());
  const sys::ByteView ciphertext = sealed.subspan(kSealLength);
  // One byte more, so that even nothing has an address.
  sys::SecretBytes plain(ciphertext.size() + 1);
  CipherContextPtr cipher(EVP_CIPHER_CTX_new());
  int length = 0;
  if (!cipher ||
      EVP_DecryptInit_ex2(cipher.get(), EVP_aes_256_gcm(), key.data(), nonce, nullptr) != 1 ||
      !addContext(cipher.get(), context) ||
      EVP_DecryptUpdate(cipher.get(), plain.data(), &length, ciphertext.data(),
                        lengthOf(ciphertext)) != 1 ||
      EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_SET_TAG, kTagLength, tag.data()) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "unseal a record");
  }
  if (EVP_DecryptFinal_ex(cipher.get(), plain.data() + ciphertext.size(), &length) != 1) {
    return sys::Failure{ZELKM_ERR_DATABASE_KEY_INTEGRITY};
  }
  plain.resize(ciphertext.size());
  return plain;
}

sys::Result<Digest> authenticate(sys::ByteView key, sys::ByteView message) {
  Digest code;
  unsigned int length = 0;
  if (HMAC(EVP_sha256(), key.data(), lengthOf(key), message.data(), message.size(), code.data(),
           &length) == nullptr ||
      length != code.size()) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "compute an HMAC");
  }
  return code;
}

sys::Result<Digest> digest(sys::ByteView message) {
  Digest value;
  if (EVP_Digest(message.data(), message.size(), value.data(), nullptr, EVP_sha256(), nullptr) !=
      1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_DIGEST, "compute a digest");
  }
  return value;
}

sys::Status deriveKey(sys::ByteView master, std::string_view purpose,
                      std::span<std::uint8_t> derived) {
  KdfPtr kdf(EVP_KDF_fetch(nullptr, "HKDF", nullptr));
  KdfContextPtr context(kdf ? EVP_KDF_CTX_new(kdf.get()) : nullptr);
  if (!context) return cryptoFailure(ZELKM_ERR_CRYPTO, "derive a key");
  char digestName[] = "SHA256";
  const OSSL_PARAM parameters[] = {
      OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, digestName, 0),
      OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_KEY,
                                        const_cast<std::uint8_t*>(master.data()), master.size()),
      OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_INFO, const_cast<char*>(purpose.data()),
                                        purpose.size()),
      OSSL_PARAM_construct_end()};
  if (EVP_KDF_derive(context.get(), derived.data(), derived.size(), parameters) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "derive a key");
  }
  return sys::success();
}

sys::Status fillRandom(std::span<std::uint8_t> bytes) {
  if (RAND_priv_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "draw random bytes");
  }
  return sys::success();
}

}  // namespace zel::km
