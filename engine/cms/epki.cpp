#include "engine/cms/epki.h"

#include <openssl/rand.h>

#include <algorithm>
#include <limits>

#include "engine/cms/crypto_context.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

using AlgorithmPtr = std::unique_ptr<X509_ALGOR, Releaser<X509_ALGOR_free>>;
using Pbes2Ptr = std::unique_ptr<PBE2PARAM, Releaser<PBE2PARAM_free>>;
using Pbkdf2Ptr = std::unique_ptr<PBKDF2PARAM, Releaser<PBKDF2PARAM_free>>;
using PbeParametersPtr = std::unique_ptr<PBEPARAM, Releaser<PBEPARAM_free>>;

constexpr std::int64_t kMaxIterations = 10'000'000;

template <typename Ptr>
Ptr unpack(const ASN1_TYPE* parameters, const ASN1_ITEM* type) {
  return Ptr(static_cast<typename Ptr::pointer>(ASN1_TYPE_unpack_sequence(type, parameters)));
}

/**
 * The iteration count that the parameters ask for, 0 when they name none. Read beforehand, because
 * a count from a hostile file would keep the process busy for hours.
 */
std::int64_t iterationsOf(const X509_ALGOR& algorithm) {
  const ASN1_INTEGER* iterations = nullptr;
  Pbes2Ptr pbes2;
  Pbkdf2Ptr pbkdf2;
  PbeParametersPtr pbes1;
  if (OBJ_obj2nid(algorithm.algorithm) == NID_pbes2) {
    pbes2 = unpack<Pbes2Ptr>(algorithm.parameter, ASN1_ITEM_rptr(PBE2PARAM));
    if (pbes2 && OBJ_obj2nid(pbes2->keyfunc->algorithm) == NID_id_pbkdf2) {
      pbkdf2 = unpack<Pbkdf2Ptr>(pbes2->keyfunc->parameter, ASN1_ITEM_rptr(PBKDF2PARAM));
    }
    if (pbkdf2) iterations = pbkdf2->iter;
  } else {
    pbes1 = unpack<PbeParametersPtr>(algorithm.parameter, ASN1_ITEM_rptr(PBEPARAM));
    if (pbes1) iterations = pbes1->iter;
  }
  std::int64_t count = 0;
  if (iterations != nullptr && ASN1_INTEGER_get_int64(&count, iterations) != 1) {
    count = std::numeric_limits<std::int64_t>::max();
  }
  ERR_clear_error();
  return count;
}

/** Decrypts without looking at the padding, which tells a wrong password too badly to be used. */
sys::Result<sys::SecretBytes> decryptPadded(const X509_ALGOR& algorithm, sys::ByteView cipherText,
                                            sys::ByteView password) {
  if (iterationsOf(algorithm) > kMaxIterations) {
    return sys::fail(ZELKM_ERR_PBE_ALG_UNSUPPORT, "more than %lld iterations are not tried",
                     static_cast<long long>(kMaxIterations));
  }
  const CipherContextPtr context(EVP_CIPHER_CTX_new());
  if (!context) return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "decrypt a private key");
  if (EVP_PBE_CipherInit_ex(algorithm.algorithm, reinterpret_cast<const char*>(password.data()),
                            static_cast<int>(password.size()), algorithm.parameter, context.get(),
                            0, legacyCryptoContext(), nullptr) != 1) {
    return cryptoFailure(ZELKM_ERR_PBE_ALG_UNSUPPORT, "set up the decryption of a private key");
  }
  EVP_CIPHER_CTX_set_padding(context.get(), 0);

  const auto blockSize = static_cast<std::size_t>(EVP_CIPHER_CTX_get_block_size(context.get()));
  if (cipherText.empty() || cipherText.size() % blockSize != 0) {
    return sys::fail(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "an encrypted key is cut off");
  }
  sys::SecretBytes plain(cipherText.size());
  int length = 0;
  if (EVP_DecryptUpdate(context.get(), plain.data(), &length, cipherText.data(),
                        static_cast<int>(cipherText.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "decrypt a private key");
  }
  return plain;
}

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

/** Whether what follows the content is the padding of RFC 8018, 6.1.1, or nothing. */
bool isPadding(sys::ByteView rest) {
  return std::all_of(rest.begin(), rest.end(),
                     [&](std::uint8_t byte) { return byte == rest.size(); });
}

}  // namespace

sys::Result<PbeKey> derivePbeKey(sys::ByteView password, sys::ByteView salt,
                                 std::uint32_t iterations) {
  PbeKey pbe{{salt.begin(), salt.end()}, iterations, sys::SecretBytes(kPbeKeyLength)};
  if (PKCS5_PBKDF2_HMAC(reinterpret_cast<const char*>(password.data()),
                        static_cast<int>(password.size()), salt.data(),
                        static_cast<int>(salt.size()), static_cast<int>(iterations), EVP_sha256(),
                        static_cast<int>(pbe.key.size()), pbe.key.data()) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "derive a key from a password");
  }
  return pbe;
}

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
  cipherText.resize(static_cast<std::size_t>(length + lastLength));

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

sys::Result<sys::Bytes> encryptPrivateKey(sys::ByteView privateKeyInfo, sys::ByteView password) {
  sys::Bytes salt(kPbeSaltLength);
  if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "draw a salt");
  }
  const sys::Result<PbeKey> pbe = derivePbeKey(password, salt, kPbeIterations);
  if (!pbe) return pbe.failure();
  return encryptPrivateKey(privateKeyInfo, pbe.value());
}

bool isEncryptedPrivateKey(sys::ByteView der) {
  const bool isOne = decodeDer<X509SigPtr>(d2i_X509_SIG, der) != nullptr;
  ERR_clear_error();
  return isOne;
}

sys::Result<sys::SecretBytes> decryptPrivateKey(sys::ByteView epki, sys::ByteView password) {
  const X509SigPtr parsed = decodeDer<X509SigPtr>(d2i_X509_SIG, epki);
  if (!parsed) return cryptoFailure(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "read an encrypted key");
  const X509_ALGOR* algorithm = nullptr;
  const ASN1_OCTET_STRING* cipherText = nullptr;
  X509_SIG_get0(parsed.get(), &algorithm, &cipherText);

  sys::Result<sys::SecretBytes> plain = decryptPadded(
      *algorithm,
      {ASN1_STRING_get0_data(cipherText), static_cast<std::size_t>(ASN1_STRING_length(cipherText))},
      password);
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
