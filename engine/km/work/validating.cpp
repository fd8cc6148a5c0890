#include "engine/km/work/validating.h"

#include <set>
#include <vector>

#include "engine/cms/certificates.h"
#include "engine/cms/validation.h"

namespace zel::km {

namespace {

/** The certificates of a store that may be on the way from a certificate to an anchor. */
struct Authorities {
  std::vector<sys::Bytes> anchors;
  std::vector<sys::Bytes> issuers;
};

/** Follows the issuers' names upwards; whose key did sign is the validation's affair. */
sys::Result<Authorities> authoritiesAbove(KeyEntries& store, sys::ByteView certificate) {
  Authorities found;
  std::set<sys::Bytes> namesSeen;
  std::vector<sys::Bytes> toFollow = {{certificate.begin(), certificate.end()}};
  while (!toFollow.empty()) {
    const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(toFollow.back());
    if (!keys) return keys.failure();
    toFollow.pop_back();
    if (!namesSeen.insert(keys.value().issuer).second) continue;
    const sys::Result<std::vector<KeyEntry>> entries = store.findKeysBySubject(keys.value().issuer);
    if (!entries) return entries.failure();
    for (const KeyEntry& entry : entries.value()) {
      (entry.trusted ? found.anchors : found.issuers).push_back(entry.certificate);
      toFollow.push_back(entry.certificate);
    }
  }
  return found;
}

/** The certificate itself may be an anchor. */
sys::Status addTrustedSelf(KeyEntries& store, sys::ByteView certificate, Authorities& authorities) {
  const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate);
  if (!keys) return keys.failure();
  const sys::Result<std::vector<KeyEntry>> entries =
      store.findKeysByPublicKey(keys.value().publicKeyInfo);
  if (!entries) return entries.failure();
  for (const KeyEntry& entry : entries.value()) {
    if (entry.trusted) authorities.anchors.push_back(entry.certificate);
  }
  return sys::success();
}

}  // namespace

sys::Status validate(KeyEntries& store, sys::ByteView certificate) {
  sys::Result<Authorities> authorities = authoritiesAbove(store, certificate);
  if (!authorities) return authorities.failure();
  if (sys::Status done = addTrustedSelf(store, certificate, authorities.value()); !done) {
    return done;
  }
  return cms::validateChain(certificate, authorities.value().issuers, authorities.value().anchors);
}

}  // namespace zel::km
