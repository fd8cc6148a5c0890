#include <openssl/x509v3.h>

#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/errors/documents.h"
#include "tests/engine/errors/provocation.h"

// Chains that are not valid.

namespace zel::km::errors {

namespace {

const cms::TestAuthority& root() {
  static const cms::TestAuthority authority("Chain root");
  return authority;
}

void trust(const World& world, const sys::Bytes& certificate) {
  ZELKM_StoreCACert(world.handle, certificate.data(), static_cast<uint32_t>(certificate.size()),
                    "chain root");
}

/** Validates the stranger's certificate after a change; the root that issued it is trusted. */
void changeLeaf(World& world, void (*change)(X509& certificate)) {
  const sys::Bytes anchor = authorityCertificate(root());
  trust(world, anchor);
  world.given.document =
      changed(certificateFrom(root(), anchor, materials().stranger), root(), change);
}

/** Validates the stranger's certificate under a trusted root that is changed. */
void changeRoot(World& world, void (*change)(X509& certificate)) {
  const sys::Bytes anchor = changed(authorityCertificate(root()), root(), change);
  trust(world, anchor);
  world.given.document = certificateFrom(root(), anchor, materials().stranger);
}

/** Validates a certificate whose alternative name the trusted root does not allow. */
void constrainNames(World& world) {
  const sys::Bytes anchor = changed(authorityCertificate(root()), root(), [](X509& x) {
    addExtension(x, NID_name_constraints, "critical,permitted;DNS:example.com");
  });
  trust(world, anchor);
  world.given.document =
      changed(certificateFrom(root(), anchor, materials().stranger), root(),
              [](X509& x) { addExtension(x, NID_subject_alt_name, "DNS:www.example.net"); });
}

/** Validates a certificate under more authorities than any path has. */
void lengthen(World& world) {
  constexpr int kAuthorities = 110;
  std::vector<cms::Pkcs12Entry> entries;
  auto issuer = std::make_unique<cms::TestAuthority>("Authority 0");
  for (int i = 1; i <= kAuthorities; ++i) {
    auto next = std::make_unique<cms::TestAuthority>("Authority " + std::to_string(i));
    const sys::Bytes certificate = issuer->issueFor(*next);
    entries.push_back({.chain = {certificate}});
    if (i == kAuthorities) world.given.document = certificate;
    issuer = std::move(next);
  }
  entries.pop_back();
  world.write(world.pfxFile, cms::writePkcs12(entries, sys::bytesOf(kPfxPassword)).value());
  ZELKM_ImportKeysFromPFXFile(world.handle, world.pfxFile.c_str(), kPfxPassword);
}

}  // namespace

std::vector<Troubles> troublesOfChains() {
  return {
      {nullptr,
       {"ZELKM_ValidateCertChain"},
       {{ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND, "an issuer is missing",
         [](World& w) {
           w.given.document =
               certificateFrom(root(), authorityCertificate(root()), materials().stranger);
         }},
        {ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED, "the chain ends at a root without trust",
         [](World& w) { ZELKM_SetTrustStatus(w.handle, "ca", 0); }},
        {ZELKM_ERR_VALIDATION_KEY_SIGNATURE, "a signature is wrong",
         [](World& w) {
           w.given.document = materials().server;
           w.given.document->back() ^= 1;
         }},
        {ZELKM_ERR_VALIDATION_KEY_VALIDITY, "a certificate is not valid now",
         [](World& w) {
           changeLeaf(w, [](X509& x) { X509_gmtime_adj(X509_getm_notAfter(&x), -1000); });
         }},
        {ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD, "a validity that is no time",
         [](World& w) {
           changeLeaf(w, [](X509& x) { ASN1_STRING_set(X509_getm_notAfter(&x), "never", 5); });
         }},
        {ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS,
         "an issuer is no authority, or its path length is exceeded",
         [](World& w) {
           changeRoot(w, [](X509& x) {
             removeExtension(x, NID_basic_constraints);
             addExtension(x, NID_basic_constraints, "critical,CA:FALSE");
           });
         }},
        {ZELKM_ERR_VALIDATION_KEY_USAGE, "an authority without key usages",
         [](World& w) { changeRoot(w, [](X509& x) { removeExtension(x, NID_key_usage); }); }},
        {ZELKM_ERR_VALIDATION_KEY_AUTHORITY_KEY_IDENTIFIER,
         "a key identifier is missing, or does not fit",
         [](World& w) {
           changeLeaf(w, [](X509& x) { removeExtension(x, NID_authority_key_identifier); });
         }},
        {ZELKM_ERR_VALIDATION_KEY_UNKNOWN_CRITICAL_EXTENSION,
         "a critical extension that is not known",
         [](World& w) {
           changeLeaf(w, [](X509& x) {
             addExtension(x, NID_netscape_comment, "critical,nobody reads this");
           });
         }},
        {ZELKM_ERR_VALIDATION_KEY_EXTENSIONS_REQUIRED,
         "extensions in a certificate of a version below 3",
         [](World& w) { changeLeaf(w, [](X509& x) { X509_set_version(&x, X509_VERSION_1); }); }},
        {ZELKM_ERR_VALIDATION_SUBJECT_ALTERNATIVE_NAME,
         "no subject, and no alternative name that is critical",
         [](World& w) {
           changeLeaf(w, [](X509& x) {
             X509_NAME* empty = X509_NAME_new();
             X509_set_subject_name(&x, empty);
             X509_NAME_free(empty);
           });
         }},
        {ZELKM_ERR_VALIDATION, "anything else: name constraints, say", constrainNames},
        {ZELKM_ERR_INVALID_CERT_CHAIN, "the chain has more than a hundred certificates",
         lengthen}}},
  };
}

}  // namespace zel::km::errors
