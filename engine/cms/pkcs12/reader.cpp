// Reading PKCS #12 (pkcs12.h): the keys and certificates of a file, joined into entries.

#include <algorithm>

#include "engine/cms/pkcs12/opening.h"
#include "engine/cms/pkcs12/pairing.h"
#include "engine/cms/pkcs12/pkcs12.h"

namespace zel::cms {

namespace {

bool holds(const std::vector<Pkcs12Entry>& entries, const sys::Bytes& certificate) {
  return std::any_of(entries.begin(), entries.end(),
                     [&](const Pkcs12Entry& entry) { return entry.chain.front() == certificate; });
}

Pkcs12Entry joined(Pkcs12Key& key, const Pkcs12Certificate& certificate) {
  Pkcs12Entry entry;
  entry.friendlyName = key.attributes.friendlyName.empty() ? certificate.attributes.friendlyName
                                                           : key.attributes.friendlyName;
  entry.privateKeyInfo = std::move(key.privateKeyInfo);
  entry.chain.push_back(certificate.der);
  return entry;
}

/** How much a certificate tells of itself: a mark of trust more than a name, a name than nothing.
 */
int rank(const Pkcs12Attributes& attributes) {
  if (attributes.trusted) return 0;
  return attributes.friendlyName.empty() ? 2 : 1;
}

/** Those that tell most come first, and one that stands twice is taken as it tells most. */
void addCertificatesAlone(std::vector<Pkcs12Certificate> certificates,
                          std::vector<Pkcs12Entry>& entries) {
  std::stable_sort(certificates.begin(), certificates.end(), [](const auto& a, const auto& b) {
    return rank(a.attributes) < rank(b.attributes);
  });
  for (Pkcs12Certificate& certificate : certificates) {
    if (holds(entries, certificate.der)) continue;
    Pkcs12Entry entry;
    entry.friendlyName = std::move(certificate.attributes.friendlyName);
    entry.chain.push_back(std::move(certificate.der));
    entry.trusted = certificate.attributes.trusted;
    entries.push_back(std::move(entry));
  }
}

sys::Result<std::vector<Pkcs12Entry>> join(Pkcs12Contents contents) {
  std::vector<Pkcs12Entry> entries;
  const Pkcs12Pairing pairing(contents.certificates);
  for (Pkcs12Key& key : contents.keys) {
    const sys::Result<std::size_t> certificate = pairing.certificateOf(key);
    if (!certificate) return certificate.failure();
    entries.push_back(joined(key, contents.certificates[certificate.value()]));
  }
  addCertificatesAlone(std::move(contents.certificates), entries);
  return entries;
}

}  // namespace

sys::Result<std::vector<Pkcs12Entry>> readPkcs12(sys::ByteView file, sys::ByteView password) {
  sys::Result<Pkcs12Contents> contents = openPkcs12(file, password);
  if (!contents) return contents.failure();
  return join(std::move(contents).value());
}

}  // namespace zel::cms
