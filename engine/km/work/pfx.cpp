#include "engine/km/work/pfx.h"

#include <set>
#include <utility>

#include "engine/cms/pkcs12/pkcs12.h"
#include "engine/km/keydb/output_files.h"
#include "engine/km/work/arriving_entries.h"
#include "engine/km/work/certificate_chain.h"
#include "engine/sys/files.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr std::size_t kMostPfxBytes = 256UL << 20;

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

sys::Status addEntry(Store& store, cms::Pkcs12Entry& entry) {
  KeyEntry added;
  added.certificate = entry.chain.front();
  if (entry.privateKeyInfo.empty()) {
    const sys::Result<bool> isThere = hasCertificate(store, added.certificate);
    if (!isThere) return isThere.failure();
    if (isThere.value()) return sys::success();
  }
  added.privateKey.pkcs8 = std::move(entry.privateKeyInfo);
  added.trusted = entry.trusted;
  return insertNamed(store, entry.friendlyName, std::move(added));
}

}  // namespace

sys::Status exportPfx(Store& store, const std::vector<Label>& labels, const sys::FileName& file,
                      const sys::Password& password) {
  std::vector<cms::Pkcs12Entry> entries;
  std::set<Label> seen;
  for (const Label& label : labels) {
    if (!seen.insert(label).second) continue;
    sys::Result<cms::Pkcs12Entry> entry = pkcs12Entry(store, label);
    if (!entry) return entry.failure();
    entries.push_back(std::move(entry).value());
  }
  const sys::Result<sys::Bytes> pfx = cms::writePkcs12(entries, password.bytes());
  if (!pfx) return pfx.failure();
  return writeOutput(file, pfx.value(), sys::FileAccess::ownerOnly);
}

sys::Status importPfx(Store& store, const sys::FileName& file, const sys::Password& password) {
  const sys::Result<sys::SecretBytes> pfx = sys::readSecretFile(file.path(), kMostPfxBytes);
  if (!pfx) return pfx.failure();
  sys::Result<std::vector<cms::Pkcs12Entry>> entries =
      cms::readPkcs12(pfx.value(), password.bytes());
  if (!entries) return entries.failure();
  return inTransaction(store, [&]() -> sys::Status {
    for (cms::Pkcs12Entry& entry : entries.value()) {
      if (sys::Status done = addEntry(store, entry); !done) return done;
    }
    return sys::success();
  });
}

}  // namespace zel::km
