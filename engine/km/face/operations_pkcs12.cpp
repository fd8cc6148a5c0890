// Entries of a store into PKCS #12 (PFX) files, and back.

#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/label_list.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/pfx.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

using namespace zel;
using namespace zel::km;

namespace {

constexpr int kPfxExport = 1;

}  // namespace

int ZELKM_ExportKeys(int handle, int exportType, const char* pfxFileName, const char* pfxPassword,
                     const ZELKMLabelList* labels) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (exportType != kPfxExport) {
      return sys::fail(ZELKM_ERR_EXPORT_TYPE, "export type %d", exportType);
    }
    const sys::Result<sys::FileName> file = sys::FileName::given(pfxFileName);
    if (!file) return file.failure();
    const sys::Result<sys::Password> password = sys::Password::given(pfxPassword);
    if (!password) return password.failure();
    const sys::Result<std::vector<Label>> wanted = labelsArgument(labels);
    if (!wanted) return wanted.failure();
    return exportPfx(store, wanted.value(), file.value(), password.value());
  });
}

int ZELKM_ImportKeysFromPFXFile(int handle, const char* pfxFileName, const char* pfxPassword) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<sys::FileName> file = sys::FileName::given(pfxFileName);
    if (!file) return file.failure();
    const sys::Result<sys::Password> password = sys::Password::givenOrEmpty(pfxPassword);
    if (!password) return password.failure();
    return importPfx(store, file.value(), password.value());
  });
}
