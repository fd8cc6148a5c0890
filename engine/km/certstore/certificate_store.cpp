#include "engine/km/certstore/certificate_store.h"

#include <algorithm>

#include "engine/cms/certificates.h"
#include "engine/cms/epki.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/km/store/key_material.h"
#include "engine/sys/trace.h"

namespace zel::km::certstore {

namespace {

constexpr sys::ByteView kNoPassword;
/** There is no password to be guessed; this is what the files are written with too. */
constexpr std::uint32_t kIterations = 2'000;

sys::Failure noSuchLabel(const Label& label) {
  return sys::fail(ZELKM_ERR_KEY_GET_BY_LABEL, "the store has no \"%s\"", label.c_str());
}

sys::Failure noRequests() {
  return sys::fail(ZELKM_ERR_UNSUPPORTED_OPTION, "a certificate store has no requests");
}

sys::Failure noDefaultKey() {
  return sys::fail(ZELKM_ERR_UNSUPPORTED_OPTION, "a certificate store has no default key");
}

sys::Status requireNoPassword(const sys::Password& password) {
  if (password.empty()) return sys::success();
  return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED,
                   "a certificate store has no password");
}

/** What has to be true of an entry whatever is in the store. */
sys::Status checkEntry(const KeyEntry& entry) {
  if (entry.isDefault) return noDefaultKey();
  if (entry.privateKey.present() && entry.privateKey.pkcs8.empty()) {
    return sys::fail(ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "a key that does not leave its store");
  }
  const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(entry.certificate);
  if (!keys) return keys.failure();
  return approvedMode() ? checkApproved(keys.value().publicKeyInfo) : sys::success();
}

/** Appends the entries that the test is true of, with their keys. */
template <typename Test>
sys::Status appendWhere(const Inventory& inventory, const Test& test,
                        std::vector<KeyEntry>& found) {
  for (const StoredEntry& stored : inventory.entries()) {
    if (!test(stored)) continue;
    sys::Result<KeyEntry> entry = inventory.load(stored);
    if (!entry) return entry.failure();
    found.push_back(std::move(entry).value());
  }
  return sys::success();
}

}  // namespace

sys::Result<std::unique_ptr<Store>> CertificateStore::open(std::string_view name,
                                                           const sys::Password& password) {
  const sys::Result<StoreFolder> folder = StoreFolder::of(name);
  if (!folder) return folder.failure();
  if (sys::Status none = requireNoPassword(password); !none) return none.failure();
  std::vector<StoreFolder> authorities;
  for (const std::string_view each : {kRootStore, kAuthorityStore}) {
    if (each == name) continue;
    sys::Result<StoreFolder> authority = StoreFolder::of(each);
    if (!authority) return authority.failure();
    authorities.push_back(std::move(authority).value());
  }
  std::unique_ptr<CertificateStore> store(
      new CertificateStore(folder.value(), std::move(authorities)));
  if (sys::Status usable = store->refresh(); !usable) return usable.failure();
  return std::unique_ptr<Store>(std::move(store));
}

CertificateStore::CertificateStore(StoreFolder folder, std::vector<StoreFolder> authorities)
    : inventory_(folder), changes_(std::move(folder)) {
  for (StoreFolder& each : authorities) authorities_.emplace_back(std::move(each));
}

sys::Result<std::vector<Label>> CertificateStore::keyLabels() {
  if (sys::Status looked = refresh(); !looked) return looked.failure();
  std::vector<Label> labels;
  for (const StoredEntry& entry : inventory_.entries()) labels.push_back(entry.label);
  return labels;
}

sys::Result<std::vector<Label>> CertificateStore::requestLabels() { return std::vector<Label>(); }

sys::Result<StoredEntry> CertificateStore::lookUp(const Label& label) {
  if (sys::Status looked = refresh(); !looked) return looked.failure();
  const StoredEntry* found = inventory_.find(label);
  if (found == nullptr) return noSuchLabel(label);
  return *found;
}

sys::Result<StoredEntry> CertificateStore::lookUpAlone(const Label& label) {
  sys::Result<StoredEntry> found = lookUp(label);
  if (found && !found.value().isAlone) {
    return sys::fail(ZELKM_ERR_UNSUPPORTED_OPTION, "%s holds other entries beside \"%s\"",
                     found.value().fileName.c_str(), label.c_str());
  }
  return found;
}

sys::Result<KeyEntry> CertificateStore::findKey(const Label& label) {
  const sys::Result<StoredEntry> found = lookUp(label);
  if (!found) return found.failure();
  return inventory_.load(found.value());
}

sys::Result<RequestEntry> CertificateStore::findRequest(const Label& label) {
  return noSuchLabel(label);
}

sys::Result<KeyEntry> CertificateStore::defaultKey() {
  return sys::Failure{ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL};
}

sys::Result<std::vector<KeyEntry>> CertificateStore::findKeysByPublicKey(sys::ByteView publicKey) {
  if (sys::Status looked = refresh(); !looked) return looked.failure();
  std::vector<KeyEntry> found;
  const auto hasKey = [&](const StoredEntry& entry) {
    return std::ranges::equal(entry.publicKey, publicKey);
  };
  if (sys::Status loaded = appendWhere(inventory_, hasKey, found); !loaded) return loaded.failure();
  return found;
}

sys::Result<std::vector<RequestEntry>> CertificateStore::findRequestsByPublicKey(
    sys::ByteView /*publicKey*/) {
  return std::vector<RequestEntry>();
}

sys::Result<std::vector<KeyEntry>> CertificateStore::findKeysBySubject(sys::ByteView subject) {
  const auto isOfSubject = [&](const StoredEntry& entry) {
    return std::ranges::equal(entry.subject, subject);
  };
  std::vector<KeyEntry> found;
  sys::Status status = refresh();
  if (status) status = appendWhere(inventory_, isOfSubject, found);
  for (Inventory& authority : authorities_) {
    if (status) status = authority.refresh();
    if (status) status = appendWhere(authority, isOfSubject, found);
  }
  if (!status) return status.failure();
  return found;
}

sys::Status CertificateStore::requireNew(const sys::Bytes& certificate) const {
  const auto same = std::ranges::find(inventory_.entries(), certificate, &StoredEntry::certificate);
  if (same == inventory_.entries().end()) return sys::success();
  return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY, "the certificate is there as \"%s\"",
                   same->label.c_str());
}

sys::Status CertificateStore::insertKey(const KeyEntry& entry) {
  if (sys::Status good = checkEntry(entry); !good) return good;
  return inTransaction(*this, [&]() -> sys::Status {
    if (sys::Status looked = refresh(); !looked) return looked;
    if (inventory_.find(entry.label) != nullptr) {
      return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                       entry.label.c_str());
    }
    if (sys::Status isNew = requireNew(entry.certificate); !isNew) return isNew;
    return changes_.create(entry, std::nullopt);
  });
}

sys::Status CertificateStore::insertRequest(const RequestEntry& /*entry*/) { return noRequests(); }

sys::Status CertificateStore::replaceKey(const KeyEntry& entry) {
  if (sys::Status good = checkEntry(entry); !good) return good;
  return inTransaction(*this, [&]() -> sys::Status {
    const sys::Result<StoredEntry> old = lookUpAlone(entry.label);
    if (!old) return old.failure();
    const StoredEntry& replaced = old.value();
    if (replaced.certificate == entry.certificate) {
      return changes_.rewrite(replaced.fileName, entry, replaced.modified);
    }
    if (sys::Status isNew = requireNew(entry.certificate); !isNew) return isNew;
    sys::Status created = changes_.create(entry, replaced.modified);
    if (created) changes_.doom(replaced.fileName);
    return created;
  });
}

sys::Status CertificateStore::replaceRequest(const RequestEntry& entry) {
  return noSuchLabel(entry.label);
}

sys::Status CertificateStore::removeKey(const Label& label) {
  // Looked for before anything is made: a store that was never written to has no folder.
  if (const sys::Result<StoredEntry> found = lookUp(label); !found) return found.failure();
  return inTransaction(*this, [&]() -> sys::Status {
    const sys::Result<StoredEntry> found = lookUpAlone(label);
    if (!found) return found.failure();
    changes_.doom(found.value().fileName);
    return sys::success();
  });
}

sys::Status CertificateStore::removeRequest(const Label& label) { return noSuchLabel(label); }

sys::Status CertificateStore::setDefault(const Label& /*label*/) { return noDefaultKey(); }

sys::Status CertificateStore::setTrusted(const Label& label, bool trusted) {
  const sys::Result<StoredEntry> found = lookUp(label);
  if (!found) return found.failure();
  if (trusted == inventory_.folder().holdsAnchors()) return sys::success();
  return sys::fail(ZELKM_ERR_UNSUPPORTED_OPTION,
                   "certificates are trusted for lying in CurrentUser/Root");
}

sys::Status CertificateStore::runChanges(const Run& run) {
  if (changes_.underWay()) return run();
  if (sys::Status begun = changes_.begin(); !begun) return begun;
  try {
    if (sys::Status done = run(); !done) {
      changes_.rollBack();
      return done;
    }
  } catch (...) {
    changes_.rollBack();
    throw;
  }
  return changes_.commit();
}

bool CertificateStore::approvedOnly() const { return approvedMode(); }

sys::Result<sys::Bytes> CertificateStore::encryptedPrivateKey(const PrivateKey& key) {
  if (key.pkcs8.empty()) return sys::Failure{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL};
  return cms::encryptPrivateKey(key.pkcs8, kNoPassword, kIterations);
}

sys::Result<sys::SecretBytes> CertificateStore::decryptedPrivateKey(sys::ByteView encrypted) {
  sys::Result<sys::SecretBytes> key = cms::decryptPrivateKey(encrypted, kNoPassword);
  if (key.code() == ZELKM_ERR_DATABASE_INVALID_PASSWORD) {
    return sys::fail(ZELKM_ERR_PKCS12_PWD_CORRUPTION, "the key is encrypted under a password");
  }
  return key;
}

}  // namespace zel::km::certstore
