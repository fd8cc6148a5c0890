#include "bridge/kmlib/zelkm.h"
#include "engine/cms/certificates.h"
#include "engine/cms/requests.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/store/key_material.h"
#include "engine/sys/trace.h"

// Putting entries into a store, taking them out, and marking them.

using namespace zel;
using namespace zel::km;

namespace {

/** The key of an entry that is put in, checked against its certificate or request. */
sys::Result<PrivateKey> matchingKey(Store& store, sys::ByteView keyBytes,
                                    sys::ByteView publicKeyInfo) {
  sys::Result<PrivateKey> key = takePrivateKey(store, keyBytes);
  if (!key) return key;
  if (sys::Status isPair = requirePair(key.value(), publicKeyInfo); !isPair) {
    return isPair.failure();
  }
  return key;
}

}  // namespace

int ZELKM_InsertKey(int handle, const char* label, uint32_t certLength,
                    const unsigned char* certBytes, uint32_t keyLength,
                    const unsigned char* keyBytes, unsigned char firstFlag,
                    unsigned char secondFlag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return sys::fail(ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "no certificate");
    const sys::Result<sys::ByteView> keyGiven = optionalBytesArgument(keyBytes, keyLength);
    if (!keyGiven) return keyGiven.failure();

    KeyEntry entry;
    entry.label = wanted.value();
    entry.certificate.assign(certificate.value().begin(), certificate.value().end());
    entry.trusted = firstFlag != 0;
    entry.isDefault = secondFlag != 0;
    const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(entry.certificate);
    if (!keys) return keys.failure();
    if (!keyGiven.value().empty()) {
      sys::Result<PrivateKey> key =
          matchingKey(store, keyGiven.value(), keys.value().publicKeyInfo);
      if (!key) return key.failure();
      entry.privateKey = std::move(key).value();
    }
    if (entry.isDefault) {
      if (sys::Status hasKey = requirePrivateKey(entry); !hasKey) return hasKey;
    }
    return store.insertKey(entry);
  });
}

int ZELKM_InsertReqKey(int handle, const char* label, uint32_t firstLength,
                       const unsigned char* firstBytes, uint32_t secondLength,
                       const unsigned char* secondBytes) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::ByteView> request = bytesArgument(firstBytes, firstLength);
    if (!request) return request.failure();
    const sys::Result<sys::ByteView> keyGiven = bytesArgument(secondBytes, secondLength);
    if (!keyGiven) return sys::fail(ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "no private key");

    const sys::Result<cms::RequestFields> fields = cms::readRequest(request.value());
    if (!fields) return fields.failure();
    sys::Result<PrivateKey> key =
        matchingKey(store, keyGiven.value(), fields.value().publicKeyInfo);
    if (!key) return key.failure();

    RequestEntry entry;
    entry.label = wanted.value();
    entry.request.assign(request.value().begin(), request.value().end());
    entry.privateKey = std::move(key).value();
    return store.insertRequest(entry);
  });
}

int ZELKM_DeleteKey(int handle, const char* label) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    return wanted ? store.removeKey(wanted.value()) : wanted.failure();
  });
}

int ZELKM_DeleteRequestKeyPair(int handle, const char* label) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    return wanted ? store.removeRequest(wanted.value()) : wanted.failure();
  });
}

int ZELKM_SetDefaultKeyByLabel(int handle, const char* label) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<KeyEntry> entry = store.findKey(wanted.value());
    if (!entry) return entry.failure();
    if (sys::Status hasKey = requirePrivateKey(entry.value()); !hasKey) return hasKey;
    return store.setDefault(wanted.value());
  });
}

int ZELKM_SetTrustStatus(int handle, const char* label, unsigned char trusted) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    return wanted ? store.setTrusted(wanted.value(), trusted != 0) : wanted.failure();
  });
}
