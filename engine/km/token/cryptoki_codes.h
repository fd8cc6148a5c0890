#ifndef ZEL_KM_TOKEN_CRYPTOKI_CODES_H_
#define ZEL_KM_TOKEN_CRYPTOKI_CODES_H_

#include <p11-kit/pkcs11.h>

#include "engine/sys/result.h"

/**
 * @file
 * What a PKCS #11 module's answers mean here. A failed call is traced by its CKR name, because the
 * result code that it becomes tells less:
 *
 *     CK_RV rv = module.call(&CK_FUNCTION_LIST::C_DestroyObject, session, object);
 *     if (rv != CKR_OK) return cryptokiFailure(rv, "destroy an object");
 */

namespace zel::km::token {

/** What is answered in a module's place when other processes did not let go of it in time. */
inline constexpr CK_RV kNoTurn = CKR_VENDOR_DEFINED | 0x5475726eUL;

/** The name of a CKR value, "CKR_?" for one that the table does not have. */
const char* cryptokiName(CK_RV rv);

/** cryptokiFailure traces a failed call and gives the Failure to answer with. */
sys::Failure cryptokiFailure(CK_RV rv, const char* attempt);

/** True for the answers by which a module refuses a kind of object, not this attempt only. */
bool refusesSuchObjects(CK_RV rv);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_CRYPTOKI_CODES_H_
