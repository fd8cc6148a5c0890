#ifndef ZEL_KM_TOKEN_MODULE_H_
#define ZEL_KM_TOKEN_MODULE_H_

#include <openssl/err.h>
#include <p11-kit/pkcs11.h>

#include <memory>
#include <optional>
#include <string>

#include "engine/km/token/call_turn.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/library.h"
#include "engine/km/token/login_table.h"
#include "engine/sys/result.h"

/**
 * @file
 * PKCS #11 modules in this process:
 *
 *     Result<std::shared_ptr<Module>> module = Module::open(named.value());  // library.h
 *     if (!module) return module.failure();
 *     CK_RV rv = module.value()->call(&CK_FUNCTION_LIST::C_GetSlotList, CK_TRUE, nullptr, &count);
 *
 * A module is initialised at its first use and finalised after its last, so that the next use sees
 * what other processes did to its tokens meanwhile. Where somebody else in the process initialised
 * it, it is theirs to finalise.
 */

namespace zel::km::token {

/** A Module is one use of a module: it stays initialised for as long as one of them is there. */
class Module {
 public:
  /**
   * The module, ready for use.
   *
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): it cannot be used by several threads.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): it does not initialise, or is in use
   *    with other arguments, or other processes do not let go of it.
   */
  static sys::Result<std::shared_ptr<Module>> open(const NamedModule& named);

  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module();

  /** Keeps all others out over several calls. */
  CallTurn takeTurn() const { return CallTurn(library_.turns); }

  /**
   * Calls one function of the module when it is its turn, kNoTurn when that does not come. Errors
   * that it leaves in OpenSSL's queue are dropped.
   */
  template <typename Function, typename... Arguments>
  CK_RV call(Function CK_FUNCTION_LIST::*function, Arguments... arguments) const {
    const CallTurn turn = takeTurn();
    if (!turn.had()) return kNoTurn;
    return callAnyway(function, arguments...);
  }

  /**
   * A new session with the slot's token, logged in when a PIN is given, which is tried once: a
   * wrong one costs one try of the token's.
   *
   *  - ZELKM_ERR_DATABASE_INVALID_PASSWORD (16): the PIN is wrong.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): the PIN is locked, or the token is
   *    logged in by somebody else in this process, so that the PIN cannot be tried.
   */
  sys::Result<CK_SESSION_HANDLE> openSession(CK_SLOT_ID slot, std::optional<Pin> pin) const;
  /** Destroys what this process made and nobody is to find, even when the turn does not come. */
  CK_RV destroyAnyway(CK_SESSION_HANDLE session, CK_OBJECT_HANDLE object) const;
  /** With the last session on a token its login ends. */
  void closeSession(CK_SESSION_HANDLE session) const;
  /** Changes the PIN of the token that the session is logged in to, as C_SetPIN answers. */
  sys::Result<CK_RV> changePin(CK_SLOT_ID slot, CK_SESSION_HANDLE session, Pin oldPin,
                               Pin newPin) const;

 private:
  explicit Module(Library& library);

  /** For what has to be done even when the turn does not come. */
  template <typename Function, typename... Arguments>
  CK_RV callAnyway(Function CK_FUNCTION_LIST::*function, Arguments... arguments) const {
    if (library_.functions->*function == nullptr) return CKR_FUNCTION_NOT_SUPPORTED;
    ERR_set_mark();
    const CK_RV rv = (library_.functions->*function)(arguments...);
    ERR_pop_to_mark();
    return rv;
  }

  sys::Status initialise(const std::string& arguments) const;
  bool isLoggedIn(CK_SESSION_HANDLE session) const;
  sys::Status logIn(CK_SLOT_ID slot, CK_SESSION_HANDLE session, Pin pin) const;

  Library& library_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_MODULE_H_
