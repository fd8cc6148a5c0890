#include "engine/cms/pkcs12/pairing.h"

#include "engine/cms/certificates.h"
#include "engine/cms/signing.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

bool isPairOf(const EVP_PKEY& key, const Pkcs12Certificate& certificate) {
  const sys::Result<CertificateKeys> keys = readCertificateKeys(certificate.der);
  return keys && isPair(key, keys.value().publicKeyInfo);
}

}  // namespace

Pkcs12Pairing::Pkcs12Pairing(const std::vector<Pkcs12Certificate>& certificates)
    : certificates_(certificates) {
  for (std::size_t i = 0; i < certificates.size(); ++i) {
    const sys::Bytes& id = certificates[i].attributes.localKeyId;
    if (!id.empty()) byLocalKeyId_.emplace(id, i);
  }
}

sys::Result<std::size_t> Pkcs12Pairing::certificateOf(const Pkcs12Key& key) const {
  const sys::Result<KeyPtr> read = readPrivateKey(key.privateKeyInfo);
  if (!read) return read.failure();
  const auto [first, last] = byLocalKeyId_.equal_range(key.attributes.localKeyId);
  for (auto joined = first; joined != last; ++joined) {
    if (isPairOf(*read.value(), certificates_[joined->second])) return joined->second;
  }
  for (std::size_t i = 0; i < certificates_.size(); ++i) {
    if (isPairOf(*read.value(), certificates_[i])) return i;
  }
  return sys::fail(ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "a PFX holds a key without a certificate");
}

}  // namespace zel::cms
