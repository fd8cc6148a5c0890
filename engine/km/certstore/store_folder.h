#ifndef ZEL_KM_CERTSTORE_STORE_FOLDER_H_
#define ZEL_KM_CERTSTORE_STORE_FOLDER_H_

#include <string>
#include <string_view>
#include <vector>

#include "engine/km/store/label.h"
#include "engine/sys/folders.h"
#include "engine/sys/result.h"

/**
 * @file
 * The folders of the user's certificate stores, where the .NET runtime has them:
 * ~/.dotnet/corefx/cryptography/x509stores/my, root and ca.
 */

namespace zel::km::certstore {

inline constexpr std::string_view kRootStore = "CurrentUser/Root";
inline constexpr std::string_view kAuthorityStore = "CurrentUser/CA";

/** The names of the stores; they are there whether or not anything was ever put into them. */
std::vector<Label> storeNames();

class StoreFolder {
 public:
  /** ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST (137) when no store has the name. */
  static sys::Result<StoreFolder> of(std::string_view storeName);

  const std::string& storeName() const { return storeName_; }
  /** True for the store whose certificates are trusted for lying in it. */
  bool holdsAnchors() const { return storeName_ == kRootStore; }
  std::string path(const std::string& fileName) const { return path_ + "/" + fileName; }

  /**
   * The names of the files that may hold entries; none when the store was never written to.
   * ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90) when the folder, or one that it lies in from .dotnet on,
   * belongs to somebody else or is writable by others.
   */
  sys::Result<std::vector<std::string>> fileNames() const;

  /** Makes the folder, and those that it lies in, as far as they are not there. */
  sys::Status make() const;

  /** Keeps other writers out. The folder has to be there. */
  sys::Result<sys::FolderLock> lock() const { return sys::FolderLock::take(path_); }

 private:
  StoreFolder(std::string storeName, const std::string& home, std::string_view folderName);

  sys::Status requireSafe() const;

  std::string storeName_;
  std::vector<std::string> above_; /**< the folders that it lies in, outermost first */
  std::string path_;
};

}  // namespace zel::km::certstore

#endif  // ZEL_KM_CERTSTORE_STORE_FOLDER_H_
