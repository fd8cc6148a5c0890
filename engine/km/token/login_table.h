#ifndef ZEL_KM_TOKEN_LOGIN_TABLE_H_
#define ZEL_KM_TOKEN_LOGIN_TABLE_H_

#include <p11-kit/pkcs11.h>

#include <array>
#include <cstdint>
#include <map>

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Logins to the tokens of one module.
 *
 * PKCS #11 knows one login per token and process: once one session is logged in, all are, whatever
 * PIN their owners have, and C_Logout would log all of them out. So that nobody gets in on another
 * one's login, the PIN that a token accepted is remembered, as its HMAC under a random key of the
 * process, and whoever finds the token logged in must present the same. A login that is not known
 * here was made by somebody else in the process, and proves nothing. Logins end by themselves with
 * the last session on the token; nobody is ever logged out.
 */

namespace zel::km::token {

class Module;
struct Token;

/** What a token wants to hear at login, real UTF-8; no bytes where it has a PIN pad of its own. */
using Pin = sys::ByteView;

class LoginTable {
 public:
  /**
   * A new session on the token, logged in when the token wants that. The PIN is tried once: a
   * wrong one costs one try of the token's.
   *
   *  - ZELKM_ERR_DATABASE_INVALID_PASSWORD (16): the PIN is wrong.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): the PIN is locked, or the token is
   *    logged in by somebody else in this process, so that the PIN cannot be tried.
   */
  sys::Result<CK_SESSION_HANDLE> openSession(const Module& module, const Token& token, Pin pin);

  void closeSession(const Module& module, CK_SESSION_HANDLE session);

  /** Changes the PIN of the token that the session is logged in to. */
  CK_RV changePin(const Module& module, const Token& token, CK_SESSION_HANDLE session, Pin oldPin,
                  Pin newPin);

  /** To be called when the module is finalised: all logins have ended. */
  void forget();

 private:
  using Proof = std::array<std::uint8_t, 32>;

  sys::Status logIn(const Module& module, const Token& token, CK_SESSION_HANDLE session, Pin pin);
  sys::Status joinLogin(CK_SLOT_ID slot, Pin pin) const;

  /**
   * Guarded by the turn (call_turn.h), which is held over opening, logging in and closing: the last
   * session to close ends the login.
   */
  std::map<CK_SLOT_ID, Proof> accepted_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_LOGIN_TABLE_H_
