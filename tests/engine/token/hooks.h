#ifndef ZEL_TESTS_ENGINE_TOKEN_HOOKS_H_
#define ZEL_TESTS_ENGINE_TOKEN_HOOKS_H_

#include <p11-kit/pkcs11.h>

#include <functional>
#include <string>

/**
 * @file
 * A look at, and a hand in, what is called in the hooked module:
 *
 *     Hooks hooks([&](const std::string& function) -> CK_RV {
 *       return function == "C_Login" ? CKR_PIN_LOCKED : CKR_OK;
 *     });
 */

namespace zel::km::token {

/** Called before a function; any answer but CKR_OK is answered in its place. */
using ModuleHook = CK_RV (*)(const char* function);

/** Hooks are in force for as long as they live; one at a time. */
class Hooks {
 public:
  explicit Hooks(std::function<CK_RV(const std::string&)> hook);
  ~Hooks();
  Hooks(const Hooks&) = delete;
  Hooks& operator=(const Hooks&) = delete;
};

/** The function list of a module, called past the library under test. */
CK_FUNCTION_LIST* rawModule(const char* file);

}  // namespace zel::km::token

#endif  // ZEL_TESTS_ENGINE_TOKEN_HOOKS_H_
