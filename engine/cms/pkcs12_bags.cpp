#include "engine/cms/pkcs12_bags.h"

#include "engine/cms/epki.h"
#include "engine/cms/pkcs12_attributes.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

std::string friendlyNameOf(PKCS12_SAFEBAG& bag) {
  char* name = PKCS12_get_friendlyname(&bag);
  if (name == nullptr) return {};
  std::string text = name;
  OPENSSL_free(name);
  return text;
}

bool hasTrustMark(const PKCS12_SAFEBAG& bag) {
  const std::unique_ptr<ASN1_OBJECT, Releaser<ASN1_OBJECT_free>> mark(
      OBJ_txt2obj(kPkcs12TrustedKeyUsage, 1));
  return X509at_get_attr_by_OBJ(PKCS12_SAFEBAG_get0_attrs(&bag), mark.get(), -1) >= 0;
}

Pkcs12Attributes attributesOf(PKCS12_SAFEBAG& bag) {
  Pkcs12Attributes attributes{friendlyNameOf(bag), {}, hasTrustMark(bag)};
  const ASN1_TYPE* id = PKCS12_SAFEBAG_get0_attr(&bag, NID_localKeyID);
  if (id != nullptr && id->type == V_ASN1_OCTET_STRING) {
    const sys::ByteView bytes = viewOf(id->value.octet_string);
    attributes.localKeyId.assign(bytes.begin(), bytes.end());
  }
  ERR_clear_error();
  return attributes;
}

sys::Status addKey(PKCS12_SAFEBAG& bag, sys::Result<sys::SecretBytes> privateKeyInfo,
                   Pkcs12Contents& contents) {
  if (!privateKeyInfo) return privateKeyInfo.failure();
  contents.keys.push_back({attributesOf(bag), std::move(privateKeyInfo).value()});
  return sys::success();
}

sys::Status addCertificate(PKCS12_SAFEBAG& bag, Pkcs12Contents& contents) {
  if (PKCS12_SAFEBAG_get_bag_nid(&bag) != NID_x509Certificate) return sys::success();
  const X509Ptr certificate(PKCS12_SAFEBAG_get1_cert(&bag));
  if (!certificate) return cryptoFailure(ZELKM_ERR_INVALID_PKCS12_DATA, "read a certificate");
  contents.certificates.push_back({attributesOf(bag), encodeDer(i2d_X509, certificate.get())});
  return sys::success();
}

sys::Status addBag(PKCS12_SAFEBAG& bag, PbePassword password, Pkcs12Contents& contents) {
  switch (PKCS12_SAFEBAG_get_nid(&bag)) {
    case NID_keyBag:
      return addKey(
          bag,
          encodeDer<sys::SecretBytes>(i2d_PKCS8_PRIV_KEY_INFO, PKCS12_SAFEBAG_get0_p8inf(&bag)),
          contents);
    case NID_pkcs8ShroudedKeyBag: {
      const sys::Status added =
          addKey(bag, decryptPrivateKey(*PKCS12_SAFEBAG_get0_pkcs8(&bag), password), contents);
      if (added) contents.hasDecrypted = true;
      return added;
    }
    case NID_certBag:
      return addCertificate(bag, contents);
    case NID_safeContentsBag:
      return addBags(*PKCS12_SAFEBAG_get0_safes(&bag), password, contents);
    default:
      sys::traceLine("a PFX holds what is neither key nor certificate; it is passed over");
      return sys::success();
  }
}

}  // namespace

sys::Status addBags(const STACK_OF(PKCS12_SAFEBAG) & bags, PbePassword password,
                    Pkcs12Contents& contents) {
  for (int i = 0; i < sk_PKCS12_SAFEBAG_num(&bags); ++i) {
    const sys::Status added = addBag(*sk_PKCS12_SAFEBAG_value(&bags, i), password, contents);
    if (!added) return added;
  }
  return sys::success();
}

}  // namespace zel::cms
