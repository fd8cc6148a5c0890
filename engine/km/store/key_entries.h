#ifndef ZEL_KM_STORE_KEY_ENTRIES_H_
#define ZEL_KM_STORE_KEY_ENTRIES_H_

#include <vector>

#include "engine/km/store/entry.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::km {

/**
 * KeyEntries are the certificates of a store, with their private keys. A label names one of them.
 * Where no entry has a label that is asked for, the answer is ZELKM_ERR_KEY_GET_BY_LABEL (117).
 */
class KeyEntries {
 public:
  /**
   * The labels in the order in which their entries came; a token, which keeps no order, sorts them.
   * A tampered store is found out here.
   */
  virtual sys::Result<std::vector<Label>> keyLabels() = 0;

  virtual sys::Result<KeyEntry> findKey(const Label& label) = 0;
  /** All entries whose certificate holds the SubjectPublicKeyInfo; none is an empty answer. */
  virtual sys::Result<std::vector<KeyEntry>> findKeysByPublicKey(sys::ByteView publicKey) = 0;
  /** All entries whose certificate has the subject, in cms::canonicalName's form, for chains. */
  virtual sys::Result<std::vector<KeyEntry>> findKeysBySubject(sys::ByteView subject) = 0;

  /**
   * Adds an entry; isDefault takes the mark from the entry that had it.
   * ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23) when the label is in use by a key.
   */
  virtual sys::Status insertKey(const KeyEntry& entry) = 0;
  /** Puts the entry in the place of the one with its label: same place in the order. */
  virtual sys::Status replaceKey(const KeyEntry& entry) = 0;
  virtual sys::Status removeKey(const Label& label) = 0;
  virtual sys::Status setTrusted(const Label& label, bool trusted) = 0;

  /** ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL (110) when no entry is the default. */
  virtual sys::Result<KeyEntry> defaultKey() = 0;
  virtual sys::Status setDefault(const Label& label) = 0;

 protected:
  ~KeyEntries() = default;
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_KEY_ENTRIES_H_
