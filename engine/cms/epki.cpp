#include "engine/cms/epki.h"

#include <openssl/rand.h>

#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pbe.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

using AlgorithmPtr = std::unique_ptr<X509_ALGOR, Releaser<X509_ALGOR_free>>;

/** The length that a PrivateKeyInfo at the front claims, 0 when none begins there. */
std::size_t claimedLength(sys::ByteView plain) {
  static constexpr std::uint8_t kSequence = 0x30;
  static constexpr std::uint8_t kInteger = 0x02;
  if (plain.size() < 8 || plain[0] != kSequence) return 0;

  std::size_t header = 2;
  std::size_t content = plain[1];
  if (content > 0x80 && content <= 0x83) {
    header += content - 0x80;
    content = 0;
    for (std::size_t i = 2; i < header; ++i) content = (content << 8) | plain[i];
  } else if (content >= 0x80) {
    return 0;
  }
  const sys::ByteView inner = plain.subspan(header);
  const bool isPrivateKeyInfo =
      inner.size() >= 3 && inner[0] == kInteger && inner[1] == 1 && inner[2] <= 1;
  return isPrivateKeyInfo ? header + content : 0;
}

}  // namespace

sys::Result<sys::Bytes> encryptPrivateKey(sys::ByteView privateKeyInfo, const PbeKey& pbe) {
  const EVP_CIPHER* cipher = EVP_aes_256_cbc();
  sys::Bytes iv(static_cast<std::size_t>(EVP_CIPHER_get_iv_length(cipher)));
  if (RAND_bytes(iv.data(), static_cast<int>(iv.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "draw an initialisation vector");
  }

  sys::Bytes salt = pbe.salt;
  AlgorithmPtr algorithm(PKCS5_pbe2_set_iv(cipher, static_cast<int>(pbe.iterations), salt.data(),
                                           static_cast<int>(salt.size()), iv.data(),
                                           NID_hmacWithSHA256));
  const CipherContextPtr context(EVP_CIPHER_CTX_new());
  sys::Bytes cipherText(privateKeyInfo.size() + iv.size());
  int length = 0;
  int lastLength = 0;
  if (!algorithm || !context ||
      EVP_EncryptInit_ex(context.get(), cipher, nullptr, pbe.key.data(), iv.data()) != 1 ||
      EVP_EncryptUpdate(context.get(), cipherText.data(), &length, privateKeyInfo.data(),
                        static_cast<int>(privateKeyInfo.size())) != 1 ||
      EVP_EncryptFinal_ex(context.get(), cipherText.data() + length, &lastLength) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "encrypt a private key");
  }
  cipherText.resize(static_cast<std::size_t>(length) + static_cast<std::size_t>(lastLength));

  const X509SigPtr epki(X509_SIG_new());
  X509_ALGOR* algorithmOut = nullptr;
  ASN1_OCTET_STRING* cipherTextOut = nullptr;
  if (!epki) return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "encode an encrypted key");
  X509_SIG_getm(epki.get(), &algorithmOut, &cipherTextOut);
  if (X509_ALGOR_copy(algorithmOut, algorithm.get()) != 1 ||
      ASN1_OCTET_STRING_set(cipherTextOut, cipherText.data(),
                            static_cast<int>(cipherText.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "encode an encrypted key");
  }
  return encodeDer(i2d_X509_SIG, epki.get());
}

sys::Result<sys::Bytes> encryptPrivateKey(sys::ByteView privateKeyInfo, sys::ByteView password,
                                          std::uint32_t iterations) {
  sys::Bytes salt(kPbeSaltLength);
  if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "draw a salt");
  }
  const sys::Result<PbeKey> pbe = derivePbeKey(password, salt, iterations);
  if (!pbe) return pbe.failure();
  return encryptPrivateKey(privateKeyInfo, pbe.value());
}

bool isEncryptedPrivateKey(sys::ByteView der) {
  const bool isOne = decodeDer<X509SigPtr>(d2i_X509_SIG, der) != nullptr;
  ERR_clear_error();
  return isOne;
}

sys::Result<sys::SecretBytes> decryptPrivateKey(sys::ByteView epki, sys::ByteView password) {
  const X509SigPtr decoded = decodeDer<X509SigPtr>(d2i_X509_SIG, epki);
  if (!decoded) return cryptoFailure(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "read an encrypted key");
  PbeDecryption decryption(pbePassword(password));
  return decryptPrivateKey(*decoded, decryption);
}

sys::Result<sys::SecretBytes> decryptPrivateKey(const X509_SIG& epki, PbeDecryption& decryption) {
  const X509_ALGOR* algorithm = nullptr;
  const ASN1_OCTET_STRING* cipherText = nullptr;
  X509_SIG_get0(&epki, &algorithm, &cipherText);
  sys::Result<sys::SecretBytes> plain = decryption.decrypt(*algorithm, viewOf(cipherText));
  if (!plain) return plain;

  sys::SecretBytes& key = plain.value();
  const std::size_t length = claimedLength(key);
  if (length == 0) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_PASSWORD, "the password of a key is wrong");
  }
  if (length > key.size() || !isPadding(sys::ByteView(key).subspan(length))) {
    return sys::fail(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "an encrypted key is damaged");
  }
  key.resize(length);
  if (!decodeDer<Pkcs8Ptr>(d2i_PKCS8_PRIV_KEY_INFO, key)) {
    return cryptoFailure(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "read a decrypted key");
  }
  return plain;
}

}  // namespace zel::cms
