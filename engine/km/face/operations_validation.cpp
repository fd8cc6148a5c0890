// Whether a store trusts a certificate.

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/validating.h"

using namespace zel;
using namespace zel::km;

int ZELKM_ValidateCertChain(int handle, const unsigned char* certBytes, uint32_t certLength,
                            unsigned char* isValid) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(isValid); !given) return given;
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    if (sys::Status valid = validate(store, certificate.value()); !valid) return valid;
    *isValid = 1;
    return sys::success();
  });
}
