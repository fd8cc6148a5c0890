#ifndef ZEL_KM_TOKEN_KEY_REFERENCES_H_
#define ZEL_KM_TOKEN_KEY_REFERENCES_H_

#include <p11-kit/pkcs11.h>

#include "engine/km/store/store.h"

/**
 * @file
 * How a store names a private key that stays on the token (PrivateKey::reference): by its handle.
 */

namespace zel::km::token {

PrivateKey referenceTo(CK_OBJECT_HANDLE privateKey);

/** CK_INVALID_HANDLE when the key is not named so. */
CK_OBJECT_HANDLE referredTo(const PrivateKey& key);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_KEY_REFERENCES_H_
