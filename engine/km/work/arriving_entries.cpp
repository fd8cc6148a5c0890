#include "engine/km/work/arriving_entries.h"

#include <algorithm>
#include <utility>

#include "engine/cms/certificates.h"
#include "engine/km/store/new_labels.h"

namespace zel::km {

namespace {

sys::Status addIfNew(Store& home, const sys::Bytes& certificate) {
  const sys::Result<bool> isThere = hasCertificate(home, certificate);
  if (!isThere) return isThere.failure();
  if (isThere.value()) return sys::success();
  KeyEntry entry;
  entry.certificate = certificate;
  return insertNamed(home, "", std::move(entry));
}

}  // namespace

sys::Result<bool> hasCertificate(KeyEntries& store, const sys::Bytes& certificate) {
  const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate);
  if (!keys) return keys.failure();
  const sys::Result<std::vector<KeyEntry>> entries =
      store.findKeysByPublicKey(keys.value().publicKeyInfo);
  if (!entries) return entries.failure();
  return std::any_of(entries.value().begin(), entries.value().end(),
                     [&](const KeyEntry& entry) { return entry.certificate == certificate; });
}

sys::Status insertNamed(Store& store, const std::string& name, KeyEntry entry) {
  const sys::Result<Label> wanted = wantedLabel(name, entry.certificate);
  if (!wanted) return wanted.failure();
  sys::Result<Label> label = freeKeyLabel(store, wanted.value());
  if (!label) return label.failure();
  entry.label = std::move(label).value();
  return store.insertKey(entry);
}

sys::Status addIssuer(Store& store, const sys::Bytes& certificate) {
  const sys::Result<bool> isThere = hasCertificate(store, certificate);
  if (!isThere) return isThere.failure();
  if (isThere.value()) return sys::success();
  return store.onSignerStore([&](Store& home) { return addIfNew(home, certificate); });
}

}  // namespace zel::km
