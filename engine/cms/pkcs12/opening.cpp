#include "engine/cms/pkcs12/opening.h"

#include "engine/cms/crypto_context.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** What the integrity check says of a password. */
enum class Integrity { absent, confirmed, denied };

constexpr PbePassword kNoPassword = {nullptr, 0};

/** The safes of a PFX, each with a content, which RFC 2315 makes optional. */
sys::Result<Pkcs12SafesPtr> safesOf(const PKCS12& pfx) {
  Pkcs12SafesPtr safes(PKCS12_unpack_authsafes(&pfx));
  if (!safes) return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "read the safes of a PFX");
  for (int i = 0; i < sk_PKCS7_num(safes.get()); ++i) {
    if (sk_PKCS7_value(safes.get(), i)->d.ptr == nullptr) {
      return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "a safe without content");
    }
  }
  return safes;
}

sys::Result<Pkcs12Ptr> decode(sys::ByteView file) {
  // Decoding into an object of the legacy context makes OpenSSL look its digests up there.
  PKCS12* pfx = PKCS12_init_ex(NID_pkcs7_data, legacyCryptoContext(), nullptr);
  const unsigned char* at = file.data();
  if (pfx == nullptr || d2i_PKCS12(&pfx, &at, static_cast<long>(file.size())) == nullptr) {
    return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "read a PFX");
  }
  Pkcs12Ptr owned(pfx);
  if (at != file.data() + file.size()) {
    return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "a PFX with something after it");
  }
  return owned;
}

sys::Result<Integrity> checkIntegrity(PKCS12& pfx, PbePassword password) {
  if (PKCS12_mac_present(&pfx) == 0) return Integrity::absent;
  const ASN1_INTEGER* iterations = nullptr;
  const X509_ALGOR* algorithm = nullptr;
  PKCS12_get0_mac(nullptr, &algorithm, nullptr, &iterations, &pfx);
  std::int64_t count = 1;
  if (iterations != nullptr && ASN1_INTEGER_get_int64(&count, iterations) != 1) {
    count = kMaxIterations + 1;
  }
  const ASN1_OBJECT* digest = nullptr;
  X509_ALGOR_get0(&digest, nullptr, nullptr, algorithm);
  if (count > kMaxIterations || EVP_get_digestbyobj(digest) == nullptr) {
    return cryptoFailure(ZELKM_ERR_PBE_ALG_UNSUPPORT, "check the integrity of a PFX");
  }
  const bool isConfirmed = PKCS12_verify_mac(&pfx, password.text, password.length) == 1;
  ERR_clear_error();
  return isConfirmed ? Integrity::confirmed : Integrity::denied;
}

/** An encrypted safe's bags. ZELKM_ERR_INVALID_PKCS12_DATA when they do not come out as bags. */
sys::Result<Pkcs12BagsPtr> decryptSafe(const PKCS7& safe, PbeDecryption& decryption) {
  const PKCS7_ENC_CONTENT* content = safe.d.encrypted->enc_data;
  const ASN1_OCTET_STRING* cipherText = content->enc_data;
  if (cipherText == nullptr) return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "an empty safe");
  const sys::Result<sys::SecretBytes> plain =
      decryption.decrypt(*content->algorithm, viewOf(cipherText));
  if (plain.code() == ZELKM_ERR_DATABASE_KEY_INTEGRITY) {
    return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "an encrypted safe is cut off");
  }
  if (!plain) return plain.failure();

  const unsigned char* at = plain.value().data();
  Pkcs12BagsPtr bags(reinterpret_cast<STACK_OF(PKCS12_SAFEBAG)*>(ASN1_item_d2i(
      nullptr, &at, static_cast<long>(plain.value().size()), ASN1_ITEM_rptr(PKCS12_SAFEBAGS))));
  const auto taken = static_cast<std::size_t>(at - plain.value().data());
  if (!bags || !isPadding(sys::ByteView(plain.value()).subspan(taken))) {
    return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "decrypt a safe");
  }
  return bags;
}

sys::Result<Pkcs12BagsPtr> openSafe(PKCS7& safe, PbeDecryption& decryption) {
  if (PKCS7_type_is_encrypted(&safe)) return decryptSafe(safe, decryption);
  if (!PKCS7_type_is_data(&safe)) {
    return sys::fail(ZELKM_ERR_PBE_ALG_UNSUPPORT, "a PFX that is encrypted for a public key");
  }
  Pkcs12BagsPtr bags(PKCS12_unpack_p7data(&safe));
  if (!bags) return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "read a safe");
  return bags;
}

/**
 * Opens all safes. A failed decryption alone does not tell a wrong password from damage:
 * ZELKM_ERR_INVALID_PKCS12_DATA stands for both here.
 */
sys::Result<Pkcs12Contents> openAll(const STACK_OF(PKCS7) & safes, PbeDecryption& decryption) {
  Pkcs12Contents contents;
  for (int i = 0; i < sk_PKCS7_num(&safes); ++i) {
    PKCS7& safe = *sk_PKCS7_value(&safes, i);
    const sys::Result<Pkcs12BagsPtr> bags = openSafe(safe, decryption);
    if (!bags) return bags.failure();
    if (PKCS7_type_is_encrypted(&safe)) contents.hasDecrypted = true;
    const sys::Status added = addBags(*bags.value(), decryption, contents);
    if (added.code() == ZELKM_ERR_PBE_ALG_UNSUPPORT) return added.failure();
    if (!added) return sys::Failure{ZELKM_ERR_INVALID_PKCS12_DATA};
  }
  return contents;
}

/**
 * Opens with one password. The integrity check is over the whole file, so a check that fails says
 * "wrong password or damaged"; a password that nevertheless opens the safes is the right one.
 */
sys::Result<Pkcs12Contents> openWith(PKCS12& pfx, PbePassword password) {
  const sys::Result<Pkcs12SafesPtr> safes = safesOf(pfx);
  if (!safes) return safes.failure();
  const sys::Result<Integrity> integrity = checkIntegrity(pfx, password);
  if (!integrity) return integrity.failure();
  PbeDecryption decryption(password);
  sys::Result<Pkcs12Contents> contents = openAll(*safes.value(), decryption);
  if (contents.code() == ZELKM_ERR_PBE_ALG_UNSUPPORT) return contents;
  if (integrity.value() == Integrity::confirmed) return contents;
  if (contents && integrity.value() == Integrity::absent) return contents;
  if (contents && contents.value().hasDecrypted) {
    return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "a PFX is not as it was written");
  }
  return sys::fail(ZELKM_ERR_PKCS12_PWD_CORRUPTION, "the password of a PFX is wrong");
}

}  // namespace

sys::Result<Pkcs12Contents> openPkcs12(sys::ByteView file, sys::ByteView password) {
  const sys::Result<Pkcs12Ptr> pfx = decode(file);
  if (!pfx) return pfx.failure();
  sys::Result<Pkcs12Contents> contents = openWith(*pfx.value(), pbePassword(password));
  // To a caller the empty password and none are one.
  if (contents.code() == ZELKM_ERR_PKCS12_PWD_CORRUPTION && password.empty()) {
    contents = openWith(*pfx.value(), kNoPassword);
  }
  return contents;
}

}  // namespace zel::cms
