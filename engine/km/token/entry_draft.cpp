#include "engine/km/token/entry_draft.h"

#include <string>
#include <utility>
#include <vector>

#include "engine/cms/keys.h"
#include "engine/cms/requests.h"
#include "engine/km/token/key_references.h"
#include "engine/km/token/object_templates.h"
#include "engine/km/token/public_keys.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/**
 * CKA_TRUSTED is for the token's security officer to set, not for its user: a trusted certificate
 * is said to be an authority's.
 */
CertificateCategory categoryOf(bool isTrusted, bool hasPrivateKey) {
  if (isTrusted) return kAuthority;
  return hasPrivateKey ? kTokenUser : kOtherEntity;
}

/** A token that does not know categories keeps the certificate unmarked. */
Step certificateCreation(const CertificateParts& parts, CertificateObject object) {
  Template marked = certificateTemplate(parts, object.label, object.id);
  marked.addNumber(CKA_CERTIFICATE_CATEGORY, object.category);
  CertificateObject unmarked = object;
  unmarked.category = kUnspecified;

  Step step{CreateObject{std::move(marked), std::move(object)}};
  step.tolerated = Refusal::attributeType;
  step.instead.push_back(
      {CreateObject{certificateTemplate(parts, unmarked.label, unmarked.id), unmarked}});
  return step;
}

}  // namespace

void Draft::add(Step step) {
  follow(view_, step.action);
  plan_.push_back(std::move(step));
}

void Draft::addCreation(Template attributes, TokenObject object) {
  add({CreateObject{std::move(attributes), std::move(object)}});
}

sys::Status Draft::writeCertificate(const KeyEntry& entry) {
  const std::string label = entry.label.name();
  sys::Result<CertificateParts> parts = readCertificateParts(entry.certificate);
  if (!parts) return parts.failure();
  const sys::Bytes& publicKey = parts.value().publicKey;
  sys::Result<std::optional<EntryKey>> key =
      writeKey(entry.privateKey, {label, publicKey, parts.value().subject});
  if (!key) return key.failure();
  sys::Result<sys::Bytes> id = key.value() ? key.value()->id : keyIdentifier(publicKey);
  if (!id) return id.failure();

  CertificateObject object = certificateObject(entry.certificate);
  object.handle = nextHandle();
  object.label = label;
  object.id = std::move(id).value();
  object.category = categoryOf(entry.trusted, key.value().has_value());
  add(certificateCreation(parts.value(), std::move(object)));
  return sys::success();
}

sys::Status Draft::writeRequest(const RequestEntry& entry) {
  const std::string label = entry.label.name();
  sys::Result<cms::RequestFields> fields = cms::readRequest(entry.request);
  if (!fields) return fields.failure();
  const sys::Bytes& publicKey = fields.value().publicKeyInfo;
  const sys::Bytes& subject = fields.value().subjectDer;
  sys::Result<std::optional<EntryKey>> key =
      writeKey(entry.privateKey, {label, publicKey, subject});
  if (!key) return key.failure();

  RequestObject object{
      .handle = nextHandle(), .label = label, .der = entry.request, .publicKey = publicKey};
  Step step{CreateObject{requestTemplate(entry.request, label), std::move(object)}};
  if (key.value()) {
    step.tolerated = Refusal::objectKind;
    step.instead.push_back({SetAttribute{key.value()->privateKey, CKA_SUBJECT, subject}});
  }
  add(std::move(step));
  return sys::success();
}

sys::Status Draft::completeCertificate(const CertificateEntry& old, const KeyEntry& entry) {
  sys::Result<CertificateParts> parts = readCertificateParts(entry.certificate);
  if (!parts) return parts.failure();
  sys::Result<std::optional<EntryKey>> key = writeKey(
      entry.privateKey, {old.certificate->label, parts.value().publicKey, parts.value().subject});
  if (!key) return key.failure();
  return changeTrust(old, entry.trusted);
}

/** Most tokens change no mark of a certificate that they have: it is put there once more. */
sys::Status Draft::changeTrust(const CertificateEntry& entry, bool isTrusted) {
  const CertificateObject& old = *entry.certificate;
  if (old.isTrusted() == isTrusted) return sys::success();
  sys::Result<CertificateParts> parts = readCertificateParts(old.der);
  if (!parts) return parts.failure();
  const CK_ULONG category = categoryOf(isTrusted, entry.privateKey != nullptr);
  CertificateObject another = old;
  another.handle = nextHandle();
  another.category = category;
  another.vouchedFor = false;

  Step step{SetAttribute{old.handle, CKA_CERTIFICATE_CATEGORY, numberValue(category)}};
  step.tolerated = Refusal::any;
  step.instead.push_back({RemoveObject{old.handle}});
  step.instead.push_back(certificateCreation(parts.value(), std::move(another)));
  add(std::move(step));
  return sys::success();
}

void Draft::removeCertificate(const CertificateEntry& entry) {
  add({RemoveObject{entry.certificate->handle}});
  removeKeyIfUnused(entry.privateKey);
}

void Draft::removeRequest(const PendingEntry& entry) {
  if (entry.request) add({RemoveObject{entry.request->handle}});
  removeKeyIfUnused(entry.privateKey);
}

void Draft::removeKeyIfUnused(const PrivateKeyRef& key) {
  if (!key || view_.isUsed(*key)) return;
  for (const PublicKeyRef& each : view_.publicKeysOf(*key)) add({RemoveObject{each->handle}});
  add({RemoveObject{key->handle}});
}

sys::Result<std::optional<Draft::EntryKey>> Draft::writeKey(const PrivateKey& key,
                                                            const EntryNames& names) {
  sys::Result<PrivateKeyRef> known = findKey(key, names.publicKey);
  if (!known) return known.failure();
  if (!known.value() && key.pkcs8.empty()) return std::optional<EntryKey>();
  sys::Result<EntryKey> written =
      known.value() ? nameKey(*known.value(), names) : importKey(key.pkcs8, names);
  if (!written) return written.failure();
  return std::optional(std::move(written).value());
}

sys::Result<PrivateKeyRef> Draft::findKey(const PrivateKey& key, sys::ByteView publicKey) {
  if (key.reference.empty()) return view_.privateKeyOf(publicKey);
  const CK_OBJECT_HANDLE handle = referredTo(key);
  // A key whose request was removed lives on in the certificate that is written next.
  if (view_.removedKey(handle)) add({RestoreKey{handle}});
  PrivateKeyRef found = view_.privateKey(handle);
  if (!found) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED,
                     "the private key is not on the token any more");
  }
  return found;
}

/** Gives the key pair the label, ID and subject that it does not have yet. */
sys::Result<Draft::EntryKey> Draft::nameKey(const PrivateKeyObject& key, const EntryNames& names) {
  std::vector<CK_OBJECT_HANDLE> objects;
  for (const PublicKeyRef& each : view_.publicKeysOf(key)) objects.push_back(each->handle);
  objects.push_back(key.handle);

  sys::Bytes id = key.id;
  const bool isNew = view_.isNew(key.handle);
  const bool getsId = isNew || key.id.empty();
  if (getsId) {
    sys::Result<sys::Bytes> made = keyIdentifier(names.publicKey);
    if (!made) return made.failure();
    id = std::move(made).value();
  }
  if (isNew) add({UseNewKey{key.handle}});
  if (key.subject.empty()) {
    add({SetAttribute{key.handle, CKA_SUBJECT, names.subject}, Refusal::any});
  }
  const sys::ByteView label = sys::bytesOf(names.label);
  for (const CK_OBJECT_HANDLE object : objects) {
    if (getsId) add({SetAttribute{object, CKA_ID, id}});
    if (key.label.empty()) {
      add({SetAttribute{object, CKA_LABEL, {label.begin(), label.end()}}});
    }
  }
  return EntryKey{.privateKey = key.handle, .id = std::move(id)};
}

sys::Result<Draft::EntryKey> Draft::importKey(sys::ByteView pkcs8, const EntryNames& names) {
  sys::Result<cms::KeyPtr> key = cms::readPrivateKey(pkcs8);
  if (!key) return key.failure();
  sys::Result<sys::Bytes> id = keyIdentifier(names.publicKey);
  if (!id) return id.failure();
  sys::Result<KeyPairTemplates> templates = importedPair(*key.value(), names.label, id.value());
  if (!templates) return templates.failure();

  const bool isRsa = cms::describeKey(*key.value()).algorithm == cms::KeyAlgorithm::rsa;
  PrivateKeyObject privateKey{.handle = nextHandle(),
                              .type = isRsa ? CKK_RSA : CKK_EC,
                              .label = std::string(names.label),
                              .id = id.value(),
                              .subject = {},
                              .publicKey = names.publicKey};
  PublicKeyObject publicKey{.handle = nextHandle(),
                            .type = privateKey.type,
                            .label = privateKey.label,
                            .id = id.value(),
                            .publicKey = names.publicKey};
  EntryKey written{.privateKey = privateKey.handle, .id = std::move(id).value()};
  addCreation(std::move(templates.value().privateKey), std::move(privateKey));
  addCreation(std::move(templates.value().publicKey), std::move(publicKey));
  add({SetAttribute{written.privateKey, CKA_SUBJECT, names.subject}, Refusal::any});
  return written;
}

}  // namespace zel::km::token
