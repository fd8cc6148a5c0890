// Writing PKCS #12 (pkcs12.h): entries, taken apart into certificates and keys.

#include <set>

#include "engine/cms/pkcs12/pkcs12.h"
#include "engine/cms/pkcs12/sealing.h"

namespace zel::cms {

namespace {

/** What the certificate and the key of the entry at a place say of themselves. */
Pkcs12Attributes attributesOf(const Pkcs12Entry& entry, std::size_t place) {
  Pkcs12Attributes attributes{.friendlyName = entry.friendlyName};
  if (entry.privateKeyInfo.empty()) {
    attributes.trusted = entry.trusted;
  } else {
    attributes.localKeyId = localKeyIdOf(place);
  }
  return attributes;
}

/** The certificates of the entries, then the issuers that are none of them. */
sys::Status addCertificates(const std::vector<Pkcs12Entry>& entries, Pkcs12Draft& draft) {
  std::set<sys::Bytes> written;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const sys::Bytes& certificate = entries[i].chain.front();
    const sys::Status added = draft.addCertificate(certificate, attributesOf(entries[i], i));
    if (!added) return added;
    written.insert(certificate);
  }
  for (const Pkcs12Entry& entry : entries) {
    for (const sys::Bytes& issuer : entry.chain) {
      if (!written.insert(issuer).second) continue;
      if (sys::Status added = draft.addCertificate(issuer, {}); !added) return added;
    }
  }
  return sys::success();
}

sys::Status addKeys(const std::vector<Pkcs12Entry>& entries, Pkcs12Draft& draft) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const Pkcs12Entry& entry = entries[i];
    if (entry.privateKeyInfo.empty()) continue;
    const sys::Status added = draft.addKey(entry.privateKeyInfo, attributesOf(entry, i));
    if (!added) return added;
  }
  return sys::success();
}

}  // namespace

sys::Result<sys::Bytes> writePkcs12(const std::vector<Pkcs12Entry>& entries, sys::ByteView password,
                                    Pkcs12Encryption encryption) {
  sys::Result<Pkcs12Draft> draft = Pkcs12Draft::begin(password, encryption);
  if (!draft) return draft.failure();
  sys::Status added = addCertificates(entries, draft.value());
  if (added) added = addKeys(entries, draft.value());
  if (!added) return added.failure();
  return draft.value().seal();
}

}  // namespace zel::cms
