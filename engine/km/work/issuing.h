#ifndef ZEL_KM_WORK_ISSUING_H_
#define ZEL_KM_WORK_ISSUING_H_

#include "engine/cms/signing.h"
#include "engine/km/store/store.h"
#include "engine/km/work/certificate_files.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Certificates issued for the requests of others. The store gives the issuer and keeps nothing.
 */

namespace zel::km {

/** What is to be issued, and by whom. */
struct Issuing {
  sys::ByteView request;        /**< PKCS #10, DER, borrowed */
  Label issuer;                 /**< of the entry whose key signs */
  int version = 3;              /**< of X.509; extensions are granted in version 3 only */
  sys::Bytes serialNumber = {}; /**< most significant byte first; empty for a random one */
  int days = 0;                 /**< of validity, from now on */
  cms::SignatureSelector signature = cms::kByKeyStrength;
  CertificateFile file;
};

/**
 * issue writes a certificate for the request's subject and key, with the extensions that
 * cms::issuedExtensions grants.
 *
 *  - ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111): the issuer's entry has no key.
 *  - ZELKM_ERR_CRYPTO_VERIFY: the request is not signed by its own key.
 *  - the codes of cms::checkIssuer, cms::readRequest, cms::issueCertificate, writeCertificate, and
 *    of checkApproved in a store of approved algorithms.
 */
sys::Status issue(Store& store, const Issuing& wanted);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_ISSUING_H_
