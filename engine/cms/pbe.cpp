#include "engine/cms/pbe.h"

#include <algorithm>
#include <limits>

#include "engine/cms/crypto_context.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

using Pbes2Ptr = std::unique_ptr<PBE2PARAM, Releaser<PBE2PARAM_free>>;
using Pbkdf2Ptr = std::unique_ptr<PBKDF2PARAM, Releaser<PBKDF2PARAM_free>>;
using ScryptPtr = std::unique_ptr<SCRYPT_PARAMS, Releaser<SCRYPT_PARAMS_free>>;
using PbeParametersPtr = std::unique_ptr<PBEPARAM, Releaser<PBEPARAM_free>>;

template <typename Ptr>
Ptr unpack(const ASN1_TYPE* parameters, const ASN1_ITEM* type) {
  return Ptr(static_cast<typename Ptr::pointer>(ASN1_TYPE_unpack_sequence(type, parameters)));
}

/** The iteration count that the parameters ask for, 0 when they name none. */
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

/** The number, or one beyond all bounds when it is negative or does not fit. */
std::uint64_t boundedNumber(const ASN1_INTEGER* number) {
  std::uint64_t value = 0;
  if (ASN1_INTEGER_get_uint64(&value, number) != 1)
    value = std::numeric_limits<std::uint64_t>::max();
  return value;
}

/** Whether the parameters ask for scrypt at a cost that is not tried. */
bool isCostlyScrypt(const X509_ALGOR& algorithm) {
  if (OBJ_obj2nid(algorithm.algorithm) != NID_pbes2) return false;
  const auto pbes2 = unpack<Pbes2Ptr>(algorithm.parameter, ASN1_ITEM_rptr(PBE2PARAM));
  if (!pbes2 || OBJ_obj2nid(pbes2->keyfunc->algorithm) != NID_id_scrypt) return false;
  const auto scrypt = unpack<ScryptPtr>(pbes2->keyfunc->parameter, ASN1_ITEM_rptr(SCRYPT_PARAMS));
  if (!scrypt) return false;
  // Each factor is at most the bound before it multiplies, so that nothing overflows.
  std::uint64_t cost = 1;
  for (const ASN1_INTEGER* factor :
       {scrypt->costParameter, scrypt->blockSize, scrypt->parallelizationParameter}) {
    const std::uint64_t value = boundedNumber(factor);
    if (value > kMaxScryptCost || cost * value > kMaxScryptCost) return true;
    cost *= value;
  }
  ERR_clear_error();
  return false;
}

/** A context with the key of the password set. ZELKM_ERR_PBE_ALG_UNSUPPORT. */
sys::Result<CipherContextPtr> derive(const X509_ALGOR& algorithm, PbePassword password) {
  if (iterationsOf(algorithm) > kMaxIterations) {
    return sys::fail(ZELKM_ERR_PBE_ALG_UNSUPPORT, "more than %lld iterations are not tried",
                     static_cast<long long>(kMaxIterations));
  }
  if (isCostlyScrypt(algorithm)) {
    ERR_clear_error();
    return sys::fail(ZELKM_ERR_PBE_ALG_UNSUPPORT, "scrypt at such a cost is not tried");
  }
  CipherContextPtr context(EVP_CIPHER_CTX_new());
  if (!context) return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "decrypt");
  if (EVP_PBE_CipherInit_ex(algorithm.algorithm, password.text, password.length,
                            algorithm.parameter, context.get(), 0, legacyCryptoContext(),
                            nullptr) != 1) {
    return cryptoFailure(ZELKM_ERR_PBE_ALG_UNSUPPORT, "set up a decryption");
  }
  return context;
}

/**
 * What a key is derived for: all of the parameters but the initialisation vector. Empty when they
 * are not of PBES2, or of a cipher that wants more than the vector.
 */
sys::Bytes derivationOf(const X509_ALGOR& algorithm) {
  if (OBJ_obj2nid(algorithm.algorithm) != NID_pbes2) return {};
  const auto pbes2 = unpack<Pbes2Ptr>(algorithm.parameter, ASN1_ITEM_rptr(PBE2PARAM));
  if (!pbes2 || ASN1_TYPE_get(pbes2->encryption->parameter) != V_ASN1_OCTET_STRING) return {};
  sys::Bytes derivation = encodeDer(i2d_X509_ALGOR, pbes2->keyfunc);
  const sys::Bytes cipher = encodeDer(i2d_ASN1_OBJECT, pbes2->encryption->algorithm);
  derivation.insert(derivation.end(), cipher.begin(), cipher.end());
  return derivation;
}

/** The context of a key that was derived before, with the initialisation vector of another use. */
CipherContextPtr usedAgain(const EVP_CIPHER_CTX& derived, const X509_ALGOR& algorithm) {
  const auto pbes2 = unpack<Pbes2Ptr>(algorithm.parameter, ASN1_ITEM_rptr(PBE2PARAM));
  CipherContextPtr context(EVP_CIPHER_CTX_new());
  if (!pbes2 || !context || EVP_CIPHER_CTX_copy(context.get(), &derived) != 1 ||
      EVP_CIPHER_asn1_to_param(context.get(), pbes2->encryption->parameter) <= 0) {
    return nullptr;
  }
  return context;
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

PbePassword pbePassword(sys::ByteView password) {
  if (password.empty()) return {"", 0};
  return {reinterpret_cast<const char*>(password.data()), static_cast<int>(password.size())};
}

sys::Result<CipherContextPtr> PbeDecryption::contextFor(const X509_ALGOR& algorithm) {
  const sys::Bytes derivation = derivationOf(algorithm);
  if (derivation.empty()) return derive(algorithm, password_);
  auto known = derived_.find(derivation);
  if (known == derived_.end()) {
    sys::Result<CipherContextPtr> derived = derive(algorithm, password_);
    if (!derived) return derived;
    known = derived_.emplace(derivation, std::move(derived).value()).first;
  }
  CipherContextPtr context = usedAgain(*known->second, algorithm);
  if (!context) return cryptoFailure(ZELKM_ERR_PBE_ALG_UNSUPPORT, "set up a decryption");
  return context;
}

sys::Result<sys::SecretBytes> PbeDecryption::decrypt(const X509_ALGOR& algorithm,
                                                     sys::ByteView cipherText) {
  const sys::Result<CipherContextPtr> prepared = contextFor(algorithm);
  if (!prepared) return prepared.failure();
  EVP_CIPHER_CTX* context = prepared.value().get();
  EVP_CIPHER_CTX_set_padding(context, 0);

  const auto blockSize = static_cast<std::size_t>(EVP_CIPHER_CTX_get_block_size(context));
  if (cipherText.empty() || cipherText.size() % blockSize != 0) {
    return sys::fail(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "a ciphertext is cut off");
  }
  sys::SecretBytes plain(cipherText.size());
  int length = 0;
  if (EVP_DecryptUpdate(context, plain.data(), &length, cipherText.data(),
                        static_cast<int>(cipherText.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "decrypt");
  }
  return plain;
}

bool isPadding(sys::ByteView rest) {
  return std::all_of(rest.begin(), rest.end(),
                     [&](std::uint8_t byte) { return byte == rest.size(); });
}

}  // namespace zel::cms
