#ifndef ZEL_KM_WORK_SELF_SIGNING_H_
#define ZEL_KM_WORK_SELF_SIGNING_H_

#include <optional>

#include "engine/cms/signing.h"
#include "engine/km/store/store.h"
#include "engine/km/work/certificate_files.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Self-signed certificates: a new key, its certificate, the entry of both.
 *
 *     SelfSigning wanted{.label = label, .subject = name, .keySize = 256, .days = 365};
 *     Status made = selfSign(store, wanted);
 */

namespace zel::km {

/** What a self-signed certificate and its entry shall be. */
struct SelfSigning {
  Label label = {};
  sys::Bytes subject = {};       /**< Name, DER */
  int keySize = 0;               /**< as Store::generateKey takes it */
  int version = 3;               /**< of X.509 */
  int days = 0;                  /**< of validity, from now on */
  sys::ByteView extensions = {}; /**< `Extensions`, DER, borrowed; empty for an authority's */
  cms::SignatureSelector signature = cms::kByKeyStrength;
  bool makeDefault = false;
  std::optional<CertificateFile> file = {}; /**< to write the certificate to as well */
};

/**
 * selfSign makes a key and a trusted entry with its certificate. When the file cannot be written
 * there is no entry either, and the default mark is where it was.
 *
 *  - ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23): the label is in use by a key.
 *  - the codes of cms::issueCertificate, Store::generateKey and writeCertificate.
 */
sys::Status selfSign(Store& store, const SelfSigning& wanted);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_SELF_SIGNING_H_
