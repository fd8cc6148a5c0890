#ifndef ZEL_KM_CERTSTORE_CHANGES_H_
#define ZEL_KM_CERTSTORE_CHANGES_H_

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engine/km/certstore/store_folder.h"
#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/folders.h"
#include "engine/sys/result.h"

/**
 * @file
 * Changes to a certificate store that can be taken back. What is written is kept in mind, to be
 * undone if need be, and what is removed goes last:
 *
 *     if (Status begun = changes.begin(); !begun) return begun;
 *     Status done = changes.create(entry, std::nullopt);
 *     if (done) changes.doom(old);
 *     return done ? changes.commit() : (changes.rollBack(), done);
 *
 * A process that dies in between leaves whole files behind, the old one beside the new one at
 * worst.
 */

namespace zel::km::certstore {

class Changes {
 public:
  explicit Changes(StoreFolder folder) : folder_(std::move(folder)) {}

  bool underWay() const { return lock_.has_value(); }
  /** Makes the folder when it is not there, and keeps other writers out from then on. */
  sys::Status begin();
  /** Removes what is doomed. */
  sys::Status commit();
  /** Undoes what was done, last change first. What cannot be undone is traced. */
  void rollBack();

  /**
   * Writes an entry into a file of its own, `THUMBPRINT.pfx`, or `THUMBPRINT.00.pfx` and so on when
   * that name is taken; a time of writing can be given, for its place in the order.
   */
  sys::Status create(const KeyEntry& entry, std::optional<std::int64_t> modified);
  /** Writes an entry into the file of another, which keeps its place in the order. */
  sys::Status rewrite(const std::string& fileName, const KeyEntry& entry, std::int64_t modified);

  void doom(const std::string& fileName) { doomed_.insert(fileName); }
  /** What is taken for gone already. */
  const std::set<std::string>& doomed() const { return doomed_; }

 private:
  /** How to undo one change: put the old content back, or remove the file when there was none. */
  struct Undo {
    std::string fileName;
    std::optional<sys::SecretBytes> oldContent;
  };

  sys::Result<std::string> writeToFreeName(const sys::Bytes& certificate, sys::ByteView content);

  StoreFolder folder_;
  std::optional<sys::FolderLock> lock_;
  std::vector<Undo> done_;
  std::set<std::string> doomed_;
};

}  // namespace zel::km::certstore

#endif  // ZEL_KM_CERTSTORE_CHANGES_H_
