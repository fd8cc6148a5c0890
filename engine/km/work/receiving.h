#ifndef ZEL_KM_WORK_RECEIVING_H_
#define ZEL_KM_WORK_RECEIVING_H_

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Taking in the certificates that authorities have issued, and those of the authorities.
 */

namespace zel::km {

/**
 * receive takes the certificate that answers a pending request, out of whatever cms::readBundle
 * reads: the request becomes a key entry of the same label. Issuers that came along are kept
 * (addIssuer), other certificates are not.
 *
 *  - ZELKM_ERR_REQKEY_FOR_CERT_NULL: no pending request has the key of any of the certificates.
 *  - the codes of cms::readBundle.
 */
sys::Status receive(Store& store, sys::ByteView bundle, bool makeDefault);

/** Keeps the certificate (DER) of an authority that is trusted from now on. */
sys::Status storeAuthority(KeyEntries& store, const Label& label, sys::ByteView certificate);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_RECEIVING_H_
