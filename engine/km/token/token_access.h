#ifndef ZEL_KM_TOKEN_TOKEN_ACCESS_H_
#define ZEL_KM_TOKEN_TOKEN_ACCESS_H_

#include <memory>
#include <string>
#include <vector>

#include "engine/km/token/session.h"
#include "engine/sys/result.h"

/**
 * @file
 * Tokens by name. Module names, labels and passwords are text of the C interface; null is
 * ZELKM_ERR_NULL_PARAMETER (66) where nothing else is said.
 */

namespace zel::km::token {

/** The labels of the module's tokens; none is an empty answer. */
sys::Result<std::vector<Label>> listTokenLabels(const char* moduleName);

/** True when opening the token takes a password. */
sys::Result<bool> isPinRequired(const char* moduleName, const char* tokenLabel);

/** Opens a session as Session::open does; the password may be null. */
sys::Result<std::unique_ptr<Session>> openToken(const char* moduleName, const char* tokenLabel,
                                                const char* password);

/** Changes the token's PIN. The old one is tried once. */
sys::Status changeTokenPin(const char* moduleName, const char* tokenLabel, const char* oldPassword,
                           const char* newPassword);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_ACCESS_H_
