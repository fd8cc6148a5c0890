#include <openssl/rand.h>

#include <set>

#include "engine/cms/epki.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pbe.h"
#include "engine/cms/pkcs12.h"
#include "engine/cms/pkcs12_attributes.h"

namespace zel::cms {

namespace {

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

/** The keys, encrypted under one derived key: one derivation however many there are. */
sys::Status addKeys(const std::vector<Pkcs12Entry>& entries, sys::ByteView password,
                    STACK_OF(PKCS12_SAFEBAG) & bags) {
  sys::Bytes salt(kPbeSaltLength);
  if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "draw a salt");
  }
  const sys::Result<PbeKey> pbe = derivePbeKey(password, salt, kPkcs12Iterations);
  if (!pbe) return pbe.failure();

  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    const Pkcs12Entry& entry = entries[i];
    if (entry.privateKeyInfo.empty()) continue;
    const sys::Result<sys::Bytes> epki = encryptPrivateKey(entry.privateKeyInfo, pbe.value());
    if (!epki) return epki.failure();
    X509SigPtr shrouded = decodeDer<X509SigPtr>(d2i_X509_SIG, epki.value());
    Pkcs12BagPtr bag(shrouded ? PKCS12_SAFEBAG_create0_pkcs8(shrouded.get()) : nullptr);
    if (bag) (void)shrouded.release();
    if (!bag || !setFriendlyName(*bag, entry.friendlyName) || !setLocalKeyId(*bag, i + 1) ||
        !append(bags, std::move(bag))) {
      return cryptoFailure(ZELKM_ERR_CRYPTO, "name a private key");
    }
  }
  return sys::success();
}

/** Adds the bags as one safe: encrypted as a whole, or as they are when each is by itself. */
bool addSafe(STACK_OF(PKCS7) & safes, STACK_OF(PKCS12_SAFEBAG) & bags, PbePassword password,
             bool encrypt) {
  if (sk_PKCS12_SAFEBAG_num(&bags) == 0) return true;
  Pkcs7Ptr safe(encrypt ? PKCS12_pack_p7encdata(NID_aes_256_cbc, password.text, password.length,
                                                nullptr, 0, kPkcs12Iterations, &bags)
                        : PKCS12_pack_p7data(&bags));
  if (!safe || sk_PKCS7_push(&safes, safe.get()) <= 0) return false;
  (void)safe.release();
  return true;
}

}  // namespace

sys::Result<sys::Bytes> writePkcs12(const std::vector<Pkcs12Entry>& entries,
                                    sys::ByteView password) {
  const Pkcs12BagsPtr certificates(sk_PKCS12_SAFEBAG_new_null());
  const Pkcs12BagsPtr keys(sk_PKCS12_SAFEBAG_new_null());
  const Pkcs12SafesPtr safes(sk_PKCS7_new_null());
  if (!certificates || !keys || !safes)
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "begin a PFX");

  sys::Status status = addCertificates(entries, *certificates);
  if (status) status = addKeys(entries, password, *keys);
  if (!status) return status.failure();

  const PbePassword secret = pbePassword(password);
  if (!addSafe(*safes, *certificates, secret, true) || !addSafe(*safes, *keys, secret, false)) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "encrypt the certificates of a PFX");
  }
  const Pkcs12Ptr pfx(PKCS12_add_safes(safes.get(), 0));
  if (!pfx || PKCS12_set_mac(pfx.get(), secret.text, secret.length, nullptr, 0, kPkcs12Iterations,
                             EVP_sha256()) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "protect a PFX");
  }
  return encodeDer(i2d_PKCS12, pfx.get());
}

}  // namespace zel::cms
