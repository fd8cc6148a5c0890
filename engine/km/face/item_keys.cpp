#include "engine/km/face/item_keys.h"

#include <ranges>

#include "engine/cms/certificates.h"
#include "engine/km/face/item_certificates.h"
#include "engine/km/work/certificate_chain.h"
#include "engine/sys/memory.h"

namespace zel::km {

namespace {

constexpr std::int32_t kTrue = 1;

sys::Status fillPublicKey(ZELKMKeyItem& item, const sys::Bytes& certificate) {
  const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate);
  if (!keys) return keys.failure();
  const sys::Bytes& publicKey = keys.value().publicKeyInfo;
  const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(publicKey);
  if (!traits) return traits.failure();

  item.shortValue1 = static_cast<std::int64_t>(traits.value().algorithm);
  item.keySize = traits.value().size;
  item.hasBerData = kTrue;
  item.berData = sys::handOutBytes(publicKey);
  item.berDataLength = static_cast<std::uint32_t>(publicKey.size());
  return sys::success();
}

sys::Status fillPrivateKey(ZELKMKeyItem& item, Store& store, const PrivateKey& key) {
  if (!key.present()) return sys::success();
  sys::Result<EpkiItemPtr> epki = handOutEncryptedKey(store, key);
  if (!epki) return epki.failure();
  item.hasPrivateKey = kTrue;
  item.epki = epki.value().release();
  return sys::success();
}

sys::Status fillChain(ZELKMKeyItem& item, Store& store, const KeyEntry& entry) {
  const sys::Result<std::vector<LabelledCertificate>> chain = chainOf(store, entry);
  if (!chain) return chain.failure();
  sys::Result<CertItemListPtr> list = handOutCertificates(chain.value());
  if (!list) return list.failure();
  item.hasCertList = kTrue;
  item.certList = list.value().release();
  return sys::success();
}

}  // namespace

EpkiItemPtr handOutEpki(sys::ByteView encrypted) {
  EpkiItemPtr epki(sys::handOutRecord<ZELKMEPKIItem>());
  epki->berData = sys::handOutBytes(encrypted);
  epki->berDataLength = static_cast<std::uint32_t>(encrypted.size());
  return epki;
}

sys::Result<EpkiItemPtr> handOutEncryptedKey(PrivateKeys& store, const PrivateKey& key) {
  if (key.pkcs8.empty()) return EpkiItemPtr();
  const sys::Result<sys::Bytes> encrypted = store.encryptedPrivateKey(key);
  if (!encrypted) return encrypted.failure();
  return handOutEpki(encrypted.value());
}

sys::Result<KeyItemPtr> handOutKey(Store& store, const KeyEntry& entry) {
  KeyItemPtr item(sys::handOutRecord<ZELKMKeyItem>());
  item->label = sys::handOutText(entry.label.text());
  item->booleanValue1 = entry.trusted ? kTrue : 0;
  item->booleanValue2 = entry.isDefault ? kTrue : 0;
  sys::Status status = fillPublicKey(*item, entry.certificate);
  if (status) status = fillPrivateKey(*item, store, entry.privateKey);
  if (status) status = fillChain(*item, store, entry);
  if (!status) return status.failure();
  return item;
}

sys::Result<KeyItemListPtr> handOutKeys(Store& store, const std::vector<KeyEntry>& entries) {
  if (entries.empty()) return sys::Failure{ZELKM_ERR_KEY_GET_BY_LABEL};
  KeyItemListPtr list;
  for (const KeyEntry& entry : std::views::reverse(entries)) {
    sys::Result<KeyItemPtr> item = handOutKey(store, entry);
    if (!item) return item.failure();
    auto* node = sys::handOutRecord<ZELKMKeyItemList>();
    node->item = item.value().release();
    node->next = list.release();
    list.reset(node);
  }
  return list;
}

}  // namespace zel::km
