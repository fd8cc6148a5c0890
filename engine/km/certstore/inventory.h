#ifndef ZEL_KM_CERTSTORE_INVENTORY_H_
#define ZEL_KM_CERTSTORE_INVENTORY_H_

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/km/certstore/store_folder.h"
#include "engine/km/store/file_state.h"
#include "engine/km/store/label.h"
#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What is in a certificate store. Other programs work on it too, so whoever wants to know looks
 * first:
 *
 *     if (Status looked = inventory.refresh(); !looked) return looked.failure();
 *     const StoredEntry* found = inventory.find(label);
 *
 * Private keys are not kept in mind: they are read from their files whenever they are wanted.
 */

namespace zel::km::certstore {

struct StoredEntry {
  Label label;
  std::string fileName;
  std::int64_t modified = 0; /**< when its file was written, in nanoseconds since 1970 */
  sys::Bytes certificate;
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo */
  sys::Bytes subject;   /**< as cms::canonicalName has it */
  bool isAlone = true;  /**< no other entry lies in its file */
};

class Inventory {
 public:
  explicit Inventory(StoreFolder folder) : folder_(std::move(folder)) {}

  const StoreFolder& folder() const { return folder_; }

  /**
   * Looks the folder through, leaving out the files that are taken for gone. What is no certificate
   * file, or none that is readable, is passed over. A file is read again only when it was changed.
   *
   * Entries are named by their friendly name, else as nameOfUnlabelled does, and numbered in the
   * order of the store: by the time of writing, then by file name.
   */
  sys::Status refresh(const std::set<std::string>& gone = {});

  const std::vector<StoredEntry>& entries() const { return entries_; }
  /** Null when there is none. */
  const StoredEntry* find(const Label& label) const;

  /**
   * The entry with its key. ZELKM_ERR_DATABASE_READ (12) when its file has been changed since the
   * folder was looked through.
   */
  sys::Result<KeyEntry> load(const StoredEntry& entry) const;

 private:
  /** A file that was read, its entries named but not yet numbered. */
  struct KnownFile {
    FileState state;
    std::vector<StoredEntry> entries;
  };

  sys::Result<KnownFile> look(const std::string& fileName);
  void enter(const std::map<std::string, KnownFile>& files);

  StoreFolder folder_;
  std::map<std::string, KnownFile> files_;
  std::vector<StoredEntry> entries_;
};

}  // namespace zel::km::certstore

#endif  // ZEL_KM_CERTSTORE_INVENTORY_H_
