#ifndef ZEL_KM_TOKEN_TOKEN_READING_H_
#define ZEL_KM_TOKEN_TOKEN_READING_H_

#include "engine/km/token/session.h"
#include "engine/km/token/token_objects.h"
#include "engine/km/token/token_view.h"
#include "engine/sys/result.h"

/**
 * @file
 * Reading what lies on a token: of the objects of each class the attributes that matter here.
 */

namespace zel::km::token {

/** Reads the whole token; the new keys are those of TokenView. */
sys::Result<TokenView> readToken(const Session& session, Handles newKeys);

/** Both keys tell the public key. ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED (149) if none. */
sys::Result<KeyPairObjects> readKeyPair(const Session& session, const KeyPairHandles& handles);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_READING_H_
