#ifndef ZEL_CMS_CRYPTO_CONTEXT_H_
#define ZEL_CMS_CRYPTO_CONTEXT_H_

#include <openssl/types.h>

#include "engine/cms/api.h"

/**
 * @file
 * Where the algorithms of old come from. Files of other tools are still encrypted with RC2 and DES;
 * reading them needs OpenSSL's legacy provider, which has no place in the process's own library
 * context.
 */

namespace zel::cms {

/**
 * legacyCryptoContext answers a library context of our own with the default and legacy providers,
 * made on first use and kept for good. Without an installed legacy provider it knows the default
 * algorithms. Used for reading only. Null, which is the process's own context, while the algorithms
 * of old are not permitted.
 */
OSSL_LIB_CTX* legacyCryptoContext();

/** Whether the algorithms of old may be used for reading: they may, until told otherwise. */
ZEL_CMS_API void permitLegacyAlgorithms(bool permitted);

}  // namespace zel::cms

#endif  // ZEL_CMS_CRYPTO_CONTEXT_H_
