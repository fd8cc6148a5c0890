// Taking in the certificates that authorities have issued, and those of the authorities.

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/receiving.h"

using namespace zel;
using namespace zel::km;

int ZELKM_ReceiveCert(int handle, const unsigned char* certBytes, uint32_t certLength,
                      unsigned char flag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<sys::ByteView> bundle = bytesArgument(certBytes, certLength);
    if (!bundle) return bundle.failure();
    return receive(store, bundle.value(), flag != 0);
  });
}

int ZELKM_StoreCACert(int handle, const unsigned char* certBytes, uint32_t certLength,
                      const char* label) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    return storeAuthority(store, wanted.value(), certificate.value());
  });
}
