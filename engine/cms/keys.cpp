#include "engine/cms/keys.h"

#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

constexpr int kMinRsaSize = 2048;
constexpr int kEd25519Size = 255;

bool isSupported(const EVP_PKEY& key) {
  return describeKey(key).algorithm != KeyAlgorithm::unknown;
}

/** Tells a key of an algorithm that is not ours from bytes that are not as the algorithm wants. */
sys::Result<KeyPtr> readPkcs8(const PKCS8_PRIV_KEY_INFO& info) {
  KeyPtr key(EVP_PKCS82PKEY(&info));
  if (key && isSupported(*key)) return key;

  const ASN1_OBJECT* algorithm = nullptr;
  PKCS8_pkey_get0(&algorithm, nullptr, nullptr, nullptr, &info);
  switch (OBJ_obj2nid(algorithm)) {
    case NID_rsaEncryption:
    case NID_X9_62_id_ecPublicKey:
    case NID_ED25519:
      return cryptoFailure(ZELKM_ERR_ASN, "read a private key");
    default:
      return cryptoFailure(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "read a private key");
  }
}

}  // namespace

sys::Result<KeyPtr> generateKey(int size) {
  KeyPtr key;
  switch (size) {
    case 256:
      key.reset(EVP_EC_gen("P-256"));
      break;
    case 384:
      key.reset(EVP_EC_gen("P-384"));
      break;
    case 521:
      key.reset(EVP_EC_gen("P-521"));
      break;
    case 25519:
      key.reset(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
      break;
    default:
      if (size < kMinRsaSize || size > kMaxKeySize) {
        return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE, "no key has the size %d", size);
      }
      key.reset(EVP_RSA_gen(static_cast<unsigned int>(size)));
  }
  if (!key) return cryptoFailure(ZELKM_ERR_CRYPTO, "generate a key");
  return key;
}

KeyTraits describeKey(const EVP_PKEY& key) {
  switch (EVP_PKEY_get_base_id(&key)) {
    case EVP_PKEY_RSA:
      return {KeyAlgorithm::rsa, EVP_PKEY_get_bits(&key)};
    case EVP_PKEY_RSA_PSS:
      return {KeyAlgorithm::rsa, EVP_PKEY_get_bits(&key), true};
    case EVP_PKEY_EC:
      return {KeyAlgorithm::ec, EVP_PKEY_get_bits(&key)};
    case EVP_PKEY_ED25519:
      return {KeyAlgorithm::ed25519, kEd25519Size};
    default:
      return {KeyAlgorithm::unknown, EVP_PKEY_get_bits(&key)};
  }
}

sys::Result<KeyTraits> describePublicKey(sys::ByteView spki) {
  const PublicKeyPtr info = decodeDer<PublicKeyPtr>(d2i_X509_PUBKEY, spki);
  if (!info) return cryptoFailure(ZELKM_ERR_ASN, "read a public key");
  const EVP_PKEY* key = X509_PUBKEY_get0(info.get());
  if (key == nullptr) {
    ERR_clear_error();
    return KeyTraits{};
  }
  return describeKey(*key);
}

sys::Result<sys::Bytes> publicKeyInfo(const EVP_PKEY& key) {
  sys::Bytes spki = encodeDer(i2d_PUBKEY, &key);
  if (spki.empty()) return cryptoFailure(ZELKM_ERR_CRYPTO, "encode a public key");
  return spki;
}

sys::Result<sys::SecretBytes> privateKeyInfo(const EVP_PKEY& key) {
  const Pkcs8Ptr info(EVP_PKEY2PKCS8(&key));
  sys::SecretBytes der;
  if (info) der = encodeDer<sys::SecretBytes>(i2d_PKCS8_PRIV_KEY_INFO, info.get());
  if (der.empty()) return cryptoFailure(ZELKM_ERR_CRYPTO, "encode a private key");
  return der;
}

sys::Result<KeyPtr> readPrivateKey(sys::ByteView der) {
  const Pkcs8Ptr info = decodeDer<Pkcs8Ptr>(d2i_PKCS8_PRIV_KEY_INFO, der);
  if (info) return readPkcs8(*info);

  const auto decodeTraditional = [](EVP_PKEY** key, const unsigned char** at, long length) {
    return d2i_AutoPrivateKey(key, at, length);
  };
  KeyPtr key = decodeDer<KeyPtr>(decodeTraditional, der);
  if (!key) return cryptoFailure(ZELKM_ERR_ASN, "read a private key");
  if (!isSupported(*key)) {
    return sys::fail(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "the key is not RSA, EC or Ed25519");
  }
  ERR_clear_error();
  return key;
}

}  // namespace zel::cms
