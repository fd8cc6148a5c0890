#include "engine/km/token/inventory.h"

#include <algorithm>
#include <tuple>

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

/** A certificate's label, or what comes closest to one. */
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
const Entry* withLabel(const std::vector<Entry>& entries, const Label& label) {
  auto found = std::ranges::find(entries, label, &Entry::label);
  return found == entries.end() ? nullptr : &*found;
}

}  // namespace

sys::Result<Inventory> Inventory::take(const Session& session, const Handles& doomed,
                                       const Handles& unclaimed) {
  sys::Result<TokenObjects> objects = readTokenObjects(session, doomed);
  if (!objects) return objects.failure();
  return Inventory(std::move(objects).value(), unclaimed);
}

Inventory::Inventory(TokenObjects objects, const Handles& unclaimed)
    : objects_(std::move(objects)) {
  completePublicKeys();
  enterCertificates();
  enterRequests(unclaimed);
}

/** EC private keys do not tell their public key, but have a public key object beside them. */
void Inventory::completePublicKeys() {
  for (PrivateKeyObject& key : objects_.privateKeys) {
    if (!key.publicKey.empty() || key.id.empty()) continue;
    const auto isBeside = [&](const PublicKeyObject& other) {
      return other.type == key.type && same(other.id, key.id) && !other.publicKey.empty();
    };
    auto beside = std::ranges::find_if(objects_.publicKeys, isBeside);
    if (beside == objects_.publicKeys.end()) continue;
    // An ID that was given twice says nothing.
    const bool isAmbiguous =
        std::any_of(beside, objects_.publicKeys.end(), [&](const PublicKeyObject& other) {
          return isBeside(other) && !same(other.publicKey, beside->publicKey);
        });
    if (!isAmbiguous) key.publicKey = beside->publicKey;
  }
}

void Inventory::enterCertificates() {
  for (const CertificateObject& certificate : objects_.certificates) {
    const PrivateKeyObject* key = keyOf(certificate);
    certificates_.push_back({Label::ofName(nameOf(certificate, key)), &certificate, key});
  }
  std::ranges::sort(certificates_, [](const auto& left, const auto& right) {
    return std::tie(left.label, left.certificate->publicKey, left.certificate->der) <
           std::tie(right.label, right.certificate->publicKey, right.certificate->der);
  });
  numberLabels(certificates_);
}

void Inventory::enterRequests(const Handles& unclaimed) {
  for (const RequestObject& request : objects_.requests) {
    const PrivateKeyObject* key = privateKeyOf(request.publicKey);
    std::string name = request.label;
    if (name.empty()) name = key == nullptr ? "request" : nameOf(*key);
    requests_.push_back({Label::ofName(name), &request, key});
  }
  for (const PrivateKeyObject& key : objects_.privateKeys) {
    if (unclaimed.contains(key.handle) || isCertified(key) || isRequested(key)) continue;
    requests_.push_back({Label::ofName(nameOf(key)), nullptr, &key});
  }
  const auto precedes = [](const PendingEntry& left, const PendingEntry& right) {
    if (left.label != right.label) return left.label < right.label;
    if (!same(left.publicKey(), right.publicKey())) {
      return std::ranges::lexicographical_compare(left.publicKey(), right.publicKey());
    }
    const auto tieBreaker = [](const PendingEntry& entry) {
      return entry.request != nullptr ? entry.request->der : entry.privateKey->id;
    };
    return tieBreaker(left) < tieBreaker(right);
  };
  std::ranges::sort(requests_, precedes);
  numberLabels(requests_);
}

/**
 * The public key decides. Where the token does not tell it the ID does, unless it was given to
 * several keys: those cannot be told apart, and are left without a certificate.
 */
bool Inventory::belongTogether(const CertificateObject& certificate,
                               const PrivateKeyObject& key) const {
  if (!key.publicKey.empty()) return same(key.publicKey, certificate.publicKey);
  if (key.id.empty() || !same(key.id, certificate.id)) return false;
  const auto isLike = [&](const PrivateKeyObject& other) {
    return other.type == key.type && same(other.id, key.id);
  };
  return fitsType(key.type, certificate.publicKey) &&
         std::ranges::count_if(objects_.privateKeys, isLike) == 1;
}

/** Of copies of one private key, the one with the certificate's ID is taken. */
const PrivateKeyObject* Inventory::keyOf(const CertificateObject& certificate) const {
  const PrivateKeyObject* found = nullptr;
  for (const PrivateKeyObject& key : objects_.privateKeys) {
    if (!belongTogether(certificate, key)) continue;
    if (same(key.id, certificate.id)) return &key;
    if (found == nullptr) found = &key;
  }
  return found;
}

bool Inventory::isCertified(const PrivateKeyObject& key) const {
  return std::ranges::any_of(objects_.certificates, [&](const CertificateObject& certificate) {
    return belongTogether(certificate, key);
  });
}

bool Inventory::isRequested(const PrivateKeyObject& key) const {
  return !key.publicKey.empty() &&
         std::ranges::any_of(objects_.requests, [&](const RequestObject& request) {
           return same(request.publicKey, key.publicKey);
         });
}

std::vector<const PublicKeyObject*> Inventory::publicKeysOf(const PrivateKeyObject& key) const {
  std::vector<const PublicKeyObject*> found;
  for (const PublicKeyObject& each : objects_.publicKeys) {
    if (!key.publicKey.empty() && same(each.publicKey, key.publicKey)) found.push_back(&each);
  }
  return found;
}

const CertificateEntry* Inventory::certificate(const Label& label) const {
  return withLabel(certificates_, label);
}

const PendingEntry* Inventory::request(const Label& label) const {
  return withLabel(requests_, label);
}

const PrivateKeyObject* Inventory::privateKey(CK_OBJECT_HANDLE handle) const {
  auto found = std::ranges::find(objects_.privateKeys, handle, &PrivateKeyObject::handle);
  return found == objects_.privateKeys.end() ? nullptr : &*found;
}

const PrivateKeyObject* Inventory::privateKeyOf(sys::ByteView publicKey) const {
  auto found = std::ranges::find_if(objects_.privateKeys, [&](const PrivateKeyObject& key) {
    return !publicKey.empty() && same(key.publicKey, publicKey);
  });
  return found == objects_.privateKeys.end() ? nullptr : &*found;
}

}  // namespace zel::km::token
