#ifndef ZEL_KM_TOKEN_TOKEN_SIGNING_H_
#define ZEL_KM_TOKEN_TOKEN_SIGNING_H_

#include "engine/cms/signing.h"
#include "engine/km/token/session.h"
#include "engine/km/token/token_objects.h"

/**
 * @file
 * Signatures by keys that stay on the token. The token signs what was hashed here, by the two
 * mechanisms that every token has; its answer is brought into the form that certificates carry.
 */

namespace zel::km::token {

/**
 * signOnToken signs the message: RSA PKCS #1 v1.5, ECDSA as DER.
 *
 *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): a key that is neither RSA nor EC.
 *  - ZELKM_ERR_SIGNATURE_ALGORITHM (133): such a key without a digest.
 */
sys::Result<sys::Bytes> signOnToken(const Session& session, const PrivateKeyObject& key,
                                    cms::SigningDigest digest, sys::ByteView message);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_SIGNING_H_
