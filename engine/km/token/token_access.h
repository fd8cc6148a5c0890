#ifndef ZEL_KM_TOKEN_TOKEN_ACCESS_H_
#define ZEL_KM_TOKEN_TOKEN_ACCESS_H_

#include <memory>
#include <string>
#include <vector>

#include "engine/km/store/label.h"
#include "engine/km/token/session.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * Tokens by name.
 */

namespace zel::km::token {

/** A TokenName is what a token is found by. */
struct TokenName {
  std::string module; /**< real UTF-8; module_name.h tells which names there are */
  Label label;        /**< as the list of the module's tokens has it */
};

/** The labels of the module's tokens; none is an empty answer. */
sys::Result<std::vector<Label>> listTokenLabels(const std::string& module);

/** True when opening the token takes a password. */
sys::Result<bool> isPinRequired(const TokenName& name);

/** Opens a session as Session::open does. */
sys::Result<std::unique_ptr<Session>> openToken(const TokenName& name, const sys::Password& pin);

/** Changes the token's PIN. The old one is tried once. */
sys::Status changeTokenPin(const TokenName& name, const sys::Password& oldPin,
                           const sys::Password& newPin);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_ACCESS_H_
