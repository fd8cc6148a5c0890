#ifndef ZEL_CMS_EXTENSIONS_H_
#define ZEL_CMS_EXTENSIONS_H_

#include "engine/cms/api.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * `Extensions` (RFC 5280, 4.2), as certificates carry them and requests ask for them.
 */

namespace zel::cms {

/**
 * readExtensions decodes extensions; null for no bytes. ZELKM_ERR_ASN when the bytes are none,
 * ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS when one of them stands twice.
 */
sys::Result<ExtensionsPtr> readExtensions(sys::ByteView der);

/** checkExtensions answers the codes of readExtensions. */
ZEL_CMS_API sys::Status checkExtensions(sys::ByteView der);

/** encodeExtensions answers nothing for no extension. */
sys::Bytes encodeExtensions(const STACK_OF(X509_EXTENSION) * extensions);

}  // namespace zel::cms

#endif  // ZEL_CMS_EXTENSIONS_H_
