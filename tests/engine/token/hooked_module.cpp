#include <dlfcn.h>
#include <p11-kit/pkcs11.h>

#include "tests/engine/token/hooks.h"

// A PKCS #11 module that is SoftHSM's, with a hook before its functions.

namespace {

using zel::km::token::ModuleHook;

ModuleHook hook = nullptr;
CK_FUNCTION_LIST* real = nullptr;
CK_FUNCTION_LIST hooked{};

template <auto member>
struct Hooked;

template <typename... Arguments, CK_RV (*CK_FUNCTION_LIST::*member)(Arguments...)>
struct Hooked<member> {
  static inline const char* name = "";

  static CK_RV call(Arguments... arguments) {
    const CK_RV rv = hook == nullptr ? CKR_OK : hook(name);
    return rv == CKR_OK ? (real->*member)(arguments...) : rv;
  }
};

template <auto member>
void install(const char* name) {
  Hooked<member>::name = name;
  hooked.*member = Hooked<member>::call;
}

}  // namespace

#define ZEL_EXPORT extern "C" __attribute__((visibility("default")))

ZEL_EXPORT void setModuleHook(ModuleHook wanted) { hook = wanted; }

ZEL_EXPORT CK_RV C_GetFunctionList(CK_FUNCTION_LIST** list) {
  void* library = dlopen("/usr/lib/softhsm/libsofthsm2.so", RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return CKR_GENERAL_ERROR;
  auto get = reinterpret_cast<CK_C_GetFunctionList>(dlsym(library, "C_GetFunctionList"));
  if (get == nullptr || get(&real) != CKR_OK) return CKR_GENERAL_ERROR;
  hooked = *real;
#define INSTALL(function) install<&CK_FUNCTION_LIST::function>(#function)
  INSTALL(C_Initialize);
  INSTALL(C_GetSlotList);
  INSTALL(C_GetTokenInfo);
  INSTALL(C_GetMechanismInfo);
  INSTALL(C_OpenSession);
  INSTALL(C_GetSessionInfo);
  INSTALL(C_Login);
  INSTALL(C_Logout);
  INSTALL(C_SetPIN);
  INSTALL(C_FindObjectsInit);
  INSTALL(C_FindObjects);
  INSTALL(C_GetAttributeValue);
  INSTALL(C_SetAttributeValue);
  INSTALL(C_CreateObject);
  INSTALL(C_DestroyObject);
  INSTALL(C_GenerateKeyPair);
  INSTALL(C_SignInit);
  INSTALL(C_Sign);
#undef INSTALL
  *list = &hooked;
  return CKR_OK;
}
