#ifndef ZEL_KM_TOKEN_SLOTS_H_
#define ZEL_KM_TOKEN_SLOTS_H_

#include <p11-kit/pkcs11.h>

#include <string>
#include <string_view>
#include <vector>

#include "engine/km/store/label.h"
#include "engine/km/token/module.h"
#include "engine/sys/result.h"

/**
 * @file
 * The tokens that a module offers. A slot whose token is not initialised offers none: modules keep
 * one at hand for the next token to be made.
 */

namespace zel::km::token {

/** A Token is known by its label, numbered where several tokens of a module have the same one. */
struct Token {
  CK_SLOT_ID slot = 0;
  Label label; /**< modified UTF-8, without the padding */
  std::string serialNumber;
  CK_FLAGS flags = 0;
  CK_ULONG shortestPin = 0;

  bool wantsLogin() const { return (flags & CKF_LOGIN_REQUIRED) != 0; }
  /** True when the token asks for its PIN by itself, so that none is given to it. */
  bool hasPinPad() const { return (flags & CKF_PROTECTED_AUTHENTICATION_PATH) != 0; }
  bool wantsPin() const { return wantsLogin() && !hasPinPad(); }
};

/** The tokens that are present, ordered by label and serial number. */
sys::Result<std::vector<Token>> listTokens(const Module& module);

/**
 * ZELKM_ERR_NO_TOKEN_PRESENT (151) when the module has no token at all,
 * ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST (137) when none has the label.
 */
sys::Result<Token> findToken(const Module& module, const Label& label);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_SLOTS_H_
