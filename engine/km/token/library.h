#ifndef ZEL_KM_TOKEN_LIBRARY_H_
#define ZEL_KM_TOKEN_LIBRARY_H_

#include <p11-kit/pkcs11.h>

#include <chrono>
#include <string>
#include <string_view>

#include "engine/km/token/call_turn.h"
#include "engine/km/token/login_table.h"
#include "engine/sys/result.h"

/**
 * @file
 * The shared libraries of PKCS #11 modules. Each is loaded once and stays so until the process
 * ends, because nothing may run while it exits: by then the library, or the OpenSSL below it, may
 * be gone already.
 *
 *     Result<NamedModule> named = loadModule("softhsm2");
 *     if (!named) return named.failure();
 *     const CallTurn turn(named.value().library->turns);
 */

namespace zel::km::token {

/** A Library is known by its file: two names of one file are one library. */
struct Library {
  Library(CK_FUNCTION_LIST* offered, const std::string& file,
          std::chrono::milliseconds patience = Turns::kPatience)
      : functions(offered), turns(file, patience) {}

  CK_FUNCTION_LIST* const functions;
  Turns turns;

  // What follows belongs to who has the turn.
  int users = 0;
  bool initialisedHere = false; /**< and so to be finalised here */
  std::string arguments;        /**< that it was initialised with */
  LoginTable logins;
};

/** A NamedModule is the library that a module's name stands for, and what to initialise it with. */
struct NamedModule {
  Library* library; /**< never gone again */
  std::string arguments;
};

/**
 * Loads the module of that name (module_name.h).
 * ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED (140): no such file, or no PKCS #11 module.
 */
sys::Result<NamedModule> loadModule(std::string_view name);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_LIBRARY_H_
