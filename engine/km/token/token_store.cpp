#include "engine/km/token/token_store.h"

#include <algorithm>

#include "engine/cms/epki.h"
#include "engine/cms/names.h"
#include "engine/cms/requests.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/km/store/key_material.h"
#include "engine/km/token/call_turn.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/token_access.h"
#include "engine/km/token/token_signing.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

PrivateKey referenceTo(const PrivateKeyObject* key) {
  PrivateKey reference;
  if (key != nullptr) reference.reference = EntryWriter::referenceTo(key->handle);
  return reference;
}

KeyEntry keyEntry(const CertificateEntry& entry) {
  return {.label = entry.label,
          .certificate = entry.certificate->der,
          .privateKey = referenceTo(entry.privateKey),
          .trusted = entry.certificate->trusted,
          .isDefault = false};
}

sys::Failure noSuchLabel(const Label& label) {
  return sys::fail(ZELKM_ERR_KEY_GET_BY_LABEL, "the token has no \"%s\"", label.c_str());
}

sys::Failure noDefaultKey() {
  return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT, "a token has no default key");
}

template <typename Entry>
std::vector<Label> labelsOf(const std::vector<Entry>& entries) {
  std::vector<Label> labels;
  labels.reserve(entries.size());
  for (const Entry& entry : entries) labels.push_back(entry.label);
  return labels;
}

/** The subject of a request that is made again: what the key remembers, else its label. */
sys::Result<sys::Bytes> requestedSubject(const PendingEntry& pending) {
  if (!pending.privateKey->subject.empty()) return pending.privateKey->subject;
  cms::NameFields fields;
  fields.cn = pending.privateKey->label.empty() ? pending.label.name() : pending.privateKey->label;
  return cms::encodeName(fields);
}

}  // namespace

sys::Result<std::unique_ptr<Store>> TokenStore::open(const char* moduleName, const char* tokenLabel,
                                                     const char* password) {
  sys::Result<std::unique_ptr<Session>> session = openToken(moduleName, tokenLabel, password);
  if (!session) return session.failure();
  return std::unique_ptr<Store>(new TokenStore(std::move(session).value()));
}

TokenStore::TokenStore(std::unique_ptr<Session> session)
    : session_(std::move(session)), changes_(*session_), writer_(*session_, changes_) {}

TokenStore::~TokenStore() { writer_.dropUnclaimed(); }

sys::Result<std::vector<Label>> TokenStore::keyLabels() {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  return labelsOf(all.value().certificates());
}

sys::Result<std::vector<Label>> TokenStore::requestLabels() {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  return labelsOf(all.value().requests());
}

sys::Result<KeyEntry> TokenStore::findKey(const Label& label) {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  const CertificateEntry* found = all.value().certificate(label);
  if (found == nullptr) return noSuchLabel(label);
  return keyEntry(*found);
}

sys::Result<RequestEntry> TokenStore::findRequest(const Label& label) {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  const PendingEntry* found = all.value().request(label);
  if (found == nullptr) return noSuchLabel(label);
  return requestEntry(*found);
}

sys::Result<KeyEntry> TokenStore::defaultKey() {
  return sys::Failure{ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL};
}

sys::Result<std::vector<KeyEntry>> TokenStore::findKeysByPublicKey(sys::ByteView publicKey) {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  std::vector<KeyEntry> found;
  for (const CertificateEntry& entry : all.value().certificates()) {
    if (std::ranges::equal(entry.certificate->publicKey, publicKey)) {
      found.push_back(keyEntry(entry));
    }
  }
  return found;
}

sys::Result<std::vector<RequestEntry>> TokenStore::findRequestsByPublicKey(
    sys::ByteView publicKey) {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  std::vector<RequestEntry> found;
  for (const PendingEntry& pending : all.value().requests()) {
    if (!std::ranges::equal(pending.publicKey(), publicKey)) continue;
    sys::Result<RequestEntry> entry = requestEntry(pending);
    if (!entry) return entry.failure();
    found.push_back(std::move(entry).value());
  }
  return found;
}

sys::Result<std::vector<KeyEntry>> TokenStore::findKeysBySubject(sys::ByteView subject) {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  std::vector<KeyEntry> found;
  for (const CertificateEntry& entry : all.value().certificates()) {
    if (std::ranges::equal(entry.certificate->subject, subject)) found.push_back(keyEntry(entry));
  }
  if (!secondary_) return found;
  sys::Status asked = onSecondary([&](Store& secondary) -> sys::Status {
    sys::Result<std::vector<KeyEntry>> more = secondary.findKeysBySubject(subject);
    if (!more) return more.failure();
    for (KeyEntry& entry : more.value()) found.push_back(std::move(entry));
    return sys::success();
  });
  if (!asked) return asked.failure();
  return found;
}

sys::Result<RequestEntry> TokenStore::requestEntry(const PendingEntry& pending) {
  RequestEntry entry{
      .label = pending.label, .request = {}, .privateKey = referenceTo(pending.privateKey)};
  if (pending.request != nullptr) {
    entry.request = pending.request->der;
    return entry;
  }
  const PrivateKeyObject& key = *pending.privateKey;
  if (key.publicKey.empty()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED,
                     "the token does not tell the public key of \"%s\"", pending.label.c_str());
  }
  sys::Result<sys::Bytes> subject = requestedSubject(pending);
  if (!subject) return subject.failure();
  sys::Result<cms::KeyTraits> traits = cms::describePublicKey(key.publicKey);
  if (!traits) return traits.failure();
  const cms::RequestPlan plan{.subject = subject.value(), .publicKeyInfo = key.publicKey};
  sys::Result<sys::Bytes> request = cms::buildRequest(
      plan, traits.value(), cms::kByKeyStrength, [&](SigningDigest digest, sys::ByteView message) {
        return signOnToken(*session_, key, digest, message);
      });
  if (!request) return request.failure();
  entry.request = std::move(request).value();
  return entry;
}

sys::Status TokenStore::insertKey(const KeyEntry& entry) {
  if (entry.isDefault) return noDefaultKey();
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    if (all.value().certificate(entry.label) != nullptr) {
      return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                       entry.label.c_str());
    }
    return writer_.writeCertificate(entry);
  });
}

sys::Status TokenStore::insertRequest(const RequestEntry& entry) {
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    if (all.value().request(entry.label) != nullptr) {
      return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                       entry.label.c_str());
    }
    return writer_.writeRequest(entry);
  });
}

sys::Status TokenStore::replaceKey(const KeyEntry& entry) {
  if (entry.isDefault) return noDefaultKey();
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    const CertificateEntry* old = all.value().certificate(entry.label);
    if (old == nullptr) return noSuchLabel(entry.label);
    return writer_.replaceCertificate(*old, entry);
  });
}

sys::Status TokenStore::replaceRequest(const RequestEntry& entry) {
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    const PendingEntry* old = all.value().request(entry.label);
    if (old == nullptr) return noSuchLabel(entry.label);
    sys::Status written = writer_.writeRequest(entry);
    // Without an object of its own the old request was in the key, and the new one is there now.
    if (!written || old->request == nullptr) return written;
    return writer_.removeRequest(*old);
  });
}

sys::Status TokenStore::removeKey(const Label& label) {
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    const CertificateEntry* found = all.value().certificate(label);
    if (found == nullptr) return noSuchLabel(label);
    return writer_.removeCertificate(*found);
  });
}

sys::Status TokenStore::removeRequest(const Label& label) {
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    const PendingEntry* found = all.value().request(label);
    if (found == nullptr) return noSuchLabel(label);
    return writer_.removeRequest(*found);
  });
}

sys::Status TokenStore::setDefault(const Label& /*label*/) { return noDefaultKey(); }

sys::Status TokenStore::setTrusted(const Label& label, bool trusted) {
  return inTransaction([&]() -> sys::Status {
    sys::Result<Inventory> all = inventory();
    if (!all) return all.failure();
    const CertificateEntry* found = all.value().certificate(label);
    if (found == nullptr) return noSuchLabel(label);
    return writer_.changeTrust(*found, trusted);
  });
}

sys::Status TokenStore::inTransaction(const std::function<sys::Status()>& body) {
  const CallTurn turn = session_->takeTurn();  // what others would see in between is half an entry
  if (!turn.had()) return cryptokiFailure(kNoTurn, "begin a change");
  if (changes_.underWay()) return body();
  changes_.begin();
  try {
    sys::Status done = !secondary_ ? body() : withSecondary(body);
    if (!done) {
      takeBack();
      return done;
    }
  } catch (...) {
    takeBack();
    throw;
  }
  secondaryInUse_ = nullptr;
  writer_.settle(true);
  return changes_.commit();
}

sys::Status TokenStore::onSignerStore(const std::function<sys::Status(Store&)>& body) {
  return !secondary_ ? body(*this) : onSecondary(body);
}

/** The secondary commits first: when it cannot, the token is still to be taken back. */
sys::Status TokenStore::withSecondary(const std::function<sys::Status()>& body) {
  return onSecondary([&](Store& secondary) -> sys::Status {
    secondaryInUse_ = &secondary;
    return secondary.inTransaction(body);
  });
}

void TokenStore::takeBack() {
  secondaryInUse_ = nullptr;
  changes_.rollBack();
  writer_.settle(false);
}

sys::Result<GeneratedKey> TokenStore::generateKey(int keySize) {
  sys::Result<GeneratedKey> key = sys::Failure{ZELKM_ERR_UNKNOWN};
  sys::Status status = inTransaction([&]() -> sys::Status {
    key = writer_.generateKey(keySize);
    return key ? sys::success() : sys::Status(key.failure());
  });
  if (!status) return status.failure();
  return key;
}

sys::Result<sys::Bytes> TokenStore::sign(const PrivateKey& key, SigningDigest digest,
                                         sys::ByteView message) {
  if (!key.pkcs8.empty()) return signWith(key, digest, message);
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  const PrivateKeyObject* onToken = all.value().privateKey(EntryWriter::referredTo(key.reference));
  if (onToken == nullptr) return sys::Failure{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL};
  return signOnToken(*session_, *onToken, digest, message);
}

bool TokenStore::approvedOnly() const { return approvedMode(); }

sys::Result<sys::Bytes> TokenStore::encryptedPrivateKey(const PrivateKey& /*key*/) {
  return sys::Failure{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL};
}

sys::Result<sys::SecretBytes> TokenStore::decryptedPrivateKey(sys::ByteView encrypted) {
  sys::Result<sys::SecretBytes> key = cms::decryptPrivateKey(encrypted, session_->pin());
  if (key.code() == ZELKM_ERR_DATABASE_INVALID_PASSWORD) {
    return sys::fail(ZELKM_ERR_PKCS12_PWD_CORRUPTION, "the key is not encrypted under the PIN");
  }
  return key;
}

sys::Status TokenStore::unsetSecondary() {
  if (!secondary_) return sys::Failure{ZELKM_ERR_NO_SECONDARY_KEYDB};
  secondary_ = nullptr;
  return sys::success();
}

sys::Status TokenStore::onSecondary(const std::function<sys::Status(Store&)>& body) {
  if (secondaryInUse_ != nullptr) return body(*secondaryInUse_);
  return secondary_(body);
}

}  // namespace zel::km::token
