#include "tests/engine/errors/documents.h"

#include <openssl/x509v3.h>

#include <algorithm>

#include "engine/cms/issued_extensions.h"
#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/requests.h"

namespace zel::km::errors {

namespace {

cms::Signer signerWith(const EVP_PKEY& key) {
  return [&key](cms::SigningDigest digest, sys::ByteView message) {
    return cms::signMessage(key, digest, message);
  };
}

}  // namespace

sys::Bytes privateKeyOf(const EVP_PKEY& key) {
  const sys::SecretBytes pkcs8 = cms::privateKeyInfo(key).value();
  return {pkcs8.begin(), pkcs8.end()};
}

cms::KeyPtr foreignKey() { return cms::KeyPtr(EVP_PKEY_Q_keygen(nullptr, nullptr, "X25519")); }

sys::Bytes requestOf(const EVP_PKEY& key, const std::string& commonName) {
  const cms::RequestPlan plan{.subject = cms::encodeName({.cn = commonName}).value(),
                              .publicKeyInfo = cms::publicKeyInfo(key).value()};
  return cms::buildRequest(plan, cms::describeKey(key), cms::kByKeyStrength, signerWith(key))
      .value();
}

sys::Bytes authorityCertificate(const cms::TestAuthority& authority) {
  const sys::Bytes publicKey = cms::publicKeyInfo(authority.key()).value();
  const cms::CertificatePlan plan{.days = 20,
                                  .subject = authority.name(),
                                  .issuer = authority.name(),
                                  .publicKeyInfo = publicKey,
                                  .extensions = cms::authorityExtensions(publicKey).value()};
  return cms::issueCertificate(plan, cms::describeKey(authority.key()), cms::kByKeyStrength,
                               signerWith(authority.key()))
      .value();
}

sys::Bytes certificateFrom(const cms::TestAuthority& issuer, const sys::Bytes& issuerCertificate,
                           const cms::TestAuthority& subject) {
  const sys::Bytes publicKey = cms::publicKeyInfo(subject.key()).value();
  const cms::CertificatePlan plan{
      .days = 10,
      .subject = subject.name(),
      .issuer = issuer.name(),
      .publicKeyInfo = publicKey,
      .extensions = cms::issuedExtensions({}, publicKey, issuerCertificate).value()};
  return cms::issueCertificate(plan, cms::describeKey(issuer.key()), cms::kByKeyStrength,
                               signerWith(issuer.key()))
      .value();
}

sys::Bytes changed(const sys::Bytes& certificate, const cms::TestAuthority& issuer,
                   void (*change)(X509& certificate)) {
  const cms::X509Ptr read = cms::decodeDer<cms::X509Ptr>(d2i_X509, certificate);
  change(*read);
  X509_sign(read.get(), const_cast<EVP_PKEY*>(&issuer.key()), EVP_sha256());
  return cms::encodeDer(i2d_X509, read.get());
}

void removeExtension(X509& certificate, int nid) {
  X509_EXTENSION_free(X509_delete_ext(&certificate, X509_get_ext_by_NID(&certificate, nid, -1)));
}

void addExtension(X509& certificate, int nid, const char* value) {
  const cms::ExtensionPtr extension(X509V3_EXT_conf_nid(nullptr, nullptr, nid, value));
  X509_add_ext(&certificate, extension.get(), -1);
}

sys::Bytes underUnknownCipher(sys::Bytes bytes) {
  const sys::Bytes identifier = {0x06, 0x09, 0x60, 0x86, 0x48, 0x01,
                                 0x65, 0x03, 0x04, 0x01, 0x2A};  // id-aes256-CBC
  for (auto at = bytes.begin();; ++at) {
    at = std::search(at, bytes.end(), identifier.begin(), identifier.end());
    if (at == bytes.end()) return bytes;
    *(at + static_cast<std::ptrdiff_t>(identifier.size()) - 1) = 0x7F;
  }
}

}  // namespace zel::km::errors
