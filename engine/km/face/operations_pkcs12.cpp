#include <algorithm>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/pkcs12/pkcs12.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/keydb/output_files.h"
#include "engine/km/work/certificate_chain.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

// PKCS #12 files out of a store.

using namespace zel;
using namespace zel::km;

namespace {

constexpr int kPfxExport = 1;

/** The labels of the list, each once. */
sys::Result<std::vector<Label>> labelsOf(const ZELKMLabelList* list) {
  std::vector<Label> labels;
  for (; list != nullptr && list->label != nullptr; list = list->next) {
    sys::Result<Label> label = labelArgument(list->label);
    if (!label) return label.failure();
    if (std::find(labels.begin(), labels.end(), label.value()) == labels.end()) {
      labels.push_back(std::move(label).value());
    }
  }
  if (labels.empty()) return sys::fail(ZELKM_ERR_NULL_PARAMETER, "no label to export");
  return labels;
}

sys::Result<cms::Pkcs12Entry> pkcs12Entry(Store& store, const Label& label) {
  sys::Result<KeyEntry> found = store.findKey(label);
  if (!found) return found.failure();
  KeyEntry& entry = found.value();
  if (entry.privateKey.present() && entry.privateKey.pkcs8.empty()) {
    return sys::fail(ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL,
                     "the key of \"%s\" does not leave its store", label.c_str());
  }
  sys::Result<std::vector<LabelledCertificate>> chain = chainOf(store, entry);
  if (!chain) return chain.failure();

  cms::Pkcs12Entry exported;
  exported.friendlyName = label.name();
  exported.privateKeyInfo = std::move(entry.privateKey.pkcs8);
  for (LabelledCertificate& link : chain.value()) {
    exported.chain.push_back(std::move(link.certificate));
  }
  exported.trusted = entry.trusted;
  return exported;
}

}  // namespace

int ZELKM_ExportKeys(int handle, int exportType, const char* pfxFileName, const char* pfxPassword,
                     const ZELKMLabelList* labels) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (exportType != kPfxExport)
      return sys::fail(ZELKM_ERR_EXPORT_TYPE, "export type %d", exportType);
    const sys::Result<sys::FileName> fileName = sys::FileName::given(pfxFileName);
    if (!fileName) return fileName.failure();
    const sys::Result<sys::Password> password = sys::Password::given(pfxPassword);
    if (!password) return password.failure();
    const sys::Result<std::vector<Label>> wanted = labelsOf(labels);
    if (!wanted) return wanted.failure();

    std::vector<cms::Pkcs12Entry> entries;
    for (const Label& label : wanted.value()) {
      sys::Result<cms::Pkcs12Entry> entry = pkcs12Entry(store, label);
      if (!entry) return entry.failure();
      entries.push_back(std::move(entry).value());
    }
    const sys::Result<sys::Bytes> pfx = cms::writePkcs12(entries, password.value().bytes());
    if (!pfx) return pfx.failure();
    return writeOutput(fileName.value(), pfx.value(), sys::FileAccess::ownerOnly);
  });
}
