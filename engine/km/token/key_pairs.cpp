#include "engine/km/token/key_pairs.h"

#include <openssl/core_names.h>
#include <openssl/rand.h>

#include <algorithm>

#include "engine/cms/keys.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/public_keys.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

constexpr int kMinRsaSize = 2048;
constexpr std::size_t kProvisionalIdLength = 20;

bool isCurveSize(int keySize) { return keySize == 256 || keySize == 384 || keySize == 521; }

/** The curve's object identifier, DER. */
sys::Bytes curveOfSize(int keySize) {
  const int nid = keySize == 256   ? NID_X9_62_prime256v1
                  : keySize == 384 ? NID_secp384r1
                                   : NID_secp521r1;
  return cms::encodeDer(i2d_ASN1_OBJECT, static_cast<const ASN1_OBJECT*>(OBJ_nid2obj(nid)));
}

/** What every private key here has in common, whatever its algorithm. */
Template privateKeyTemplate(sys::ByteView id) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_PRIVATE_KEY)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, true)
      .addFlag(CKA_SENSITIVE, true)
      .addFlag(CKA_EXTRACTABLE, false)
      .addFlag(CKA_SIGN, true)
      .addBytes(CKA_ID, id);
  return attributes;
}

Template publicKeyTemplate(sys::ByteView id) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_PUBLIC_KEY)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, false)
      .addFlag(CKA_VERIFY, true)
      .addBytes(CKA_ID, id);
  return attributes;
}

/** RSA keys decrypt as well: TLS and mail still ask them to. EC keys derive. None wraps others. */
void addOtherUses(Template& publicKey, Template& privateKey, bool isRsa) {
  publicKey.addFlag(CKA_ENCRYPT, isRsa).addFlag(CKA_WRAP, false);
  privateKey.addFlag(CKA_DECRYPT, isRsa).addFlag(CKA_DERIVE, !isRsa).addFlag(CKA_UNWRAP, false);
}

sys::Result<CK_MECHANISM_TYPE> mechanismFor(const Session& session, int keySize) {
  if (!isCurveSize(keySize) && (keySize < kMinRsaSize || keySize > cms::kMaxKeySize)) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE, "no key on a token has the size %d",
                     keySize);
  }
  const CK_MECHANISM_TYPE mechanism =
      isCurveSize(keySize) ? CKM_EC_KEY_PAIR_GEN : CKM_RSA_PKCS_KEY_PAIR_GEN;
  const sys::Result<bool> offered = session.offers(mechanism, keySize);
  if (!offered) return offered.failure();
  if (!offered.value()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT, "the token makes no key of size %d",
                     keySize);
  }
  return mechanism;
}

/** Until the key is known, its ID is a random one: two keys must not have the same. */
sys::Result<sys::Bytes> provisionalId() {
  sys::Bytes id(kProvisionalIdLength);
  if (RAND_bytes(id.data(), static_cast<int>(id.size())) != 1) {
    return cms::cryptoFailure(ZELKM_ERR_CRYPTO, "draw a random number");
  }
  return id;
}

sys::Result<sys::Bytes> readPublicKey(const Session& session, CK_OBJECT_HANDLE object) {
  static constexpr CK_ATTRIBUTE_TYPE kTypes[] = {CKA_KEY_TYPE, CKA_MODULUS, CKA_PUBLIC_EXPONENT,
                                                 CKA_EC_PARAMS, CKA_EC_POINT};
  sys::Result<Attributes> attributes = session.read(object, kTypes);
  if (!attributes) return attributes.failure();
  sys::Bytes info = publicKeyInfoOf(attributes.value());
  if (info.empty()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED,
                     "the token does not tell the public key that it made");
  }
  return info;
}

sys::SecretBytes secretNumber(const EVP_PKEY& key, const char* name, std::size_t length = 0) {
  BIGNUM* number = nullptr;
  EVP_PKEY_get_bn_param(&key, name, &number);
  const cms::BigNumberPtr owned(number);
  if (!owned) return {};
  sys::SecretBytes bytes(std::max(static_cast<std::size_t>(BN_num_bytes(number)), length));
  BN_bn2binpad(number, bytes.data(), static_cast<int>(bytes.size()));
  return bytes;
}

void addRsaKey(Template& attributes, const EVP_PKEY& key) {
  static constexpr struct {
    CK_ATTRIBUTE_TYPE type;
    const char* parameter;
  } kNumbers[] = {
      {CKA_MODULUS, OSSL_PKEY_PARAM_RSA_N},
      {CKA_PUBLIC_EXPONENT, OSSL_PKEY_PARAM_RSA_E},
      {CKA_PRIVATE_EXPONENT, OSSL_PKEY_PARAM_RSA_D},
      {CKA_PRIME_1, OSSL_PKEY_PARAM_RSA_FACTOR1},
      {CKA_PRIME_2, OSSL_PKEY_PARAM_RSA_FACTOR2},
      {CKA_EXPONENT_1, OSSL_PKEY_PARAM_RSA_EXPONENT1},
      {CKA_EXPONENT_2, OSSL_PKEY_PARAM_RSA_EXPONENT2},
      {CKA_COEFFICIENT, OSSL_PKEY_PARAM_RSA_COEFFICIENT1},
  };
  attributes.addNumber(CKA_KEY_TYPE, CKK_RSA);
  for (const auto& number : kNumbers) {
    attributes.addBytes(number.type, secretNumber(key, number.parameter));
  }
}

sys::Status addEcKey(Template& attributes, const EVP_PKEY& key) {
  sys::Result<sys::Bytes> curve = curveParameters(key);
  if (!curve) return curve.failure();
  const auto length = static_cast<std::size_t>(EVP_PKEY_get_bits(&key) + 7) / 8;
  attributes.addNumber(CKA_KEY_TYPE, CKK_EC)
      .addBytes(CKA_EC_PARAMS, curve.value())
      .addBytes(CKA_VALUE, secretNumber(key, OSSL_PKEY_PARAM_PRIV_KEY, length));
  return sys::success();
}

}  // namespace

sys::Result<TokenKeyPair> generateKeyPair(const Session& session, Changes& changes, int keySize) {
  sys::Result<CK_MECHANISM_TYPE> mechanism = mechanismFor(session, keySize);
  if (!mechanism) return mechanism.failure();
  sys::Result<sys::Bytes> id = provisionalId();
  if (!id) return id.failure();
  const bool isRsa = !isCurveSize(keySize);
  Template privateKey = privateKeyTemplate(id.value());
  Template publicKey = publicKeyTemplate(id.value());
  addOtherUses(publicKey, privateKey, isRsa);
  if (isRsa) {
    static constexpr std::uint8_t kF4[] = {1, 0, 1};
    publicKey.addNumber(CKA_MODULUS_BITS, static_cast<CK_ULONG>(keySize))
        .addBytes(CKA_PUBLIC_EXPONENT, kF4);
  } else {
    publicKey.addBytes(CKA_EC_PARAMS, curveOfSize(keySize));
  }
  sys::Result<KeyPairHandles> pair =
      session.generateKeyPair(mechanism.value(), publicKey, privateKey);
  if (!pair) return pair.failure();
  changes.adopt(pair.value().publicKey);
  changes.adopt(pair.value().privateKey);
  sys::Result<sys::Bytes> info = readPublicKey(session, pair.value().publicKey);
  if (!info) return info.failure();
  return TokenKeyPair{.handles = pair.value(), .publicKey = std::move(info).value()};
}

sys::Result<TokenKeyPair> importKeyPair(Changes& changes, sys::ByteView pkcs8) {
  sys::Result<cms::KeyPtr> key = cms::readPrivateKey(pkcs8);
  if (!key) return key.failure();
  sys::Result<sys::Bytes> info = cms::publicKeyInfo(*key.value());
  if (!info) return info.failure();
  sys::Result<sys::Bytes> id = keyIdentifier(info.value());
  if (!id) return id.failure();

  Template publicKey = publicKeyTemplate(id.value());
  sys::Status status = addPublicKey(publicKey, *key.value());
  if (!status) return status.failure();
  Template privateKey = privateKeyTemplate(id.value());
  const bool isRsa = cms::describeKey(*key.value()).algorithm == cms::KeyAlgorithm::rsa;
  addOtherUses(publicKey, privateKey, isRsa);
  if (isRsa) {
    addRsaKey(privateKey, *key.value());
  } else {
    status = addEcKey(privateKey, *key.value());
  }
  if (!status) return status.failure();

  sys::Result<CK_OBJECT_HANDLE> privateHandle = changes.create(privateKey);
  if (!privateHandle) return privateHandle.failure();
  sys::Result<CK_OBJECT_HANDLE> publicHandle = changes.create(publicKey);
  if (!publicHandle) return publicHandle.failure();
  return TokenKeyPair{
      .handles = {.publicKey = publicHandle.value(), .privateKey = privateHandle.value()},
      .publicKey = std::move(info).value()};
}

}  // namespace zel::km::token
