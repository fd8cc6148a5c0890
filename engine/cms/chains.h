#ifndef ZEL_CMS_CHAINS_H_
#define ZEL_CMS_CHAINS_H_

#include <functional>
#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * The issuers of a certificate, as far as they are known:
 *
 *     Result<std::vector<Bytes>> chain = buildChain(certificate, [&](ByteView subject) {
 *       return certificatesWithSubject(subject);
 *     });
 *
 * Building a chain says nothing about its validity.
 */

namespace zel::cms {

/** Answers the certificates (DER) with a subject, given as canonicalName has it. */
using CertificatesBySubject =
    std::function<sys::Result<std::vector<sys::Bytes>>(sys::ByteView subject)>;

/**
 * buildChain answers the certificate, its issuer, the issuer's issuer and so on, up to the one that
 * signed itself or whose issuer is not known. An issuer is a certificate of the right name whose
 * key did sign; among several, one that is valid now comes first, then the one that began last. No
 * certificate stands twice, so cross-signed authorities end the chain instead of closing a circle.
 *
 * ZELKM_ERR_ASN when the bytes are no certificate; the codes of the look-up.
 */
ZEL_CMS_API sys::Result<std::vector<sys::Bytes>> buildChain(sys::ByteView certificate,
                                                            const CertificatesBySubject& lookUp);

}  // namespace zel::cms

#endif  // ZEL_CMS_CHAINS_H_
