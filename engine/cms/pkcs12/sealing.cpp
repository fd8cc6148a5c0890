#include "engine/cms/pkcs12/sealing.h"

#include <openssl/rand.h>

#include "engine/cms/pbe.h"

namespace zel::cms {

namespace {

/** What an encryption comes down to. */
struct Recipe {
  int algorithm; /**< of a safe, by OpenSSL's number */
  int iterations;
};

constexpr Recipe kStrong = {NID_aes_256_cbc, 100'000};
constexpr Recipe kReadable = {NID_pbe_WithSHA1And3_Key_TripleDES_CBC, 2'000};

/** Describes a bag and moves it to the end of the others; false when there is none to move. */
bool append(STACK_OF(PKCS12_SAFEBAG) & bags, Pkcs12BagPtr bag, const Pkcs12Attributes& attributes) {
  if (!bag || !setAttributes(*bag, attributes)) return false;
  if (sk_PKCS12_SAFEBAG_push(&bags, bag.get()) <= 0) return false;
  (void)bag.release();
  return true;
}

/** Moves a safe to the end of the safes; false when there is none to move. */
bool append(STACK_OF(PKCS7) & safes, Pkcs7Ptr safe) {
  if (!safe || sk_PKCS7_push(&safes, safe.get()) <= 0) return false;
  (void)safe.release();
  return true;
}

bool addCertificateSafe(STACK_OF(PKCS7) & safes, STACK_OF(PKCS12_SAFEBAG) & bags,
                        PbePassword password, const Recipe& recipe) {
  if (sk_PKCS12_SAFEBAG_num(&bags) == 0) return true;
  return append(safes,
                Pkcs7Ptr(PKCS12_pack_p7encdata(recipe.algorithm, password.text, password.length,
                                               nullptr, 0, recipe.iterations, &bags)));
}

/** Each of the keys is encrypted by itself, their safe is not. */
bool addKeySafe(STACK_OF(PKCS7) & safes, STACK_OF(PKCS12_SAFEBAG) & bags) {
  return sk_PKCS12_SAFEBAG_num(&bags) == 0 || append(safes, Pkcs7Ptr(PKCS12_pack_p7data(&bags)));
}

X509SigPtr shroudReadably(sys::ByteView privateKeyInfo, PbePassword password) {
  const auto key = decodeDer<Pkcs8Ptr>(d2i_PKCS8_PRIV_KEY_INFO, privateKeyInfo);
  return X509SigPtr(key ? PKCS8_encrypt(kReadable.algorithm, nullptr, password.text,
                                        password.length, nullptr, 0, kReadable.iterations,
                                        key.get())
                        : nullptr);
}

}  // namespace

sys::Result<Pkcs12Draft> Pkcs12Draft::begin(sys::ByteView password, Pkcs12Encryption encryption) {
  Pkcs12Draft draft(password, encryption);
  draft.certificates_.reset(sk_PKCS12_SAFEBAG_new_null());
  draft.keys_.reset(sk_PKCS12_SAFEBAG_new_null());
  if (!draft.certificates_ || !draft.keys_) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "begin a PFX");
  }
  return draft;
}

sys::Status Pkcs12Draft::addCertificate(const sys::Bytes& der, const Pkcs12Attributes& attributes) {
  const X509Ptr certificate = decodeDer<X509Ptr>(d2i_X509, der);
  if (!certificate) return cryptoFailure(ZELKM_ERR_ASN, "read a certificate");
  Pkcs12BagPtr bag(PKCS12_SAFEBAG_create_cert(certificate.get()));
  if (append(*certificates_, std::move(bag), attributes)) return sys::success();
  return cryptoFailure(ZELKM_ERR_CRYPTO, "name a certificate");
}

sys::Status Pkcs12Draft::addKey(sys::ByteView privateKeyInfo, const Pkcs12Attributes& attributes) {
  sys::Result<X509SigPtr> shrouded = shroud(privateKeyInfo);
  if (!shrouded) return shrouded.failure();
  Pkcs12BagPtr bag(PKCS12_SAFEBAG_create0_pkcs8(shrouded.value().get()));
  if (bag) (void)shrouded.value().release();
  if (append(*keys_, std::move(bag), attributes)) return sys::success();
  return cryptoFailure(ZELKM_ERR_CRYPTO, "name a private key");
}

sys::Status Pkcs12Draft::addRequestKey(sys::ByteView privateKeyInfo,
                                       const Pkcs12Attributes& attributes) {
  const sys::Result<X509SigPtr> shrouded = shroud(privateKeyInfo);
  if (!shrouded) return shrouded.failure();
  const sys::Bytes epki = encodeDer(i2d_X509_SIG, shrouded.value().get());
  Pkcs12BagPtr bag(PKCS12_SAFEBAG_create_secret(NID_pkcs8ShroudedKeyBag, V_ASN1_OCTET_STRING,
                                                epki.data(), static_cast<int>(epki.size())));
  if (append(*keys_, std::move(bag), attributes)) return sys::success();
  return cryptoFailure(ZELKM_ERR_CRYPTO, "name the key of a request");
}

sys::Result<X509SigPtr> Pkcs12Draft::shroud(sys::ByteView privateKeyInfo) {
  if (encryption_ == Pkcs12Encryption::strong) return shroudStrongly(privateKeyInfo);
  X509SigPtr shrouded = shroudReadably(privateKeyInfo, pbePassword(password_));
  if (!shrouded) return cryptoFailure(ZELKM_ERR_CRYPTO, "encrypt a private key");
  return shrouded;
}

sys::Result<X509SigPtr> Pkcs12Draft::shroudStrongly(sys::ByteView privateKeyInfo) {
  if (!strongKey_) {
    sys::Bytes salt(kPbeSaltLength);
    if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
      return cryptoFailure(ZELKM_ERR_CRYPTO, "draw a salt");
    }
    sys::Result<PbeKey> derived = derivePbeKey(password_, salt, kStrong.iterations);
    if (!derived) return derived.failure();
    strongKey_ = std::move(derived).value();
  }
  const sys::Result<sys::Bytes> epki = encryptPrivateKey(privateKeyInfo, *strongKey_);
  if (!epki) return epki.failure();
  X509SigPtr shrouded = decodeDer<X509SigPtr>(d2i_X509_SIG, epki.value());
  if (!shrouded) return cryptoFailure(ZELKM_ERR_CRYPTO, "encrypt a private key");
  return shrouded;
}

sys::Result<sys::Bytes> Pkcs12Draft::seal() {
  const Recipe& recipe = encryption_ == Pkcs12Encryption::strong ? kStrong : kReadable;
  const PbePassword secret = pbePassword(password_);
  const Pkcs12SafesPtr safes(sk_PKCS7_new_null());
  if (!safes) return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "gather the safes of a PFX");
  if (!addCertificateSafe(*safes, *certificates_, secret, recipe) || !addKeySafe(*safes, *keys_)) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "encrypt the certificates of a PFX");
  }
  const Pkcs12Ptr pfx(PKCS12_add_safes(safes.get(), 0));
  if (!pfx || PKCS12_set_mac(pfx.get(), secret.text, secret.length, nullptr, 0, recipe.iterations,
                             EVP_sha256()) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "protect a PFX");
  }
  return encodeDer(i2d_PKCS12, pfx.get());
}

}  // namespace zel::cms
