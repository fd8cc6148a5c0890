#include "engine/km/token/token_view.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "engine/cms/keys.h"
#include "engine/km/store/new_labels.h"
#include "engine/km/store/numbered_labels.h"
#include "engine/sys/hexadecimal.h"

namespace zel::km::token {

namespace {

bool same(sys::ByteView left, sys::ByteView right) { return std::ranges::equal(left, right); }

/** Tells whether a certificate can be for a key of that type. */
bool fitsType(CK_ULONG keyType, sys::ByteView publicKeyInfo) {
  sys::Result<cms::KeyTraits> traits = cms::describePublicKey(publicKeyInfo);
  if (!traits) return false;
  switch (traits.value().algorithm) {
    case cms::KeyAlgorithm::rsa:
      return keyType == CKK_RSA;
    case cms::KeyAlgorithm::ec:
      return keyType == CKK_EC;
    default:
      return keyType != CKK_RSA && keyType != CKK_EC;
  }
}

/** A certificate's name, or what comes closest to one. */
std::string nameOf(const CertificateObject& certificate, const PrivateKeyObject* key) {
  if (!certificate.label.empty()) return certificate.label;
  if (key != nullptr && !key->label.empty()) return key->label;
  return nameOfUnlabelled(certificate.der);
}

std::string nameOf(const PrivateKeyObject& key) {
  if (!key.label.empty()) return key.label;
  return key.id.empty() ? "key" : sys::hexadecimal(key.id);
}

template <typename Entry>
std::optional<Entry> withLabel(std::vector<Entry> entries, const Label& label) {
  auto found = std::ranges::find(entries, label, &Entry::label);
  if (found == entries.end()) return std::nullopt;
  return *std::move(found);
}

PrivateKeyRef keyAmong(const std::vector<PrivateKeyRef>& keys, CK_OBJECT_HANDLE handle) {
  auto found = std::ranges::find(keys, handle, [](const auto& key) { return key->handle; });
  return found == keys.end() ? nullptr : *found;
}

std::vector<PublicKeyRef> publicKeysAmong(const std::vector<PublicKeyRef>& keys,
                                          const PrivateKeyObject& key) {
  std::vector<PublicKeyRef> found;
  if (key.publicKey.empty()) return found;
  std::ranges::copy_if(keys, std::back_inserter(found), [&](const PublicKeyRef& each) {
    return same(each->publicKey, key.publicKey);
  });
  return found;
}

}  // namespace

TokenView::TokenView(TokenObjects objects, Handles newKeys)
    : objects_(std::move(objects)), newKeys_(std::move(newKeys)) {
  completePublicKeys();
}

/** EC private keys do not tell their public key, but have a public key object beside them. */
void TokenView::completePublicKeys() {
  for (PrivateKeyRef& key : objects_.privateKeys) {
    if (!key->publicKey.empty() || key->id.empty()) continue;
    const auto isBeside = [&](const PublicKeyRef& other) {
      return other->type == key->type && same(other->id, key->id) && !other->publicKey.empty();
    };
    auto beside = std::ranges::find_if(objects_.publicKeys, isBeside);
    if (beside == objects_.publicKeys.end()) continue;
    // An ID that was given twice says nothing.
    const bool isAmbiguous =
        std::any_of(beside, objects_.publicKeys.end(), [&](const PublicKeyRef& other) {
          return isBeside(other) && !same(other->publicKey, (*beside)->publicKey);
        });
    if (isAmbiguous) continue;
    PrivateKeyObject completed = *key;
    completed.publicKey = (*beside)->publicKey;
    key = std::make_shared<const PrivateKeyObject>(std::move(completed));
  }
}

std::vector<CertificateEntry> TokenView::certificates() const {
  std::vector<CertificateEntry> entries;
  for (const CertificateRef& certificate : objects_.certificates) {
    PrivateKeyRef key = keyOf(*certificate);
    entries.push_back({Label::ofName(nameOf(*certificate, key.get())), certificate, key});
  }
  std::ranges::sort(entries, [](const auto& left, const auto& right) {
    return std::tie(left.label, left.certificate->publicKey, left.certificate->der) <
           std::tie(right.label, right.certificate->publicKey, right.certificate->der);
  });
  numberLabels(entries);
  return entries;
}

std::vector<PendingEntry> TokenView::requests() const {
  std::vector<PendingEntry> entries;
  for (const RequestRef& request : objects_.requests) {
    PrivateKeyRef key = privateKeyOf(request->publicKey);
    std::string name = request->label;
    if (name.empty()) name = key ? nameOf(*key) : "request";
    entries.push_back({Label::ofName(name), request, key});
  }
  for (const PrivateKeyRef& key : objects_.privateKeys) {
    if (isNew(key->handle) || isUsed(*key)) continue;
    entries.push_back({Label::ofName(nameOf(*key)), nullptr, key});
  }
  std::ranges::sort(entries, [](const PendingEntry& left, const PendingEntry& right) {
    const auto tieBreaker = [](const PendingEntry& entry) -> const sys::Bytes& {
      return entry.request ? entry.request->der : entry.privateKey->id;
    };
    return std::tie(left.label, left.publicKey(), tieBreaker(left)) <
           std::tie(right.label, right.publicKey(), tieBreaker(right));
  });
  numberLabels(entries);
  return entries;
}

std::optional<CertificateEntry> TokenView::certificate(const Label& label) const {
  return withLabel(certificates(), label);
}

std::optional<PendingEntry> TokenView::request(const Label& label) const {
  return withLabel(requests(), label);
}

PrivateKeyRef TokenView::privateKey(CK_OBJECT_HANDLE handle) const {
  return keyAmong(objects_.privateKeys, handle);
}

PrivateKeyRef TokenView::privateKeyOf(sys::ByteView publicKey) const {
  if (publicKey.empty()) return nullptr;
  auto found = std::ranges::find_if(objects_.privateKeys, [&](const PrivateKeyRef& key) {
    return same(key->publicKey, publicKey);
  });
  return found == objects_.privateKeys.end() ? nullptr : *found;
}

std::vector<PublicKeyRef> TokenView::publicKeysOf(const PrivateKeyObject& key) const {
  return publicKeysAmong(objects_.publicKeys, key);
}

/**
 * The public key decides. Where the token does not tell it the ID does, unless it was given to
 * several keys: those cannot be told apart, and are left without a certificate.
 */
bool TokenView::belongTogether(const CertificateObject& certificate,
                               const PrivateKeyObject& key) const {
  if (!key.publicKey.empty()) return same(key.publicKey, certificate.publicKey);
  if (key.id.empty() || !same(key.id, certificate.id)) return false;
  const auto isLike = [&](const PrivateKeyRef& other) {
    return other->type == key.type && same(other->id, key.id);
  };
  return fitsType(key.type, certificate.publicKey) &&
         std::ranges::count_if(objects_.privateKeys, isLike) == 1;
}

/** Of copies of one private key, the one with the certificate's ID is taken. */
PrivateKeyRef TokenView::keyOf(const CertificateObject& certificate) const {
  PrivateKeyRef found;
  for (const PrivateKeyRef& key : objects_.privateKeys) {
    if (!belongTogether(certificate, *key)) continue;
    if (same(key->id, certificate.id)) return key;
    if (!found) found = key;
  }
  return found;
}

bool TokenView::isCertified(const PrivateKeyObject& key) const {
  return std::ranges::any_of(objects_.certificates, [&](const CertificateRef& certificate) {
    return belongTogether(*certificate, key);
  });
}

bool TokenView::isRequested(const PrivateKeyObject& key) const {
  return !key.publicKey.empty() &&
         std::ranges::any_of(objects_.requests, [&](const RequestRef& request) {
           return same(request->publicKey, key.publicKey);
         });
}

void TokenView::addNewKey(KeyPairObjects pair) {
  newKeys_.insert(pair.privateKey.handle);
  objects_.put(std::move(pair.privateKey));
  objects_.put(std::move(pair.publicKey));
}

std::vector<CK_OBJECT_HANDLE> TokenView::removed() const {
  std::vector<CK_OBJECT_HANDLE> handles;
  const auto collect = [&](const auto& objects) {
    for (const auto& object : objects) handles.push_back(object->handle);
  };
  // In this order: a key that is left over when the token fails in between is listed still.
  collect(removed_.certificates);
  collect(removed_.requests);
  collect(removed_.publicKeys);
  collect(removed_.privateKeys);
  return handles;
}

PrivateKeyRef TokenView::removedKey(CK_OBJECT_HANDLE handle) const {
  return keyAmong(removed_.privateKeys, handle);
}

void TokenView::restoreKey(CK_OBJECT_HANDLE privateKey) {
  const PrivateKeyRef key = removedKey(privateKey);
  if (!key) return;
  for (const PublicKeyRef& each : publicKeysAmong(removed_.publicKeys, *key)) {
    removed_.moveTo(objects_, each->handle);
  }
  removed_.moveTo(objects_, privateKey);
}

}  // namespace zel::km::token
