#ifndef ZEL_KM_TOKEN_MODULE_H_
#define ZEL_KM_TOKEN_MODULE_H_

#include <openssl/err.h>
#include <p11-kit/pkcs11.h>

#include <memory>
#include <string_view>

#include "engine/km/token/call_turn.h"
#include "engine/km/token/login_table.h"
#include "engine/sys/result.h"

/**
 * @file
 * PKCS #11 modules in this process:
 *
 *     Result<std::shared_ptr<Module>> module = Module::open("softhsm2");
 *     if (!module) return module.failure();
 *     CK_RV rv = module.value()->call(&CK_FUNCTION_LIST::C_GetSlotList, CK_TRUE, nullptr, &count);
 *
 * A module is initialised at its first use and finalised after its last, so that the next use sees
 * what other processes did to its tokens meanwhile. Where somebody else in the process initialised
 * it, it is theirs to finalise. A library that was loaded stays loaded, and nothing here runs while
 * the process exits: by then the module, or the OpenSSL below it, may be gone already.
 */

namespace zel::km::token {

class Module {
 public:
  /**
   * The module of that name (module_name.h), ready for use.
   *
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED (140): no such file, or no PKCS #11 module.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141): it cannot be used by several threads.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): it does not initialise, or is in use
   *    with other arguments.
   */
  static sys::Result<std::shared_ptr<Module>> open(std::string_view name);

  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module();

  /** Calls one function of the module when it is its turn. Errors that it leaves in OpenSSL's queue
   * are dropped. */
  template <typename Function, typename... Arguments>
  CK_RV call(Function CK_FUNCTION_LIST::*function, Arguments... arguments) const {
    if (functions_->*function == nullptr) return CKR_FUNCTION_NOT_SUPPORTED;
    const CallTurn turn;
    ERR_set_mark();
    const CK_RV rv = (functions_->*function)(arguments...);
    ERR_pop_to_mark();
    return rv;
  }

  /** Who is logged in to the module's tokens, for as long as it stays initialised. */
  LoginTable& logins() const { return *logins_; }

 private:
  struct Library;
  class Registry;

  explicit Module(Library& library);

  Library& library_;
  CK_FUNCTION_LIST* functions_;
  LoginTable* logins_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_MODULE_H_
