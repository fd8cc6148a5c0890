#include "tests/engine/token/hooks.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <utility>

namespace zel::km::token {

namespace {

std::function<CK_RV(const std::string&)>& current() {
  static std::function<CK_RV(const std::string&)> hook;
  return hook;
}

void setHook(ModuleHook hook) {
  void* library = dlopen(ZEL_HOOKED_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  auto set = reinterpret_cast<void (*)(ModuleHook)>(dlsym(library, "setModuleHook"));
  ASSERT_NE(set, nullptr);
  set(hook);
}

}  // namespace

Hooks::Hooks(std::function<CK_RV(const std::string&)> hook) {
  current() = std::move(hook);
  setHook([](const char* function) { return current()(function); });
}

Hooks::~Hooks() { setHook(nullptr); }

CK_FUNCTION_LIST* rawModule(const char* file) {
  void* library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
  CK_FUNCTION_LIST* functions = nullptr;
  auto get = reinterpret_cast<CK_C_GetFunctionList>(dlsym(library, "C_GetFunctionList"));
  EXPECT_EQ(get(&functions), CKR_OK);
  return functions;
}

}  // namespace zel::km::token
