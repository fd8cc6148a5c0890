#include "engine/km/token/token_store.h"

#include <algorithm>
#include <iterator>

#include "engine/cms/epki.h"
#include "engine/cms/names.h"
#include "engine/cms/requests.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/km/store/key_material.h"
#include "engine/km/token/entry_plans.h"
#include "engine/km/token/key_pairs.h"
#include "engine/km/token/key_references.h"
#include "engine/km/token/token_access.h"
#include "engine/km/token/token_reading.h"
#include "engine/km/token/token_signing.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

PrivateKey privateKeyOf(const PrivateKeyRef& key) {
  return key ? referenceTo(key->handle) : PrivateKey{};
}

KeyEntry keyEntry(const CertificateEntry& entry) {
  return {.label = entry.label,
          .certificate = entry.certificate->der,
          .privateKey = privateKeyOf(entry.privateKey),
          .trusted = entry.certificate->isTrusted(),
          .isDefault = false};
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

/** Ends what is under way when it goes, whatever has happened. */
template <typename UnderWay>
class Ending {
 public:
  explicit Ending(std::optional<UnderWay>& underWay) : underWay_(underWay) {}
  ~Ending() { underWay_.reset(); }
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;

 private:
  std::optional<UnderWay>& underWay_;
};

}  // namespace

sys::Result<std::unique_ptr<Store>> TokenStore::open(const TokenName& name,
                                                     const sys::Password& pin) {
  sys::Result<std::unique_ptr<Session>> session = openToken(name, pin);
  if (!session) return session.failure();
  return std::unique_ptr<Store>(new TokenStore(std::move(session).value()));
}

TokenStore::TokenStore(std::unique_ptr<Session> session) : session_(std::move(session)) {}

TokenStore::~TokenStore() {
  const CallTurn turn = session_->takeTurn();
  for (const KeyPairHandles& pair : newKeys_) destroyKeyPair(*session_, pair);
  session_ = nullptr;
}

template <typename Body>
std::invoke_result_t<Body, const TokenView&> TokenStore::onView(Body body) {
  if (Snapshot* kept = underWay()) {
    sys::Result<TokenView*> view = kept->view();
    if (!view) return view.failure();
    return body(*view.value());
  }
  sys::Result<TokenView> view = readToken(*session_, newKeyHandles());
  if (!view) return view.failure();
  return body(view.value());
}

Snapshot* TokenStore::underWay() {
  if (transaction_) return &transaction_->token();
  return snapshot_ ? &*snapshot_ : nullptr;
}

Handles TokenStore::newKeyHandles() const {
  Handles handles;
  for (const KeyPairHandles& pair : newKeys_) handles.insert(pair.privateKey);
  return handles;
}

sys::Result<std::vector<Label>> TokenStore::keyLabels() {
  using Labels = sys::Result<std::vector<Label>>;
  return onView([](const TokenView& view) -> Labels { return labelsOf(view.certificates()); });
}

sys::Result<std::vector<Label>> TokenStore::requestLabels() {
  using Labels = sys::Result<std::vector<Label>>;
  return onView([](const TokenView& view) -> Labels { return labelsOf(view.requests()); });
}

sys::Result<KeyEntry> TokenStore::findKey(const Label& label) {
  return onView([&](const TokenView& view) -> sys::Result<KeyEntry> {
    const std::optional<CertificateEntry> found = view.certificate(label);
    if (!found) return noSuchLabel(label);
    return keyEntry(*found);
  });
}

sys::Result<RequestEntry> TokenStore::findRequest(const Label& label) {
  return onView([&](const TokenView& view) -> sys::Result<RequestEntry> {
    const std::optional<PendingEntry> found = view.request(label);
    if (!found) return noSuchLabel(label);
    return requestEntry(*found);
  });
}

sys::Result<KeyEntry> TokenStore::defaultKey() {
  return sys::Failure{ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL};
}

sys::Result<std::vector<KeyEntry>> TokenStore::findKeysByPublicKey(sys::ByteView publicKey) {
  return onView([&](const TokenView& view) -> sys::Result<std::vector<KeyEntry>> {
    std::vector<KeyEntry> found;
    for (const CertificateEntry& entry : view.certificates()) {
      if (std::ranges::equal(entry.certificate->publicKey, publicKey)) {
        found.push_back(keyEntry(entry));
      }
    }
    return found;
  });
}

sys::Result<std::vector<RequestEntry>> TokenStore::findRequestsByPublicKey(
    sys::ByteView publicKey) {
  return onView([&](const TokenView& view) -> sys::Result<std::vector<RequestEntry>> {
    std::vector<RequestEntry> found;
    for (const PendingEntry& pending : view.requests()) {
      if (!std::ranges::equal(pending.publicKey(), publicKey)) continue;
      sys::Result<RequestEntry> entry = requestEntry(pending);
      if (!entry) return entry.failure();
      found.push_back(std::move(entry).value());
    }
    return found;
  });
}

sys::Result<std::vector<KeyEntry>> TokenStore::findKeysBySubject(sys::ByteView subject) {
  using Entries = sys::Result<std::vector<KeyEntry>>;
  Entries found = onView([&](const TokenView& view) -> Entries {
    std::vector<KeyEntry> entries;
    for (const CertificateEntry& entry : view.certificates()) {
      if (std::ranges::equal(entry.certificate->subject, subject)) {
        entries.push_back(keyEntry(entry));
      }
    }
    return entries;
  });
  if (!found || !secondary_.isLent()) return found;
  Entries more = secondary_.use([&](Store& store) { return store.findKeysBySubject(subject); });
  if (!more) return more;
  std::ranges::move(more.value(), std::back_inserter(found.value()));
  return found;
}

sys::Result<RequestEntry> TokenStore::requestEntry(const PendingEntry& pending) {
  RequestEntry entry{
      .label = pending.label, .request = {}, .privateKey = privateKeyOf(pending.privateKey)};
  if (pending.request) {
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

template <typename Planner>
sys::Status TokenStore::change(Planner planner) {
  return inTransaction(*this, [&]() -> sys::Status {
    sys::Result<Plan> plan = onView(planner);
    if (!plan) return plan.failure();
    return transaction_->apply(std::move(plan).value());
  });
}

sys::Status TokenStore::insertKey(const KeyEntry& entry) {
  if (entry.isDefault) return noDefaultKey();
  return change([&](const TokenView& view) { return planInsertKey(view, entry); });
}

sys::Status TokenStore::insertRequest(const RequestEntry& entry) {
  return change([&](const TokenView& view) { return planInsertRequest(view, entry); });
}

sys::Status TokenStore::replaceKey(const KeyEntry& entry) {
  if (entry.isDefault) return noDefaultKey();
  return change([&](const TokenView& view) { return planReplaceKey(view, entry); });
}

sys::Status TokenStore::replaceRequest(const RequestEntry& entry) {
  return change([&](const TokenView& view) { return planReplaceRequest(view, entry); });
}

sys::Status TokenStore::removeKey(const Label& label) {
  return change([&](const TokenView& view) { return planRemoveKey(view, label); });
}

sys::Status TokenStore::removeRequest(const Label& label) {
  return change([&](const TokenView& view) { return planRemoveRequest(view, label); });
}

sys::Status TokenStore::setDefault(const Label& /*label*/) { return noDefaultKey(); }

sys::Status TokenStore::setTrusted(const Label& label, bool trusted) {
  return change([&](const TokenView& view) { return planSetTrusted(view, label, trusted); });
}

/** The secondary commits first: when it cannot, the token's changes can still be undone. */
sys::Status TokenStore::runChanges(const Run& run) {
  if (transaction_) return run();
  const Ending ending(transaction_);
  transaction_.emplace(*session_, newKeyHandles());
  if (sys::Status begun = transaction_->begun(); !begun) return begun;
  if (sys::Status done = secondary_.runChanges(run); !done) return done;
  return commit();
}

sys::Status TokenStore::commit() {
  sys::Status committed = transaction_->commit();
  const std::optional<TokenView>& view = transaction_->token().viewSoFar();
  std::erase_if(newKeys_,
                [&](const KeyPairHandles& pair) { return view && !view->isNew(pair.privateKey); });
  if (snapshot_) snapshot_.emplace(*session_, newKeyHandles());
  return committed;
}

sys::Status TokenStore::runReading(const Run& run) {
  if (transaction_ || snapshot_) return run();
  const Ending ending(snapshot_);
  snapshot_.emplace(*session_, newKeyHandles());
  if (sys::Status begun = snapshot_->begun(); !begun) return begun;
  return run();
}

sys::Status TokenStore::onSignerStore(const std::function<sys::Status(Store&)>& body) {
  return secondary_.isLent() ? secondary_.use(body) : body(*this);
}

sys::Result<GeneratedKey> TokenStore::generateKey(int keySize) {
  const CallTurn turn = session_->takeTurn();
  // Tried before a key is made, which would lie on the token for nothing when it cannot be had.
  if (!transaction_) {
    const sys::Status lent = secondary_.runChanges([] { return sys::success(); });
    if (!lent) return lent.failure();
  }
  newKeys_.reserve(newKeys_.size() + 1);  // so that what is made is known without fail
  sys::Result<KeyPairObjects> pair = generateKeyPair(*session_, keySize);
  if (!pair) return pair.failure();
  const KeyPairHandles handles{.publicKey = pair.value().publicKey.handle,
                               .privateKey = pair.value().privateKey.handle};
  newKeys_.push_back(handles);
  if (snapshot_) snapshot_->addNewKey(pair.value());
  if (transaction_) transaction_->token().addNewKey(pair.value());
  return GeneratedKey{.publicKey = std::move(pair.value().publicKey.publicKey),
                      .privateKey = referenceTo(handles.privateKey)};
}

sys::Result<sys::Bytes> TokenStore::sign(const PrivateKey& key, SigningDigest digest,
                                         sys::ByteView message) {
  if (!key.pkcs8.empty()) return signWith(key, digest, message);
  return onView([&](const TokenView& view) -> sys::Result<sys::Bytes> {
    const PrivateKeyRef onToken = view.privateKey(referredTo(key));
    if (!onToken) return sys::Failure{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL};
    return signOnToken(*session_, *onToken, digest, message);
  });
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
  if (!secondary_.isLent()) return sys::Failure{ZELKM_ERR_NO_SECONDARY_KEYDB};
  secondary_.giveBack();
  return sys::success();
}

}  // namespace zel::km::token
