#include "engine/km/work/key_rings.h"

#include <memory>
#include <utility>
#include <vector>

#include "engine/cms/pkcs12/key_rings.h"
#include "engine/km/keydb/creation.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/keydb/output_files.h"
#include "engine/km/keydb/password_rules.h"
#include "engine/km/work/arriving_entries.h"
#include "engine/sys/files.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** What is read can be written again, and the other way. */
constexpr std::size_t kMostKeyRingBytes = 1UL << 30;

sys::Status addEntries(KeyEntries& store, cms::KeyRing& ring) {
  const sys::Result<std::vector<Label>> labels = store.keyLabels();
  if (!labels) return labels.failure();
  for (const Label& label : labels.value()) {
    sys::Result<KeyEntry> found = store.findKey(label);
    if (!found) return found.failure();
    KeyEntry& entry = found.value();
    ring.entries.push_back({.label = label.name(),
                            .certificate = std::move(entry.certificate),
                            .privateKeyInfo = std::move(entry.privateKey.pkcs8),
                            .trusted = entry.trusted,
                            .isDefault = entry.isDefault});
  }
  return sys::success();
}

sys::Status addRequests(RequestEntries& store, cms::KeyRing& ring) {
  const sys::Result<std::vector<Label>> labels = store.requestLabels();
  if (!labels) return labels.failure();
  for (const Label& label : labels.value()) {
    sys::Result<RequestEntry> found = store.findRequest(label);
    if (!found) return found.failure();
    ring.requests.push_back({.label = label.name(),
                             .request = std::move(found.value().request),
                             .privateKeyInfo = std::move(found.value().privateKey.pkcs8)});
  }
  return sys::success();
}

sys::Result<cms::KeyRing> keyRingOf(Store& store) {
  return inSnapshot(store, [&]() -> sys::Result<cms::KeyRing> {
    cms::KeyRing ring;
    sys::Status added = addEntries(store, ring);
    if (added) added = addRequests(store, ring);
    if (!added) return added.failure();
    return ring;
  });
}

sys::Status insertEntry(Store& store, cms::KeyRingEntry& entry) {
  KeyEntry inserted;
  inserted.certificate = std::move(entry.certificate);
  inserted.privateKey.pkcs8 = std::move(entry.privateKeyInfo);
  inserted.trusted = entry.trusted;
  inserted.isDefault = entry.isDefault;
  return insertNamed(store, entry.label, std::move(inserted));
}

sys::Status insertRequest(Store& store, cms::KeyRingRequest& request) {
  RequestEntry inserted;
  inserted.label = Label::ofName(request.label);
  inserted.request = std::move(request.request);
  inserted.privateKey.pkcs8 = std::move(request.privateKeyInfo);
  return store.insertRequest(inserted);
}

sys::Status insertAll(Store& store, cms::KeyRing& ring) {
  for (cms::KeyRingEntry& entry : ring.entries) {
    if (sys::Status inserted = insertEntry(store, entry); !inserted) return inserted;
  }
  for (cms::KeyRingRequest& request : ring.requests) {
    if (sys::Status inserted = insertRequest(store, request); !inserted) return inserted;
  }
  return sys::success();
}

sys::Result<cms::KeyRing> readKeyRingFile(const KeyRingFile& ring) {
  // Closing a descriptor of ours on an open key database would drop SQLite's locks on it.
  if (!checkIsNoKeyDatabase(ring.name)) {
    return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "a key database, and no key ring");
  }
  const sys::Result<sys::SecretBytes> file =
      sys::readSecretFile(ring.name.path(), kMostKeyRingBytes);
  if (!file) return file.failure();
  return cms::readKeyRing(file.value(), ring.password.bytes());
}

}  // namespace

sys::Status toKeyRing(const sys::FileName& database, const PasswordOrStash& password,
                      const KeyRingFile& ring) {
  const sys::Result<std::unique_ptr<Store>> store = KeyDatabase::open(database, password);
  if (!store) return store.failure();
  const sys::Status allowed =
      checkNewPassword(ring.password.bytes(), store.value()->approvedOnly());
  if (!allowed) return allowed;
  const sys::Result<cms::KeyRing> content = keyRingOf(*store.value());
  if (!content) return content.failure();
  const sys::Result<sys::Bytes> file = cms::writeKeyRing(content.value(), ring.password.bytes());
  if (!file) return file.failure();
  if (file.value().size() > kMostKeyRingBytes) {
    return sys::fail(ZELKM_ERR_KDB2KYR, "a key ring of more than %zu bytes", kMostKeyRingBytes);
  }
  return sys::writeNewFile(ring.name.path(), file.value(), sys::FileAccess::ownerOnly);
}

sys::Status fromKeyRing(const KeyRingFile& ring, const sys::FileName& database,
                        const sys::Password& password) {
  sys::Result<cms::KeyRing> content = readKeyRingFile(ring);
  if (!content) return content.failure();
  const NewDatabase filled{.fill = [&](Store& store) { return insertAll(store, content.value()); }};
  const sys::Result<std::unique_ptr<Store>> store = createKeyDatabase(database, password, filled);
  return store ? sys::success() : store.failure();
}

}  // namespace zel::km
