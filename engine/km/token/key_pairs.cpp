#include "engine/km/token/key_pairs.h"

#include <openssl/rand.h>

#include <new>

#include "engine/cms/keys.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/km/token/object_templates.h"
#include "engine/km/token/token_reading.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

constexpr int kMinRsaSize = 2048;
constexpr std::size_t kProvisionalIdLength = 20;

bool isCurveSize(int keySize) { return keySize == 256 || keySize == 384 || keySize == 521; }

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

/** A key pair that is destroyed again unless somebody keeps it. */
class MadePair {
 public:
  MadePair(const Session& session, const KeyPairHandles& handles)
      : session_(session), handles_(handles) {}
  ~MadePair() {
    if (!kept_) destroyKeyPair(session_, handles_);
  }
  MadePair(const MadePair&) = delete;
  MadePair& operator=(const MadePair&) = delete;

  void keep() { kept_ = true; }

 private:
  const Session& session_;
  const KeyPairHandles handles_;
  bool kept_ = false;
};

}  // namespace

sys::Result<KeyPairObjects> generateKeyPair(const Session& session, int keySize) {
  sys::Result<CK_MECHANISM_TYPE> mechanism = mechanismFor(session, keySize);
  if (!mechanism) return mechanism.failure();
  sys::Result<sys::Bytes> id = provisionalId();
  if (!id) return id.failure();
  const KeyPairTemplates wanted =
      isCurveSize(keySize) ? newEcPair(keySize, id.value()) : newRsaPair(keySize, id.value());
  sys::Result<KeyPairHandles> handles =
      session.generateKeyPair(mechanism.value(), wanted.publicKey, wanted.privateKey);
  if (!handles) return handles.failure();
  MadePair made(session, handles.value());
  sys::Result<KeyPairObjects> pair = readKeyPair(session, handles.value());
  if (pair) made.keep();
  return pair;
}

void destroyKeyPair(const Session& session, const KeyPairHandles& pair) noexcept {
  for (const CK_OBJECT_HANDLE object : {pair.privateKey, pair.publicKey}) {
    try {
      (void)session.destroyAnyway(object);
    } catch (const std::bad_alloc&) {  // there was no memory to trace that it could not be done
      continue;
    }
  }
}

}  // namespace zel::km::token
