#include "engine/cms/pkcs12/bags.h"

#include "engine/cms/epki.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

sys::Status addKey(PKCS12_SAFEBAG& bag, sys::Result<sys::SecretBytes> privateKeyInfo,
                   std::vector<Pkcs12Key>& keys) {
  if (!privateKeyInfo) return privateKeyInfo.failure();
  keys.push_back({attributesOf(bag), std::move(privateKeyInfo).value()});
  return sys::success();
}

sys::Status addShroudedKey(PKCS12_SAFEBAG& bag, const X509_SIG& key, PbeDecryption& decryption,
                           std::vector<Pkcs12Key>& keys, bool& hasDecrypted) {
  const sys::Status added = addKey(bag, decryptPrivateKey(key, decryption), keys);
  if (added) hasDecrypted = true;
  return added;
}

/** The key of a request is a secret of a key ring: an encrypted key, and the request beside it. */
sys::Status addSecret(PKCS12_SAFEBAG& bag, PbeDecryption& decryption, Pkcs12Contents& contents) {
  const ASN1_TYPE* secret = PKCS12_SAFEBAG_get0_bag_obj(&bag);
  if (attributesOf(bag).request.empty() || secret == nullptr ||
      secret->type != V_ASN1_OCTET_STRING) {
    sys::traceLine("a PFX holds a secret that is no key of a request; it is passed over");
    return sys::success();
  }
  const auto key = decodeDer<X509SigPtr>(d2i_X509_SIG, viewOf(secret->value.octet_string));
  if (!key) return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "read the key of a request");
  return addShroudedKey(bag, *key, decryption, contents.requestKeys, contents.hasDecrypted);
}

sys::Status addCertificate(PKCS12_SAFEBAG& bag, Pkcs12Contents& contents) {
  if (PKCS12_SAFEBAG_get_bag_nid(&bag) != NID_x509Certificate) return sys::success();
  const X509Ptr certificate(PKCS12_SAFEBAG_get1_cert(&bag));
  if (!certificate) return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "read a certificate");
  contents.certificates.push_back({attributesOf(bag), encodeDer(i2d_X509, certificate.get())});
  return sys::success();
}

sys::Status addBag(PKCS12_SAFEBAG& bag, PbeDecryption& decryption, Pkcs12Contents& contents) {
  switch (PKCS12_SAFEBAG_get_nid(&bag)) {
    case NID_keyBag:
      return addKey(
          bag,
          encodeDer<sys::SecretBytes>(i2d_PKCS8_PRIV_KEY_INFO, PKCS12_SAFEBAG_get0_p8inf(&bag)),
          contents.keys);
    case NID_pkcs8ShroudedKeyBag:
      return addShroudedKey(bag, *PKCS12_SAFEBAG_get0_pkcs8(&bag), decryption, contents.keys,
                            contents.hasDecrypted);
    case NID_certBag:
      return addCertificate(bag, contents);
    case NID_secretBag:
      return addSecret(bag, decryption, contents);
    case NID_safeContentsBag:
      return addBags(*PKCS12_SAFEBAG_get0_safes(&bag), decryption, contents);
    default:
      sys::traceLine("a PFX holds what is neither key nor certificate; it is passed over");
      return sys::success();
  }
}

}  // namespace

sys::Status addBags(const STACK_OF(PKCS12_SAFEBAG) & bags, PbeDecryption& decryption,
                    Pkcs12Contents& contents) {
  for (int i = 0; i < sk_PKCS12_SAFEBAG_num(&bags); ++i) {
    const sys::Status added = addBag(*sk_PKCS12_SAFEBAG_value(&bags, i), decryption, contents);
    if (!added) return added;
  }
  return sys::success();
}

}  // namespace zel::cms
