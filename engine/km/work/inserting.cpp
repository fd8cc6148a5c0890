#include "engine/km/work/inserting.h"

#include <utility>

#include "engine/cms/certificates.h"
#include "engine/cms/requests.h"
#include "engine/km/store/key_material.h"

namespace zel::km {

namespace {

/** The key of an entry that is put in, checked against its certificate or request. */
sys::Result<PrivateKey> matchingKey(PrivateKeys& store, sys::ByteView keyBytes,
                                    sys::ByteView publicKeyInfo) {
  sys::Result<PrivateKey> key = takePrivateKey(store, keyBytes);
  if (!key) return key;
  if (sys::Status isPair = requirePair(key.value(), publicKeyInfo); !isPair) {
    return isPair.failure();
  }
  return key;
}

}  // namespace

sys::Status insertKey(Store& store, const KeyParts& parts) {
  const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(parts.certificate);
  if (!keys) return keys.failure();
  KeyEntry entry;
  entry.label = parts.label;
  entry.certificate.assign(parts.certificate.begin(), parts.certificate.end());
  entry.trusted = parts.trusted;
  entry.isDefault = parts.isDefault;
  if (!parts.privateKey.empty()) {
    sys::Result<PrivateKey> key = matchingKey(store, parts.privateKey, keys.value().publicKeyInfo);
    if (!key) return key.failure();
    entry.privateKey = std::move(key).value();
  }
  if (entry.isDefault) {
    if (sys::Status hasKey = requirePrivateKey(entry); !hasKey) return hasKey;
  }
  return store.insertKey(entry);
}

sys::Status insertRequest(Store& store, const RequestParts& parts) {
  const sys::Result<cms::RequestFields> fields = cms::readRequest(parts.request);
  if (!fields) return fields.failure();
  sys::Result<PrivateKey> key = matchingKey(store, parts.privateKey, fields.value().publicKeyInfo);
  if (!key) return key.failure();
  RequestEntry entry;
  entry.label = parts.label;
  entry.request.assign(parts.request.begin(), parts.request.end());
  entry.privateKey = std::move(key).value();
  return store.insertRequest(entry);
}

sys::Status makeDefault(KeyEntries& store, const Label& label) {
  const sys::Result<KeyEntry> entry = store.findKey(label);
  if (!entry) return entry.failure();
  if (sys::Status hasKey = requirePrivateKey(entry.value()); !hasKey) return hasKey;
  return store.setDefault(label);
}

}  // namespace zel::km
