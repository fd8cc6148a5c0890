#ifndef ZEL_KM_FACE_ITEM_NAMES_H_
#define ZEL_KM_FACE_ITEM_NAMES_H_

#include "engine/cms/names.h"
#include "engine/km/face/item_ptr.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Distinguished names between the C interface, in modified UTF-8, and certificates.
 */

namespace zel::km {

/** A record for the name, with its DER. */
DnItemPtr handOutName(const cms::NameFields& name, sys::ByteView der);

/**
 * The DER of the name that a caller describes; the record's own DER is not looked at.
 * ZELKM_ERR_INVALID_DN_INPUT (116) for a null record and for whatever makes no name.
 */
sys::Result<sys::Bytes> nameArgument(const ZELKMDNItem* dn);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ITEM_NAMES_H_
