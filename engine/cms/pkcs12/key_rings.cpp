#include "engine/cms/pkcs12/key_rings.h"

#include "engine/cms/keys.h"
#include "engine/cms/pkcs12/opening.h"
#include "engine/cms/pkcs12/pairing.h"
#include "engine/cms/pkcs12/sealing.h"
#include "engine/cms/requests.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** The certificates stand in the order of the entries. */
sys::Status addEntries(const std::vector<KeyRingEntry>& entries, Pkcs12Draft& draft) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const KeyRingEntry& entry = entries[i];
    Pkcs12Attributes attributes{.friendlyName = entry.label};
    if (!entry.privateKeyInfo.empty()) {
      attributes.localKeyId = localKeyIdOf(i);
      const sys::Status added = draft.addKey(entry.privateKeyInfo, attributes);
      if (!added) return added;
    }
    attributes.trusted = entry.trusted;
    attributes.isDefault = entry.isDefault;
    const sys::Status added = draft.addCertificate(entry.certificate, attributes);
    if (!added) return added;
  }
  return sys::success();
}

sys::Status addRequests(const std::vector<KeyRingRequest>& requests, Pkcs12Draft& draft) {
  for (const KeyRingRequest& request : requests) {
    const sys::Status added = draft.addRequestKey(
        request.privateKeyInfo, {.friendlyName = request.label, .request = request.request});
    if (!added) return added;
  }
  return sys::success();
}

KeyRingEntry entryOf(Pkcs12Certificate certificate) {
  KeyRingEntry entry;
  entry.label = std::move(certificate.attributes.friendlyName);
  entry.certificate = std::move(certificate.der);
  entry.trusted = certificate.attributes.trusted;
  entry.isDefault = certificate.attributes.isDefault;
  return entry;
}

/** Gives a key to the entry of its certificate, or to a second one when that has a key already. */
void giveKey(Pkcs12Key key, std::size_t place, std::vector<KeyRingEntry>& entries) {
  if (!entries[place].privateKeyInfo.empty()) {
    KeyRingEntry second;
    second.certificate = entries[place].certificate;
    entries.push_back(std::move(second));
    place = entries.size() - 1;
  }
  KeyRingEntry& entry = entries[place];
  entry.privateKeyInfo = std::move(key.privateKeyInfo);
  if (!key.attributes.friendlyName.empty()) entry.label = std::move(key.attributes.friendlyName);
}

sys::Result<std::vector<KeyRingEntry>> entriesOf(Pkcs12Contents& contents) {
  const Pkcs12Pairing pairing(contents.certificates);
  std::vector<std::size_t> places;
  for (const Pkcs12Key& key : contents.keys) {
    const sys::Result<std::size_t> place = pairing.certificateOf(key);
    if (!place) return place.failure();
    places.push_back(place.value());
  }
  std::vector<KeyRingEntry> entries;
  for (Pkcs12Certificate& certificate : contents.certificates) {
    entries.push_back(entryOf(std::move(certificate)));
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    giveKey(std::move(contents.keys[i]), places[i], entries);
  }
  return entries;
}

sys::Result<KeyRingRequest> requestOf(Pkcs12Key key) {
  const sys::Result<KeyPtr> read = readPrivateKey(key.privateKeyInfo);
  if (!read) return read.failure();
  const sys::Result<RequestFields> fields = readRequest(key.attributes.request);
  if (!fields || !isPair(*read.value(), fields.value().publicKeyInfo)) {
    return sys::fail(ZELKM_ERR_INVALID_PKCS12_DATA, "the request \"%s\" is not of its key",
                     key.attributes.friendlyName.c_str());
  }
  KeyRingRequest request;
  request.label = std::move(key.attributes.friendlyName);
  request.request = std::move(key.attributes.request);
  request.privateKeyInfo = std::move(key.privateKeyInfo);
  return request;
}

}  // namespace

sys::Result<sys::Bytes> writeKeyRing(const KeyRing& ring, sys::ByteView password) {
  sys::Result<Pkcs12Draft> draft = Pkcs12Draft::begin(password, Pkcs12Encryption::strong);
  if (!draft) return draft.failure();
  // The JDK keeps the last of two bags with one label: a key, rather than a request.
  sys::Status added = addRequests(ring.requests, draft.value());
  if (added) added = addEntries(ring.entries, draft.value());
  if (!added) return added.failure();
  return draft.value().seal();
}

sys::Result<KeyRing> readKeyRing(sys::ByteView file, sys::ByteView password) {
  sys::Result<Pkcs12Contents> contents = openPkcs12(file, password);
  if (!contents) return contents.failure();
  sys::Result<std::vector<KeyRingEntry>> entries = entriesOf(contents.value());
  if (!entries) return entries.failure();
  KeyRing ring;
  ring.entries = std::move(entries).value();
  for (Pkcs12Key& key : contents.value().requestKeys) {
    sys::Result<KeyRingRequest> request = requestOf(std::move(key));
    if (!request) return request.failure();
    ring.requests.push_back(std::move(request).value());
  }
  return ring;
}

}  // namespace zel::cms
