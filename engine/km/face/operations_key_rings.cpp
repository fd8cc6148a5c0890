#include <memory>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/pkcs12/key_rings.h"
#include "engine/km/face/operation.h"
#include "engine/km/keydb/creation.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/keydb/output_files.h"
#include "engine/km/keydb/password_rules.h"
#include "engine/km/store/new_labels.h"
#include "engine/sys/file_name.h"
#include "engine/sys/files.h"
#include "engine/sys/password.h"
#include "engine/sys/trace.h"

// Whole key databases into key ring files, and back. The file that is made has its name only once
// it is whole, and never takes the place of another.

using namespace zel;
using namespace zel::km;

namespace {

/** What is read can be written again, and the other way. */
constexpr std::size_t kMostKeyRingBytes = 1UL << 30;

sys::Status addEntries(Store& store, cms::KeyRing& ring) {
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

sys::Status addRequests(Store& store, cms::KeyRing& ring) {
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
  cms::KeyRing ring;
  const sys::Status read = store.inSnapshot([&]() -> sys::Status {
    const sys::Status added = addEntries(store, ring);
    return added ? addRequests(store, ring) : added;
  });
  if (!read) return read.failure();
  return ring;
}

/** Labels that other programs gave, or left out, are made to fit. */
sys::Status insertEntry(Store& store, cms::KeyRingEntry& entry) {
  const sys::Result<Label> wanted = wantedLabel(entry.label, entry.certificate);
  if (!wanted) return wanted.failure();
  sys::Result<Label> label = freeKeyLabel(store, wanted.value());
  if (!label) return label.failure();
  KeyEntry inserted;
  inserted.label = std::move(label).value();
  inserted.certificate = std::move(entry.certificate);
  inserted.privateKey.pkcs8 = std::move(entry.privateKeyInfo);
  inserted.trusted = entry.trusted;
  inserted.isDefault = entry.isDefault;
  return store.insertKey(inserted);
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

}  // namespace

int ZELKM_Kdb2Kyr(const char* keyDbFileName, const char* keyDbPassword, const char* kyrFileName,
                  const char* kyrPassword) {
  return answering(__func__, [&]() -> sys::Status {
    const sys::Result<sys::FileName> source = sys::FileName::given(keyDbFileName);
    if (!source) return source.failure();
    const sys::Result<sys::FileName> target = sys::FileName::given(kyrFileName);
    if (!target) return target.failure();
    const sys::Result<std::optional<sys::Password>> password =
        sys::Password::givenOrKept(keyDbPassword);
    if (!password) return password.failure();
    const sys::Result<sys::Password> newPassword = sys::Password::given(kyrPassword);
    if (!newPassword) return newPassword.failure();

    const sys::Result<std::unique_ptr<Store>> store =
        KeyDatabase::open(source.value(), password.value());
    if (!store) return store.failure();
    const sys::Status allowed =
        checkNewPassword(newPassword.value().bytes(), store.value()->approvedOnly());
    if (!allowed) return allowed;
    const sys::Result<cms::KeyRing> ring = keyRingOf(*store.value());
    if (!ring) return ring.failure();
    const sys::Result<sys::Bytes> file =
        cms::writeKeyRing(ring.value(), newPassword.value().bytes());
    if (!file) return file.failure();
    if (file.value().size() > kMostKeyRingBytes) {
      return sys::fail(ZELKM_ERR_KDB2KYR, "a key ring of more than %zu bytes", kMostKeyRingBytes);
    }
    return sys::writeNewFile(target.value().path(), file.value(), sys::FileAccess::ownerOnly);
  });
}

int ZELKM_Kyr2Kdb(const char* kyrFileName, const char* kyrPassword, const char* keyDbFileName,
                  const char* keyDbPassword) {
  return answering(__func__, [&]() -> sys::Status {
    const sys::Result<sys::FileName> source = sys::FileName::given(kyrFileName);
    if (!source) return source.failure();
    const sys::Result<sys::FileName> target = sys::FileName::given(keyDbFileName);
    if (!target) return target.failure();
    const sys::Result<sys::Password> password = sys::Password::givenOrEmpty(kyrPassword);
    if (!password) return password.failure();
    const sys::Result<sys::Password> newPassword = sys::Password::given(keyDbPassword);
    if (!newPassword) return newPassword.failure();

    // Closing a descriptor of ours on an open key database would drop SQLite's locks on it.
    if (!checkIsNoKeyDatabase(source.value())) {
      return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "a key database, and no key ring");
    }
    const sys::Result<sys::SecretBytes> file =
        sys::readSecretFile(source.value().path(), kMostKeyRingBytes);
    if (!file) return file.failure();
    sys::Result<cms::KeyRing> ring = cms::readKeyRing(file.value(), password.value().bytes());
    if (!ring) return ring.failure();
    const NewDatabase filled{.fill = [&](Store& store) { return insertAll(store, ring.value()); }};
    const sys::Result<std::unique_ptr<Store>> store =
        createKeyDatabase(target.value(), newPassword.value(), filled);
    return store ? sys::success() : store.failure();
  });
}
