#ifndef ZEL_KM_WORK_REQUESTING_H_
#define ZEL_KM_WORK_REQUESTING_H_

#include <optional>

#include "engine/cms/signing.h"
#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/result.h"

/**
 * @file
 * Certification requests: made with a new key that waits for its certificate, and written again.
 *
 *     NewRequest wanted{.label = label, .subject = name, .keySize = 256, .file = fileName};
 *     Status made = requestCertificate(store, wanted);
 */

namespace zel::km {

/** What a request and its key shall be. */
struct NewRequest {
  Label label = {};
  sys::Bytes subject = {};       /**< Name, DER */
  int keySize = 0;               /**< as Store::generateKey takes it */
  sys::ByteView extensions = {}; /**< `Extensions` to ask for, DER, borrowed; empty for none */
  cms::SignatureSelector signature = cms::kByKeyStrength;
  std::optional<sys::FileName> file = {}; /**< to write the request to as well */
};

/**
 * requestCertificate makes a key and the pending request for its certificate. When the file cannot
 * be written there is no request either.
 *
 *  - ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23): the label is in use by a request.
 *  - the codes of cms::buildRequest, Store::generateKey and writeRequest.
 */
sys::Status requestCertificate(Store& store, const NewRequest& wanted);

/** Writes a pending request to a file once more, as it is. */
sys::Status rewriteRequest(Store& store, const Label& label, const sys::FileName& file);

/**
 * Signs a pending request anew and writes it to a file. When that fails, the store has the request
 * as it was. The codes of cms::signRequestAgain and writeRequest.
 */
sys::Status signRequestAnew(Store& store, const Label& label, cms::SignatureSelector signature,
                            const sys::FileName& file);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_REQUESTING_H_
