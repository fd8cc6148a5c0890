#ifndef ZEL_KM_FACE_ITEM_CERTIFICATES_H_
#define ZEL_KM_FACE_ITEM_CERTIFICATES_H_

#include <vector>

#include "engine/km/face/item_ptr.h"
#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Certificates as records of the C interface.
 */

namespace zel::km {

/** A certificate taken apart into a record. ZELKM_ERR_ASN (2) when the bytes are none. */
sys::Result<CertItemPtr> handOutCertificate(const LabelledCertificate& certificate);

/** The certificates as a list, in their order; null for none. */
sys::Result<CertItemListPtr> handOutCertificates(
    const std::vector<LabelledCertificate>& certificates);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ITEM_CERTIFICATES_H_
