#include "engine/km/token/token_signing.h"

#include <openssl/ec.h>

#include <algorithm>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

using EcdsaSignaturePtr = std::unique_ptr<ECDSA_SIG, cms::Releaser<ECDSA_SIG_free>>;

const EVP_MD* messageDigest(cms::SigningDigest digest) {
  switch (digest) {
    case cms::SigningDigest::sha256:
      return EVP_sha256();
    case cms::SigningDigest::sha384:
      return EVP_sha384();
    case cms::SigningDigest::sha512:
      return EVP_sha512();
    case cms::SigningDigest::none:
      break;
  }
  return nullptr;
}

/** DigestInfo (RFC 8017, 9.2), whose AlgorithmIdentifier has the NULL that verifiers insist on. */
sys::Bytes digestInfo(const EVP_MD* digest, const sys::Bytes& hash) {
  const cms::X509SigPtr info(X509_SIG_new());
  if (!info) return {};
  X509_ALGOR* algorithm = nullptr;
  ASN1_OCTET_STRING* octets = nullptr;
  X509_SIG_getm(info.get(), &algorithm, &octets);
  if (X509_ALGOR_set0(algorithm, OBJ_nid2obj(EVP_MD_get_type(digest)), V_ASN1_NULL, nullptr) != 1 ||
      ASN1_OCTET_STRING_set(octets, hash.data(), static_cast<int>(hash.size())) != 1) {
    return {};
  }
  return cms::encodeDer(i2d_X509_SIG, info.get());
}

/** Tokens give r and s side by side; certificates carry them as ECDSA-Sig-Value (RFC 5480). */
sys::Result<sys::Bytes> ecdsaDer(const sys::Bytes& raw) {
  const auto half = static_cast<int>(raw.size() / 2);
  const EcdsaSignaturePtr signature(ECDSA_SIG_new());
  cms::BigNumberPtr r(BN_bin2bn(raw.data(), half, nullptr));
  cms::BigNumberPtr s(BN_bin2bn(raw.data() + half, half, nullptr));
  if (half == 0 || raw.size() % 2 != 0 || !signature || !r || !s) {
    return sys::fail(ZELKM_ERR_CRYPTO_SIGN, "the token's ECDSA signature is not a pair of numbers");
  }
  ECDSA_SIG_set0(signature.get(), r.release(), s.release());
  return cms::encodeDer(i2d_ECDSA_SIG, signature.get());
}

/** ECDSA signs no more bits than the curve's order has; not every token cuts by itself. */
void cutToOrder(sys::Bytes& hash, const PrivateKeyObject& key) {
  const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(key.publicKey);
  if (!traits || traits.value().size <= 0) return;
  hash.resize(std::min(hash.size(), static_cast<std::size_t>(traits.value().size + 7) / 8));
}

}  // namespace

sys::Result<sys::Bytes> signOnToken(const Session& session, const PrivateKeyObject& key,
                                    cms::SigningDigest digest, sys::ByteView message) {
  if (key.type != CKK_RSA && key.type != CKK_EC) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT,
                     "keys of type 0x%lx on a token do not sign here", key.type);
  }
  const EVP_MD* md = messageDigest(digest);
  if (md == nullptr) return sys::fail(ZELKM_ERR_SIGNATURE_ALGORITHM, "the key needs a digest");
  sys::Bytes hash(static_cast<std::size_t>(EVP_MD_get_size(md)));
  if (EVP_Digest(message.data(), message.size(), hash.data(), nullptr, md, nullptr) != 1) {
    return cms::cryptoFailure(ZELKM_ERR_CRYPTO_DIGEST, "hash what is to be signed");
  }
  if (key.type == CKK_RSA) return session.sign(CKM_RSA_PKCS, key.handle, digestInfo(md, hash));

  cutToOrder(hash, key);
  sys::Result<sys::Bytes> raw = session.sign(CKM_ECDSA, key.handle, hash);
  if (!raw) return raw.failure();
  return ecdsaDer(raw.value());
}

}  // namespace zel::km::token
