#ifndef ZEL_KM_WORK_INSERTING_H_
#define ZEL_KM_WORK_INSERTING_H_

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Entries put in from their parts, and the default mark. Private keys come in any of the forms of
 * takePrivateKey (store/key_material.h); one that does not belong to its certificate or request is
 * ZELKM_ERR_VALIDATION_KEY_PAIR (62).
 */

namespace zel::km {

/** The parts of a key entry; the bytes are borrowed. */
struct KeyParts {
  Label label;
  sys::ByteView certificate;     /**< DER */
  sys::ByteView privateKey = {}; /**< empty for a certificate alone */
  bool trusted = false;
  bool isDefault = false;
};

/** ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111) for a default entry without a private key. */
sys::Status insertKey(Store& store, const KeyParts& parts);

/** The parts of a pending request; the bytes are borrowed. */
struct RequestParts {
  Label label;
  sys::ByteView request; /**< PKCS #10, DER */
  sys::ByteView privateKey;
};

sys::Status insertRequest(Store& store, const RequestParts& parts);

/** ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111) when the entry has no private key. */
sys::Status makeDefault(KeyEntries& store, const Label& label);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_INSERTING_H_
