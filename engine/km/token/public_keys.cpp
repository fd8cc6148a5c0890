#include "engine/km/token/public_keys.h"

#include <openssl/core_names.h>
#include <openssl/param_build.h>
#include <openssl/sha.h>

#include "engine/cms/keys.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

using OctetStringPtr = std::unique_ptr<ASN1_OCTET_STRING, cms::Releaser<ASN1_OCTET_STRING_free>>;
using ObjectPtr = std::unique_ptr<ASN1_OBJECT, cms::Releaser<ASN1_OBJECT_free>>;
using ParametersBuilderPtr = std::unique_ptr<OSSL_PARAM_BLD, cms::Releaser<OSSL_PARAM_BLD_free>>;
using ParametersPtr = std::unique_ptr<OSSL_PARAM, cms::Releaser<OSSL_PARAM_free>>;

constexpr CK_ULONG kNoKeyType = CK_UNAVAILABLE_INFORMATION;

/** Null when the parameters make no public key. */
cms::KeyPtr publicKeyFrom(const char* algorithm, OSSL_PARAM_BLD* builder) {
  const ParametersPtr parameters(OSSL_PARAM_BLD_to_param(builder));
  const cms::KeyContextPtr context(EVP_PKEY_CTX_new_from_name(nullptr, algorithm, nullptr));
  EVP_PKEY* key = nullptr;
  if (parameters && context && EVP_PKEY_fromdata_init(context.get()) == 1) {
    EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, parameters.get());
  }
  return cms::KeyPtr(key);
}

cms::BigNumberPtr bigNumber(sys::ByteView bytes) {
  return cms::BigNumberPtr(BN_bin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr));
}

cms::KeyPtr rsaKey(const Attributes& key) {
  const sys::ByteView modulus = key.bytes(CKA_MODULUS);
  const sys::ByteView exponent = key.bytes(CKA_PUBLIC_EXPONENT);
  if (modulus.empty() || exponent.empty()) return nullptr;
  const ParametersBuilderPtr builder(OSSL_PARAM_BLD_new());
  const cms::BigNumberPtr n = bigNumber(modulus);
  const cms::BigNumberPtr e = bigNumber(exponent);
  if (!builder || !n || !e ||
      OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_N, n.get()) != 1 ||
      OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_E, e.get()) != 1) {
    return nullptr;
  }
  return publicKeyFrom("RSA", builder.get());
}

/** The curve's name; null for one that is not named by an object identifier. */
const char* curveName(sys::ByteView parameters) {
  const ObjectPtr oid = cms::decodeDer<ObjectPtr>(d2i_ASN1_OBJECT, parameters);
  return oid ? OBJ_nid2sn(OBJ_obj2nid(oid.get())) : nullptr;
}

/** The point is an OCTET STRING by the standard; some modules give its content only. */
sys::Bytes curvePoint(sys::ByteView value) {
  const OctetStringPtr octets = cms::decodeDer<OctetStringPtr>(d2i_ASN1_OCTET_STRING, value);
  if (!octets) return {value.begin(), value.end()};
  const unsigned char* data = ASN1_STRING_get0_data(octets.get());
  return {data, data + ASN1_STRING_length(octets.get())};
}

cms::KeyPtr ecKey(const Attributes& key) {
  const char* curve = curveName(key.bytes(CKA_EC_PARAMS));
  const sys::Bytes point = curvePoint(key.bytes(CKA_EC_POINT));
  if (curve == nullptr || point.empty()) return nullptr;
  const ParametersBuilderPtr builder(OSSL_PARAM_BLD_new());
  if (!builder ||
      OSSL_PARAM_BLD_push_utf8_string(builder.get(), OSSL_PKEY_PARAM_GROUP_NAME, curve, 0) != 1 ||
      OSSL_PARAM_BLD_push_octet_string(builder.get(), OSSL_PKEY_PARAM_PUB_KEY, point.data(),
                                       point.size()) != 1) {
    return nullptr;
  }
  return publicKeyFrom("EC", builder.get());
}

sys::Bytes bigNumberParameter(const EVP_PKEY& key, const char* name) {
  BIGNUM* number = nullptr;
  EVP_PKEY_get_bn_param(&key, name, &number);
  const cms::BigNumberPtr owned(number);
  if (!owned) return {};
  sys::Bytes bytes(static_cast<std::size_t>(BN_num_bytes(number)));
  BN_bn2bin(number, bytes.data());
  return bytes;
}

sys::Bytes encodedPoint(const EVP_PKEY& key) {
  std::size_t length = 0;
  EVP_PKEY_get_octet_string_param(&key, OSSL_PKEY_PARAM_PUB_KEY, nullptr, 0, &length);
  sys::Bytes point(length);
  const OctetStringPtr octets(ASN1_OCTET_STRING_new());
  if (!octets ||
      EVP_PKEY_get_octet_string_param(&key, OSSL_PKEY_PARAM_PUB_KEY, point.data(), point.size(),
                                      &length) != 1 ||
      ASN1_OCTET_STRING_set(octets.get(), point.data(), static_cast<int>(length)) != 1) {
    return {};
  }
  return cms::encodeDer(i2d_ASN1_OCTET_STRING, octets.get());
}

}  // namespace

sys::Bytes publicKeyInfoOf(const Attributes& key) {
  cms::KeyPtr made;
  switch (key.number(CKA_KEY_TYPE, kNoKeyType)) {
    case CKK_RSA:
      made = rsaKey(key);
      break;
    case CKK_EC:
      made = ecKey(key);
      break;
    default:
      break;
  }
  sys::Bytes info;
  if (made) info = cms::encodeDer(i2d_PUBKEY, made.get());
  ERR_clear_error();
  return info;
}

sys::Result<sys::Bytes> curveParameters(const EVP_PKEY& key) {
  char name[64];
  std::size_t length = 0;
  if (EVP_PKEY_get_group_name(&key, name, sizeof name, &length) != 1) {
    return cms::cryptoFailure(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "name a curve");
  }
  const ASN1_OBJECT* oid = OBJ_nid2obj(OBJ_sn2nid(name));
  sys::Bytes encoded;
  if (oid != nullptr) encoded = cms::encodeDer(i2d_ASN1_OBJECT, oid);
  if (encoded.empty()) {
    return cms::cryptoFailure(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "name a curve");
  }
  return encoded;
}

sys::Status addPublicKey(Template& attributes, const EVP_PKEY& key) {
  switch (cms::describeKey(key).algorithm) {
    case cms::KeyAlgorithm::rsa:
      attributes.addNumber(CKA_KEY_TYPE, CKK_RSA)
          .addBytes(CKA_MODULUS, bigNumberParameter(key, OSSL_PKEY_PARAM_RSA_N))
          .addBytes(CKA_PUBLIC_EXPONENT, bigNumberParameter(key, OSSL_PKEY_PARAM_RSA_E));
      return sys::success();
    case cms::KeyAlgorithm::ec: {
      const sys::Result<sys::Bytes> curve = curveParameters(key);
      if (!curve) return curve.failure();
      attributes.addNumber(CKA_KEY_TYPE, CKK_EC)
          .addBytes(CKA_EC_PARAMS, curve.value())
          .addBytes(CKA_EC_POINT, encodedPoint(key));
      return sys::success();
    }
    default:
      return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT,
                       "only RSA and EC keys go onto a token");
  }
}

sys::Result<sys::Bytes> keyIdentifier(sys::ByteView publicKeyInfo) {
  const cms::PublicKeyPtr info = cms::decodeDer<cms::PublicKeyPtr>(d2i_X509_PUBKEY, publicKeyInfo);
  const unsigned char* bits = nullptr;
  int length = 0;
  if (!info || X509_PUBKEY_get0_param(nullptr, &bits, &length, nullptr, info.get()) != 1) {
    return cms::cryptoFailure(ZELKM_ERR_ASN, "read a public key");
  }
  sys::Bytes digest(SHA_DIGEST_LENGTH);
  if (EVP_Digest(bits, static_cast<std::size_t>(length), digest.data(), nullptr, EVP_sha1(),
                 nullptr) != 1) {
    return cms::cryptoFailure(ZELKM_ERR_CRYPTO_DIGEST, "identify a public key");
  }
  return digest;
}

}  // namespace zel::km::token
