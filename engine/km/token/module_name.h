#ifndef ZEL_KM_TOKEN_MODULE_NAME_H_
#define ZEL_KM_TOKEN_MODULE_NAME_H_

#include <string>
#include <string_view>

/**
 * @file
 * How a PKCS #11 module is named:
 *
 *     /usr/lib/softhsm/libsofthsm2.so              a file
 *     softhsm2                                     a module that p11-kit's configuration names
 *     opensc-pkcs11.so                             a file in p11-kit's or the linker's path
 *     libsoftokn3.so?args=configdir='sql:/etc/db'  any of them, with its initialisation arguments
 *
 * The arguments are what the module's C_Initialize takes as text (NSS calls them module
 * parameters); they run to the end of the name and are passed on as they are. Without them, those
 * of p11-kit's configuration (x-init-reserved) are used.
 */

namespace zel::km::token {

/** ModuleName is a module's file, as dlopen takes it, and its initialisation arguments. */
struct ModuleName {
  std::string file;
  std::string arguments; /**< empty for none */
};

/** resolveModuleName never fails: a name that nobody knows is left for dlopen to refuse. */
ModuleName resolveModuleName(std::string_view name);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_MODULE_NAME_H_
