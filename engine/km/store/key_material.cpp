#include "engine/km/store/key_material.h"

#include "engine/cms/epki.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/sys/trace.h"

namespace zel::km {

sys::Result<PrivateKey> takePrivateKey(PrivateKeys& store, sys::ByteView bytes) {
  sys::SecretBytes decrypted;
  if (cms::isEncryptedPrivateKey(bytes)) {
    sys::Result<sys::SecretBytes> opened = store.decryptedPrivateKey(bytes);
    if (!opened) return opened.failure();
    decrypted = std::move(opened).value();
    bytes = decrypted;
  }
  const sys::Result<cms::KeyPtr> key = cms::readPrivateKey(bytes);
  if (!key) return key.failure();
  sys::Result<sys::SecretBytes> pkcs8 = cms::privateKeyInfo(*key.value());
  if (!pkcs8) return pkcs8.failure();
  PrivateKey taken;
  taken.pkcs8 = std::move(pkcs8).value();
  return taken;
}

sys::Status requirePair(const PrivateKey& key, sys::ByteView publicKeyInfo) {
  const sys::Result<cms::KeyPtr> read = cms::readPrivateKey(key.pkcs8);
  if (!read) return read.failure();
  if (!cms::isPair(*read.value(), publicKeyInfo)) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_PAIR, "the private key does not belong to it");
  }
  return sys::success();
}

sys::Status requirePrivateKey(const KeyEntry& entry) {
  if (entry.privateKey.present()) return sys::success();
  return sys::fail(ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "\"%s\" has no private key",
                   entry.label.c_str());
}

sys::Result<GeneratedKey> generateKeyPair(int keySize, bool approvedOnly) {
  sys::Result<cms::KeyPtr> key = cms::generateKey(keySize);
  if (!key) return key.failure();
  sys::Result<sys::Bytes> publicKey = cms::publicKeyInfo(*key.value());
  if (!publicKey) return publicKey.failure();
  if (approvedOnly) {
    sys::Status approved = checkApproved(publicKey.value());
    if (!approved) return approved.failure();
  }
  sys::Result<sys::SecretBytes> pkcs8 = cms::privateKeyInfo(*key.value());
  if (!pkcs8) return pkcs8.failure();
  return GeneratedKey{std::move(publicKey.value()), {std::move(pkcs8.value()), {}}};
}

sys::Result<sys::Bytes> signWith(const PrivateKey& key, SigningDigest digest,
                                 sys::ByteView message) {
  if (key.pkcs8.empty()) return sys::Failure{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL};
  sys::Result<cms::KeyPtr> signer = cms::readPrivateKey(key.pkcs8);
  if (!signer) return signer.failure();
  return cms::signMessage(*signer.value(), digest, message);
}

cms::Signer signerOf(PrivateKeys& store, const PrivateKey& key) {
  return [&store, &key](SigningDigest digest, sys::ByteView message) {
    return store.sign(key, digest, message);
  };
}

}  // namespace zel::km
