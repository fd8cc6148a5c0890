// Renewal: another certificate for the subject and the key of an entry.

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/renewing.h"

using namespace zel;
using namespace zel::km;

int ZELKM_CheckCertAsRenewal(int handle, const unsigned char* certBytes, uint32_t certLength,
                             unsigned char* isRenewal) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(isRenewal); !given) return given;
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    const sys::Result<bool> renews = km::isRenewal(store, certificate.value());
    if (!renews) return renews.failure();
    *isRenewal = renews.value() ? 1 : 0;
    return sys::success();
  });
}

int ZELKM_RenewCert(int handle, const unsigned char* certBytes, uint32_t certLength) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    return renew(store, certificate.value());
  });
}
