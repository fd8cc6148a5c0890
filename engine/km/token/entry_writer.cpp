#include "engine/km/token/entry_writer.h"

#include <algorithm>
#include <cstring>

#include "engine/cms/keys.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/requests.h"
#include "engine/km/token/certificate_objects.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/key_pairs.h"
#include "engine/km/token/public_keys.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

sys::Bytes EntryWriter::referenceTo(CK_OBJECT_HANDLE privateKey) {
  sys::Bytes reference(sizeof privateKey);
  std::memcpy(reference.data(), &privateKey, sizeof privateKey);
  return reference;
}

CK_OBJECT_HANDLE EntryWriter::referredTo(const sys::Bytes& reference) {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  if (reference.size() == sizeof handle) std::memcpy(&handle, reference.data(), sizeof handle);
  return handle;
}

sys::Result<GeneratedKey> EntryWriter::generateKey(int keySize) {
  sys::Result<TokenKeyPair> pair = generateKeyPair(session_, changes_, keySize);
  if (!pair) return pair.failure();
  unclaimed_.push_back(pair.value().handles);
  return GeneratedKey{
      .publicKey = std::move(pair.value().publicKey),
      .privateKey = {.pkcs8 = {}, .reference = referenceTo(pair.value().handles.privateKey)}};
}

Handles EntryWriter::unclaimed() const {
  Handles handles;
  for (const KeyPairHandles& pair : unclaimed_) handles.insert(pair.privateKey);
  return handles;
}

void EntryWriter::dropUnclaimed() {
  for (const KeyPairHandles& pair : unclaimed_) {
    (void)session_.destroy(pair.privateKey);  // gone already when a transaction was rolled back
    (void)session_.destroy(pair.publicKey);
  }
  unclaimed_.clear();
}

void EntryWriter::settle(bool kept) {
  if (!kept) unclaimed_.insert(unclaimed_.end(), claimed_.begin(), claimed_.end());
  claimed_.clear();
}

/** True when the key is a new one, whose ID is provisional. */
bool EntryWriter::claimNew(CK_OBJECT_HANDLE privateKey) {
  auto found = std::ranges::find(unclaimed_, privateKey, &KeyPairHandles::privateKey);
  if (found == unclaimed_.end()) return false;
  claimed_.push_back(*found);
  unclaimed_.erase(found);
  return true;
}

sys::Status EntryWriter::writeCertificate(const KeyEntry& entry) {
  const std::string label = entry.label.name();
  sys::Result<CertificateParts> parts = readCertificateParts(entry.certificate);
  if (!parts) return parts.failure();
  sys::Result<std::optional<KeyObjects>> key = keyFor(entry.privateKey, parts.value().publicKey);
  if (!key) return key.failure();
  sys::Bytes id;
  if (key.value()) {
    sys::Status claimed =
        claim(*key.value(), label, parts.value().publicKey, parts.value().subject);
    if (!claimed) return claimed;
    id = key.value()->id;
  } else {
    sys::Result<sys::Bytes> made = keyIdentifier(parts.value().publicKey);
    if (!made) return made.failure();
    id = std::move(made).value();
  }
  const CertificateMarks marks{.trusted = entry.trusted, .hasPrivateKey = key.value().has_value()};
  return createCertificateObject(changes_, parts.value(), label, id, marks);
}

sys::Status EntryWriter::writeRequest(const RequestEntry& entry) {
  const std::string label = entry.label.name();
  sys::Result<cms::RequestFields> fields = cms::readRequest(entry.request);
  if (!fields) return fields.failure();
  const sys::Bytes& publicKey = fields.value().publicKeyInfo;
  sys::Result<std::optional<KeyObjects>> key = keyFor(entry.privateKey, publicKey);
  if (!key) return key.failure();
  if (key.value()) {
    sys::Status claimed = claim(*key.value(), label, publicKey, fields.value().subjectDer);
    if (!claimed) return claimed;
  }
  Template data;
  data.addNumber(CKA_CLASS, CKO_DATA)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, true)
      .addText(CKA_LABEL, label)
      .addText(CKA_APPLICATION, "PKCS #10 certification request")
      .addBytes(CKA_VALUE, entry.request);
  CK_OBJECT_HANDLE made = CK_INVALID_HANDLE;
  const CK_RV rv = changes_.tryCreate(data, &made);
  if (rv == CKR_OK) return sys::success();
  if (!refusesSuchObjects(rv) || !key.value()) return cryptokiFailure(rv, "keep a request");
  sys::traceLine("the token takes no data objects (%s): the key keeps the subject",
                 cryptokiName(rv));
  return rememberSubject(*key.value(), fields.value().subjectDer);
}

/** Most tokens change no mark of a certificate that they have: it is put there once more. */
sys::Status EntryWriter::changeTrust(const CertificateEntry& entry, bool trusted) {
  const CertificateObject& old = *entry.certificate;
  if (old.trusted == trusted) return sys::success();
  const CertificateMarks marks{.trusted = trusted, .hasPrivateKey = entry.privateKey != nullptr};
  if (changeMarks(changes_, old.handle, marks)) return sys::success();
  sys::Result<CertificateParts> parts = readCertificateParts(old.der);
  if (!parts) return parts.failure();
  changes_.doom(old.handle);
  return createCertificateObject(changes_, parts.value(), old.label, old.id, marks);
}

sys::Status EntryWriter::replaceCertificate(const CertificateEntry& old, const KeyEntry& entry) {
  if (old.certificate->der != entry.certificate) {
    sys::Status written = writeCertificate(entry);
    return written ? removeCertificate(old) : written;
  }
  // Some tokens have a certificate once only: it stays where it is, and gets what is new to it.
  sys::Result<CertificateParts> parts = readCertificateParts(entry.certificate);
  if (!parts) return parts.failure();
  sys::Result<std::optional<KeyObjects>> key = keyFor(entry.privateKey, parts.value().publicKey);
  if (!key) return key.failure();
  if (key.value()) {
    sys::Status claimed =
        claim(*key.value(), old.certificate->label, parts.value().publicKey, parts.value().subject);
    if (!claimed) return claimed;
  }
  return changeTrust(old, entry.trusted);
}

sys::Status EntryWriter::removeCertificate(const CertificateEntry& entry) {
  changes_.doom(entry.certificate->handle);
  if (entry.privateKey == nullptr) return sys::success();
  return dropKeyIfUnused(entry.privateKey->handle);
}

sys::Status EntryWriter::removeRequest(const PendingEntry& entry) {
  if (entry.request != nullptr) changes_.doom(entry.request->handle);
  if (entry.privateKey == nullptr) return sys::success();
  return dropKeyIfUnused(entry.privateKey->handle);
}

sys::Result<std::optional<EntryWriter::KeyObjects>> EntryWriter::keyFor(const PrivateKey& key,
                                                                        sys::ByteView publicKey) {
  const CK_OBJECT_HANDLE referred = referredTo(key.reference);
  if (changes_.doomed().contains(referred)) {
    sys::Status spared = spareKey(referred);
    if (!spared) return spared.failure();
  }
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  const PrivateKeyObject* known = key.reference.empty() ? all.value().privateKeyOf(publicKey)
                                                        : all.value().privateKey(referred);
  if (known != nullptr) return std::optional(objectsOf(all.value(), *known));
  if (!key.reference.empty()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED,
                     "the private key is not on the token any more");
  }
  if (key.pkcs8.empty()) return std::optional<KeyObjects>();

  sys::Result<TokenKeyPair> pair = importKeyPair(changes_, key.pkcs8);
  if (!pair) return pair.failure();
  KeyObjects objects;
  objects.privateKey = pair.value().handles.privateKey;
  objects.publicKeys = {pair.value().handles.publicKey};
  return std::optional(std::move(objects));
}

EntryWriter::KeyObjects EntryWriter::objectsOf(const Inventory& inventory,
                                               const PrivateKeyObject& key) {
  KeyObjects objects{.privateKey = key.handle,
                     .publicKeys = {},
                     .label = key.label,
                     .id = key.id,
                     .subject = key.subject};
  for (const PublicKeyObject* each : inventory.publicKeysOf(key)) {
    objects.publicKeys.push_back(each->handle);
  }
  return objects;
}

sys::Status EntryWriter::claim(KeyObjects& key, std::string_view label, sys::ByteView publicKey,
                               sys::ByteView subject) {
  const bool isNew = claimNew(key.privateKey) || key.id.empty();
  if (key.subject.empty()) {
    sys::Status remembered = rememberSubject(key, subject);
    if (!remembered) sys::traceLine("the private key stays without a subject");
  }
  std::vector<CK_OBJECT_HANDLE> objects = key.publicKeys;
  objects.push_back(key.privateKey);
  if (isNew) {
    sys::Result<sys::Bytes> id = keyIdentifier(publicKey);
    if (!id) return id.failure();
    key.id = std::move(id).value();
  }
  for (const CK_OBJECT_HANDLE object : objects) {
    sys::Status status = sys::success();
    if (isNew) status = changes_.change(object, CKA_ID, key.id);
    if (status && key.label.empty()) {
      status = changes_.change(object, CKA_LABEL, sys::bytesOf(label));
    }
    if (!status) return status;
  }
  return sys::success();
}

sys::Status EntryWriter::rememberSubject(const KeyObjects& key, sys::ByteView subject) {
  return changes_.change(key.privateKey, CKA_SUBJECT, subject);
}

/** A key whose request was removed lives on in the certificate that is written next. */
sys::Status EntryWriter::spareKey(CK_OBJECT_HANDLE privateKey) {
  sys::Result<Inventory> everything = Inventory::take(session_, {}, {});
  if (!everything) return everything.failure();
  const PrivateKeyObject* key = everything.value().privateKey(privateKey);
  if (key == nullptr) return sys::success();
  changes_.spare(privateKey);
  for (const PublicKeyObject* each : everything.value().publicKeysOf(*key)) {
    changes_.spare(each->handle);
  }
  return sys::success();
}

sys::Status EntryWriter::dropKeyIfUnused(CK_OBJECT_HANDLE privateKey) {
  sys::Result<Inventory> all = inventory();
  if (!all) return all.failure();
  const PrivateKeyObject* key = all.value().privateKey(privateKey);
  if (key == nullptr || all.value().isCertified(*key) || all.value().isRequested(*key)) {
    return sys::success();
  }
  for (const PublicKeyObject* each : all.value().publicKeysOf(*key)) {
    changes_.doom(each->handle);
  }
  changes_.doom(privateKey);
  return sys::success();
}

}  // namespace zel::km::token
