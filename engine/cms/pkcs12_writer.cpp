#include <openssl/rand.h>

#include <set>

#include "engine/cms/epki.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pbe.h"
#include "engine/cms/pkcs12.h"
#include "engine/cms/pkcs12_attributes.h"

namespace zel::cms {

namespace {

/** What an encryption comes down to. */
struct Recipe {
  int algorithm; /**< of a safe, by OpenSSL's number */
  int iterations;
};

constexpr Recipe kStrong = {NID_aes_256_cbc, 100'000};
constexpr Recipe kReadable = {NID_pbe_WithSHA1And3_Key_TripleDES_CBC, 2'000};

bool setFriendlyName(PKCS12_SAFEBAG& bag, const std::string& name) {
  if (name.empty()) return true;
  // OpenSSL's setter for UTF-8 refuses what lies beyond the basic plane; UTF-16 carries it.
  unsigned char* utf16 = nullptr;
  int length = 0;
  if (OPENSSL_utf82uni(name.data(), static_cast<int>(name.size()), &utf16, &length) == nullptr) {
    return false;
  }
  constexpr int kTerminatorLength = 2;
  const bool done = PKCS12_add_friendlyname_uni(&bag, utf16, length - kTerminatorLength) == 1;
  OPENSSL_free(utf16);
  return done;
}

bool setLocalKeyId(PKCS12_SAFEBAG& bag, std::uint32_t number) {
  unsigned char bytes[] = {
      static_cast<unsigned char>(number >> 24), static_cast<unsigned char>(number >> 16),
      static_cast<unsigned char>(number >> 8), static_cast<unsigned char>(number)};
  return PKCS12_add_localkeyid(&bag, bytes, sizeof bytes) == 1;
}

bool setTrusted(PKCS12_SAFEBAG& bag) {
  const ASN1_OBJECT* anyUse = OBJ_nid2obj(NID_anyExtendedKeyUsage);
  // The length -1 says that the value is an object of the type, not its bytes.
  return PKCS12_add1_attr_by_txt(&bag, kPkcs12TrustedKeyUsage, V_ASN1_OBJECT,
                                 reinterpret_cast<const unsigned char*>(anyUse), -1) == 1;
}

/** Moves a bag to the end of the bags; false when there is none to move. */
bool append(STACK_OF(PKCS12_SAFEBAG) & bags, Pkcs12BagPtr bag) {
  if (!bag || sk_PKCS12_SAFEBAG_push(&bags, bag.get()) <= 0) return false;
  (void)bag.release();
  return true;
}

Pkcs12BagPtr certificateBag(const sys::Bytes& der) {
  const X509Ptr certificate = decodeDer<X509Ptr>(d2i_X509, der);
  return Pkcs12BagPtr(certificate ? PKCS12_SAFEBAG_create_cert(certificate.get()) : nullptr);
}

sys::Status addEntryCertificate(const Pkcs12Entry& entry, std::uint32_t number,
                                STACK_OF(PKCS12_SAFEBAG) & bags) {
  const bool hasKey = !entry.privateKeyInfo.empty();
  Pkcs12BagPtr bag = certificateBag(entry.chain.front());
  if (!bag) return cryptoFailure(ZELKM_ERR_ASN, "read a certificate");
  if (!setFriendlyName(*bag, entry.friendlyName) || (hasKey && !setLocalKeyId(*bag, number)) ||
      (!hasKey && entry.trusted && !setTrusted(*bag)) || !append(bags, std::move(bag))) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "name a certificate");
  }
  return sys::success();
}

/** The certificates of the entries, then the issuers that are none of them. */
sys::Status addCertificates(const std::vector<Pkcs12Entry>& entries,
                            STACK_OF(PKCS12_SAFEBAG) & bags) {
  std::set<sys::Bytes> written;
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    const sys::Status added = addEntryCertificate(entries[i], i + 1, bags);
    if (!added) return added;
    written.insert(entries[i].chain.front());
  }
  for (const Pkcs12Entry& entry : entries) {
    for (const sys::Bytes& issuer : entry.chain) {
      if (!written.insert(issuer).second) continue;
      if (!append(bags, certificateBag(issuer))) {
        return cryptoFailure(ZELKM_ERR_ASN, "read an issuer");
      }
    }
  }
  return sys::success();
}

/** Adds the keys, each encrypted by the function given, which answers null when it fails. */
template <typename Shroud>
sys::Status addKeysBy(const Shroud& shroud, const std::vector<Pkcs12Entry>& entries,
                      STACK_OF(PKCS12_SAFEBAG) & bags) {
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    const Pkcs12Entry& entry = entries[i];
    if (entry.privateKeyInfo.empty()) continue;
    X509SigPtr shrouded = shroud(entry.privateKeyInfo);
    if (!shrouded) return cryptoFailure(ZELKM_ERR_CRYPTO, "encrypt a private key");
    Pkcs12BagPtr bag(PKCS12_SAFEBAG_create0_pkcs8(shrouded.get()));
    if (bag) (void)shrouded.release();
    if (!bag || !setFriendlyName(*bag, entry.friendlyName) || !setLocalKeyId(*bag, i + 1) ||
        !append(bags, std::move(bag))) {
      return cryptoFailure(ZELKM_ERR_CRYPTO, "name a private key");
    }
  }
  return sys::success();
}

/** The keys, encrypted under one derived key: one derivation however many there are. */
sys::Status addStrongKeys(const std::vector<Pkcs12Entry>& entries, sys::ByteView password,
                          STACK_OF(PKCS12_SAFEBAG) & bags) {
  sys::Bytes salt(kPbeSaltLength);
  if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "draw a salt");
  }
  const sys::Result<PbeKey> pbe = derivePbeKey(password, salt, kStrong.iterations);
  if (!pbe) return pbe.failure();
  const auto shroud = [&](sys::ByteView privateKeyInfo) {
    const sys::Result<sys::Bytes> epki = encryptPrivateKey(privateKeyInfo, pbe.value());
    return epki ? decodeDer<X509SigPtr>(d2i_X509_SIG, epki.value()) : nullptr;
  };
  return addKeysBy(shroud, entries, bags);
}

sys::Status addReadableKeys(const std::vector<Pkcs12Entry>& entries, PbePassword password,
                            STACK_OF(PKCS12_SAFEBAG) & bags) {
  const auto shroud = [&](sys::ByteView privateKeyInfo) {
    const auto key = decodeDer<Pkcs8Ptr>(d2i_PKCS8_PRIV_KEY_INFO, privateKeyInfo);
    return X509SigPtr(key ? PKCS8_encrypt(kReadable.algorithm, nullptr, password.text,
                                          password.length, nullptr, 0, kReadable.iterations,
                                          key.get())
                          : nullptr);
  };
  return addKeysBy(shroud, entries, bags);
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

}  // namespace

sys::Result<sys::Bytes> writePkcs12(const std::vector<Pkcs12Entry>& entries, sys::ByteView password,
                                    Pkcs12Encryption encryption) {
  const Pkcs12BagsPtr certificates(sk_PKCS12_SAFEBAG_new_null());
  const Pkcs12BagsPtr keys(sk_PKCS12_SAFEBAG_new_null());
  const Pkcs12SafesPtr safes(sk_PKCS7_new_null());
  if (!certificates || !keys || !safes)
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "begin a PFX");

  const bool isStrong = encryption == Pkcs12Encryption::strong;
  const Recipe& recipe = isStrong ? kStrong : kReadable;
  const PbePassword secret = pbePassword(password);
  sys::Status status = addCertificates(entries, *certificates);
  if (status) {
    status = isStrong ? addStrongKeys(entries, password, *keys)
                      : addReadableKeys(entries, secret, *keys);
  }
  if (!status) return status.failure();

  if (!addCertificateSafe(*safes, *certificates, secret, recipe) || !addKeySafe(*safes, *keys)) {
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
