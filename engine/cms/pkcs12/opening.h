#ifndef ZEL_CMS_PKCS12_OPENING_H_
#define ZEL_CMS_PKCS12_OPENING_H_

#include "engine/cms/pkcs12/bags.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::cms {

/**
 * openPkcs12 opens a PKCS #12 file whoever made it, and takes its bags apart. An empty password
 * opens files without one too.
 *
 *  - ZELKM_ERR_PKCS12_PWD_CORRUPTION, ZELKM_ERR_INVALID_PKCS12_DATA, ZELKM_ERR_PBE_ALG_UNSUPPORT:
 *    as readPkcs12.
 */
sys::Result<Pkcs12Contents> openPkcs12(sys::ByteView file, sys::ByteView password);

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_OPENING_H_
