#include "engine/km/certstore/inventory.h"

#include <algorithm>
#include <tuple>

#include "engine/cms/certificates.h"
#include "engine/km/certstore/entry_file.h"
#include "engine/km/store/new_labels.h"
#include "engine/km/store/numbered_labels.h"
#include "engine/sys/trace.h"

namespace zel::km::certstore {

namespace {

sys::Result<StoredEntry> storedEntry(cms::Pkcs12Entry entry) {
  StoredEntry stored;
  stored.certificate = std::move(entry.chain.front());
  sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(stored.certificate);
  if (!keys) return keys.failure();
  stored.publicKey = std::move(keys.value().publicKeyInfo);
  stored.subject = std::move(keys.value().subject);
  stored.label = Label::ofName(entry.friendlyName.empty() ? nameOfUnlabelled(stored.certificate)
                                                          : entry.friendlyName);
  return stored;
}

/** Not for what is in the file but for a shortage of this process, which must not hide entries. */
bool isShortage(int code) { return code == ZELKM_ERR_FILE_OPEN_TO_READ; }

}  // namespace

sys::Status Inventory::refresh(const std::set<std::string>& gone) {
  sys::Result<std::vector<std::string>> names = folder_.fileNames();
  if (!names) return names.failure();
  std::map<std::string, KnownFile> files;
  for (const std::string& name : names.value()) {
    if (gone.contains(name)) continue;
    sys::Result<KnownFile> file = look(name);
    if (isShortage(file.code())) return file.failure();
    if (!file) {
      sys::traceLine("%s: passed over", folder_.path(name).c_str());
      continue;
    }
    files.emplace(name, std::move(file).value());
  }
  enter(files);
  std::erase_if(files, [](const auto& file) { return !file.second.state.settled(); });
  files_ = std::move(files);
  return sys::success();
}

sys::Result<Inventory::KnownFile> Inventory::look(const std::string& fileName) {
  const std::string path = folder_.path(fileName);
  const sys::Result<FileState> state = stateOf(path);
  if (!state) return state.failure();
  const auto known = files_.find(fileName);
  if (known != files_.end() && known->second.state == state.value()) return known->second;

  sys::Result<std::vector<cms::Pkcs12Entry>> offered = readEntryFile(path);
  if (!offered) return offered.failure();
  KnownFile file{.state = state.value(), .entries = {}};
  for (cms::Pkcs12Entry& each : offered.value()) {
    sys::Result<StoredEntry> entry = storedEntry(std::move(each));
    if (!entry) return entry.failure();
    entry.value().fileName = fileName;
    entry.value().modified = state.value().modified;
    entry.value().isAlone = offered.value().size() == 1;
    file.entries.push_back(std::move(entry).value());
  }
  return file;
}

void Inventory::enter(const std::map<std::string, KnownFile>& files) {
  entries_.clear();
  for (const auto& [name, file] : files) {
    entries_.insert(entries_.end(), file.entries.begin(), file.entries.end());
  }
  std::ranges::stable_sort(entries_, [](const StoredEntry& left, const StoredEntry& right) {
    return std::tie(left.modified, left.fileName) < std::tie(right.modified, right.fileName);
  });
  numberLabels(entries_);
}

const StoredEntry* Inventory::find(const Label& label) const {
  const auto found = std::ranges::find(entries_, label, &StoredEntry::label);
  return found == entries_.end() ? nullptr : &*found;
}

sys::Result<KeyEntry> Inventory::load(const StoredEntry& entry) const {
  const std::string path = folder_.path(entry.fileName);
  sys::Result<std::vector<cms::Pkcs12Entry>> offered = readEntryFile(path);
  if (isShortage(offered.code())) return offered.failure();
  if (offered) {
    for (cms::Pkcs12Entry& each : offered.value()) {
      if (each.chain.front() != entry.certificate) continue;
      return KeyEntry{.label = entry.label,
                      .certificate = entry.certificate,
                      .privateKey = {.pkcs8 = std::move(each.privateKeyInfo), .reference = {}},
                      .trusted = folder_.holdsAnchors(),
                      .isDefault = false};
    }
  }
  return sys::fail(ZELKM_ERR_DATABASE_READ, "%s: changed meanwhile", path.c_str());
}

}  // namespace zel::km::certstore
