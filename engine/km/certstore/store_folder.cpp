#include "engine/km/certstore/store_folder.h"

#include <sys/stat.h>

#include <algorithm>

#include "engine/sys/trace.h"

namespace zel::km::certstore {

namespace {

/** A store by the name that callers know and the one that its folder has. */
struct KnownStore {
  std::string_view name;
  std::string_view folder;
};

constexpr KnownStore kStores[] = {
    {"CurrentUser/My", "my"}, {kRootStore, "root"}, {kAuthorityStore, "ca"}};
constexpr std::string_view kAbove[] = {".dotnet", "corefx", "cryptography", "x509stores"};
constexpr std::string_view kExtension = ".pfx";

/** Many systems give each user a group and let it write; a folder of keys is the user's alone. */
constexpr mode_t kBarredAbove = S_IWOTH;
constexpr mode_t kBarred = S_IWGRP | S_IWOTH;

}  // namespace

std::vector<Label> storeNames() {
  std::vector<Label> names;
  for (const KnownStore& store : kStores) names.push_back(Label::ofName(store.name));
  return names;
}

sys::Result<StoreFolder> StoreFolder::of(std::string_view storeName) {
  const auto* known = std::ranges::find(kStores, storeName, &KnownStore::name);
  if (known == std::end(kStores)) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST, "no certificate store \"%s\"",
                     std::string(storeName).c_str());
  }
  const sys::Result<std::string> home = sys::homeFolder();
  if (!home) return home.failure();
  return StoreFolder(std::string(storeName), home.value(), known->folder);
}

StoreFolder::StoreFolder(std::string storeName, const std::string& home,
                         std::string_view folderName)
    : storeName_(std::move(storeName)), path_(home) {
  const auto enter = [&](std::string_view folder) { path_.append("/").append(folder); };
  for (const std::string_view folder : kAbove) {
    enter(folder);
    above_.push_back(path_);
  }
  enter(folderName);
}

sys::Status StoreFolder::requireSafe() const {
  for (const std::string& folder : above_) {
    if (sys::Status safe = sys::requireOwnFolder(folder, kBarredAbove); !safe) return safe;
  }
  return sys::requireOwnFolder(path_, kBarred);
}

sys::Result<std::vector<std::string>> StoreFolder::fileNames() const {
  const sys::Status safe = requireSafe();
  if (safe.code() == ZELKM_ERR_FILE_OPEN_NOT_EXIST) return std::vector<std::string>();
  if (!safe) return safe.failure();
  sys::Result<std::vector<std::string>> names = sys::namesIn(path_);
  if (!names) return names;
  std::erase_if(names.value(), [](const std::string& name) { return !name.ends_with(kExtension); });
  return names;
}

sys::Status StoreFolder::make() const {
  for (const std::string& folder : above_) {
    if (sys::Status made = sys::makeOwnFolder(folder); !made) return made;
  }
  if (sys::Status made = sys::makeOwnFolder(path_); !made) return made;
  return requireSafe();
}

}  // namespace zel::km::certstore
