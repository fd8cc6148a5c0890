#ifndef ZEL_KM_TOKEN_LOGIN_TABLE_H_
#define ZEL_KM_TOKEN_LOGIN_TABLE_H_

#include <p11-kit/pkcs11.h>

#include <map>

#include "engine/sys/bytes.h"
#include "engine/sys/proof_of_secret.h"
#include "engine/sys/result.h"

/**
 * @file
 * Who may join the logins to the tokens of one module.
 *
 * PKCS #11 knows one login per token and process: once one session is logged in, all are, whatever
 * PIN their owners have, and C_Logout would log all of them out. So that nobody gets in on another
 * one's login, the proof of the PIN that a token accepted is kept, and whoever finds the token
 * logged in must present the same PIN. A login that is not known here was made by somebody else in
 * the process, and proves nothing. Logins end by themselves with the last session on the token;
 * nobody is ever logged out.
 */

namespace zel::km::token {

/** What a token wants to hear at login, real UTF-8; no bytes where it has a PIN pad of its own. */
using Pin = sys::ByteView;

/** A LoginTable knows the PIN that each token accepted last, by its proof. */
class LoginTable {
 public:
  /** Takes note of the PIN that the slot's token has just accepted. */
  void note(CK_SLOT_ID slot, sys::ProofOfSecret accepted) {
    accepted_.insert_or_assign(slot, std::move(accepted));
  }

  /**
   * Whether that PIN may join the login to the slot's token.
   *
   *  - ZELKM_ERR_DATABASE_INVALID_PASSWORD (16): the token accepted another one.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): somebody else in the process logged in.
   */
  sys::Status join(CK_SLOT_ID slot, Pin pin) const;

  /** To be called when the module is finalised: all logins have ended. */
  void forget() { accepted_.clear(); }

 private:
  std::map<CK_SLOT_ID, sys::ProofOfSecret> accepted_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_LOGIN_TABLE_H_
