#ifndef ZEL_CMS_REQUESTS_H_
#define ZEL_CMS_REQUESTS_H_

#include <string>

#include "engine/cms/api.h"
#include "engine/cms/keys.h"
#include "engine/cms/names.h"
#include "engine/cms/signing.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Certification requests (PKCS #10, RFC 2986).
 *
 *     RequestPlan plan{.subject = name, .publicKeyInfo = spki};
 *     Result<Bytes> request = buildRequest(plan, traits, kByKeyStrength, signer);
 */

namespace zel::cms {

/** RequestPlan is what a request shall say; all DER. */
struct RequestPlan {
  sys::Bytes subject = {};
  sys::Bytes publicKeyInfo = {};
  sys::Bytes extensions = {}; /**< `Extensions` to ask for; empty for none */
};

/**
 * buildRequest builds and signs a request; DER. ZELKM_ERR_ASN when the extensions are not
 * `Extensions`, ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS when one of them stands twice, and the
 * codes of chooseDigest and of the signer.
 */
ZEL_CMS_API sys::Result<sys::Bytes> buildRequest(const RequestPlan& plan, const KeyTraits& key,
                                                 SignatureSelector selector, const Signer& signer);

/** signRequestAgain answers the same request with a new signature. Codes as above. */
ZEL_CMS_API sys::Result<sys::Bytes> signRequestAgain(sys::ByteView request,
                                                     SignatureSelector selector,
                                                     const Signer& signer);

/** RequestFields is a request taken apart; the parts are DER as they stand in it. */
struct RequestFields {
  sys::Bytes info; /**< CertificationRequestInfo */
  KeyTraits key;
  NameFields subject;
  sys::Bytes subjectDer;
  sys::Bytes publicKeyInfo;
  sys::Bytes attributes; /**< SET OF Attribute; empty when there are none */
  sys::Bytes extensions; /**< the `Extensions` that are asked for; empty when there are none */
  sys::Bytes signature;  /**< the bits, without the unused-bits octet */
  sys::Bytes signatureAlgorithm;
  std::string signatureOid;
  std::string signatureName;
};

/** readRequest takes a request apart. ZELKM_ERR_ASN when the bytes are none. */
ZEL_CMS_API sys::Result<RequestFields> readRequest(sys::ByteView der);

/** verifyRequest tests the signature. ZELKM_ERR_CRYPTO_VERIFY when the key did not sign. */
ZEL_CMS_API sys::Status verifyRequest(sys::ByteView der);

}  // namespace zel::cms

#endif  // ZEL_CMS_REQUESTS_H_
