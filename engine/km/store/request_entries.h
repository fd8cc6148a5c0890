#ifndef ZEL_KM_STORE_REQUEST_ENTRIES_H_
#define ZEL_KM_STORE_REQUEST_ENTRIES_H_

#include <vector>

#include "engine/km/store/entry.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::km {

/**
 * RequestEntries are the key pairs of a store that wait for their certificates. A label names one
 * of them, and may name a key entry too. Where no request has a label that is asked for, the answer
 * is ZELKM_ERR_KEY_GET_BY_LABEL (117).
 */
class RequestEntries {
 public:
  /** The labels in the order in which their entries came; a token, which keeps no order, sorts
   * them. */
  virtual sys::Result<std::vector<Label>> requestLabels() = 0;

  virtual sys::Result<RequestEntry> findRequest(const Label& label) = 0;
  /** All requests for the SubjectPublicKeyInfo; none is an empty answer. */
  virtual sys::Result<std::vector<RequestEntry>> findRequestsByPublicKey(
      sys::ByteView publicKey) = 0;

  /** ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23) when the label is in use by a request. */
  virtual sys::Status insertRequest(const RequestEntry& entry) = 0;
  virtual sys::Status replaceRequest(const RequestEntry& entry) = 0;
  virtual sys::Status removeRequest(const Label& label) = 0;

 protected:
  ~RequestEntries() = default;
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_REQUEST_ENTRIES_H_
