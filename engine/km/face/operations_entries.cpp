// Putting entries into a store, taking them out, and marking them.

#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/inserting.h"
#include "engine/sys/trace.h"

using namespace zel;
using namespace zel::km;

int ZELKM_InsertKey(int handle, const char* label, uint32_t certLength,
                    const unsigned char* certBytes, uint32_t keyLength,
                    const unsigned char* keyBytes, unsigned char firstFlag,
                    unsigned char secondFlag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return sys::fail(ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "no certificate");
    const sys::Result<sys::ByteView> key = optionalBytesArgument(keyBytes, keyLength);
    if (!key) return key.failure();
    return insertKey(store, {.label = std::move(wanted).value(),
                             .certificate = certificate.value(),
                             .privateKey = key.value(),
                             .trusted = firstFlag != 0,
                             .isDefault = secondFlag != 0});
  });
}

int ZELKM_InsertReqKey(int handle, const char* label, uint32_t firstLength,
                       const unsigned char* firstBytes, uint32_t secondLength,
                       const unsigned char* secondBytes) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::ByteView> request = bytesArgument(firstBytes, firstLength);
    if (!request) return request.failure();
    const sys::Result<sys::ByteView> key = bytesArgument(secondBytes, secondLength);
    if (!key) return sys::fail(ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "no private key");
    return insertRequest(store, {.label = std::move(wanted).value(),
                                 .request = request.value(),
                                 .privateKey = key.value()});
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
    return wanted ? makeDefault(store, wanted.value()) : wanted.failure();
  });
}

int ZELKM_SetTrustStatus(int handle, const char* label, unsigned char trusted) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    return wanted ? store.setTrusted(wanted.value(), trusted != 0) : wanted.failure();
  });
}
