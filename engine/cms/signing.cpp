#include "engine/cms/signing.h"

#include <openssl/objects.h>

#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

using AlgorithmPtr = std::unique_ptr<X509_ALGOR, Releaser<X509_ALGOR_free>>;
using DigestContextPtr = std::unique_ptr<EVP_MD_CTX, Releaser<EVP_MD_CTX_free>>;

constexpr int kRsaSizeOf128BitsSecurity = 3072;
constexpr int kRsaSizeOf192BitsSecurity = 7680;

const EVP_MD* messageDigest(SigningDigest digest) {
  switch (digest) {
    case SigningDigest::sha256:
      return EVP_sha256();
    case SigningDigest::sha384:
      return EVP_sha384();
    case SigningDigest::sha512:
      return EVP_sha512();
    case SigningDigest::none:
      break;
  }
  return nullptr;
}

SigningDigest byKeyStrength(const KeyTraits& key) {
  const bool isRsa = key.algorithm == KeyAlgorithm::rsa;
  if (key.size <= (isRsa ? kRsaSizeOf128BitsSecurity : 256)) return SigningDigest::sha256;
  if (key.size <= (isRsa ? kRsaSizeOf192BitsSecurity : 384)) return SigningDigest::sha384;
  return SigningDigest::sha512;
}

int signatureNid(KeyAlgorithm algorithm, SigningDigest digest) {
  if (algorithm == KeyAlgorithm::ed25519) return NID_ED25519;
  const EVP_MD* md = messageDigest(digest);
  int nid = NID_undef;
  if (md != nullptr) {
    const int keyNid =
        algorithm == KeyAlgorithm::rsa ? NID_rsaEncryption : NID_X9_62_id_ecPublicKey;
    OBJ_find_sigid_by_algs(&nid, EVP_MD_get_type(md), keyNid);
  }
  return nid;
}

/**
 * Whether what the private half signs, the public half verifies. The bytes of a private key hold
 * both halves, and nothing makes them belong together. It tells as much as the arithmetic check,
 * which takes a minute to prove the primes of the largest RSA keys.
 */
bool signsFor(const EVP_PKEY& key, EVP_PKEY& publicKey) {
  constexpr std::uint8_t kMessage[] = {'p', 'a', 'i', 'r'};
  // With no digest named, both sides take the one that the key is for.
  const sys::Result<sys::Bytes> signature = signMessage(key, SigningDigest::none, kMessage);
  const DigestContextPtr context(EVP_MD_CTX_new());
  return signature && context &&
         EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, &publicKey) == 1 &&
         EVP_DigestVerify(context.get(), signature.value().data(), signature.value().size(),
                          kMessage, sizeof kMessage) == 1;
}

}  // namespace

sys::Result<SigningDigest> chooseDigest(const KeyTraits& key, SignatureSelector selector) {
  if (selector < kByKeyStrength || selector > kSha512) {
    return sys::fail(ZELKM_ERR_SIGNATURE_ALGORITHM, "no signature algorithm %d", selector);
  }
  if (key.algorithm == KeyAlgorithm::unknown || key.isBoundToPss) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "cannot sign with such a key");
  }
  if (key.algorithm == KeyAlgorithm::ed25519) return SigningDigest::none;
  if (selector == kSha256) return SigningDigest::sha256;
  if (selector == kSha512) return SigningDigest::sha512;
  return byKeyStrength(key);
}

sys::Result<sys::Bytes> signatureAlgorithm(KeyAlgorithm algorithm, SigningDigest digest) {
  const int nid = signatureNid(algorithm, digest);
  const AlgorithmPtr identifier(X509_ALGOR_new());
  // RFC 4055 wants a NULL with RSA; the others have no parameters.
  const int parameters = algorithm == KeyAlgorithm::rsa ? V_ASN1_NULL : V_ASN1_UNDEF;
  if (nid == NID_undef || !identifier ||
      X509_ALGOR_set0(identifier.get(), OBJ_nid2obj(nid), parameters, nullptr) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "name a signature algorithm");
  }
  return encodeDer(i2d_X509_ALGOR, identifier.get());
}

sys::Result<sys::Bytes> signMessage(const EVP_PKEY& key, SigningDigest digest,
                                    sys::ByteView message) {
  const DigestContextPtr context(EVP_MD_CTX_new());
  // OpenSSL takes the key without const, but only counts a reference to it.
  auto* shared = const_cast<EVP_PKEY*>(&key);
  std::size_t length = 0;
  if (!context ||
      EVP_DigestSignInit(context.get(), nullptr, messageDigest(digest), nullptr, shared) != 1 ||
      EVP_DigestSign(context.get(), nullptr, &length, message.data(), message.size()) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_SIGN, "begin a signature");
  }
  sys::Bytes signature(length);
  if (EVP_DigestSign(context.get(), signature.data(), &length, message.data(), message.size()) !=
      1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_SIGN, "sign");
  }
  signature.resize(length);
  return signature;
}

bool isPair(const EVP_PKEY& key, sys::ByteView spki) {
  const PublicKeyPtr info = decodeDer<PublicKeyPtr>(d2i_X509_PUBKEY, spki);
  EVP_PKEY* publicKey = info ? X509_PUBKEY_get0(info.get()) : nullptr;
  const bool matches =
      publicKey != nullptr && EVP_PKEY_eq(publicKey, &key) == 1 && signsFor(key, *publicKey);
  ERR_clear_error();
  return matches;
}

}  // namespace zel::cms
