#include "engine/km/token/library.h"

#include <dlfcn.h>
#include <link.h>
#include <openssl/crypto.h>

#include <map>
#include <memory>
#include <utility>

#include "engine/km/token/module_name.h"
#include "engine/sys/mutex.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/** A loaded file, which stays loaded once it is kept. */
struct Unloader {
  void operator()(void* handle) const { dlclose(handle); }
};
using Loaded = std::unique_ptr<void, Unloader>;

CK_FUNCTION_LIST* functionsOf(void* handle) {
  auto getFunctionList = reinterpret_cast<CK_C_GetFunctionList>(dlsym(handle, "C_GetFunctionList"));
  CK_FUNCTION_LIST* functions = nullptr;
  if (getFunctionList == nullptr || getFunctionList(&functions) != CKR_OK) return nullptr;
  return functions;
}

/** The path that the file was found under. */
std::string pathOf(void* handle, const std::string& file) {
  link_map* found = nullptr;
  return dlinfo(handle, RTLD_DI_LINKMAP, &found) == 0 ? found->l_name : file;
}

/** The libraries of the process by their dlopen handles, which are one for each file. */
class Libraries {
 public:
  static Libraries& instance() {
    // Never destroyed: stores may stay open while the process exits.
    static auto* libraries = new Libraries;
    return *libraries;
  }

  sys::Result<Library*> load(const std::string& file) {
    const sys::Lock lock(mutex_);
    // OpenSSL's exit handler is to run after the module's: handlers run last come, first served.
    OPENSSL_init_crypto(0, nullptr);
    Loaded handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!handle) {
      return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, "%s", dlerror());
    }
    auto known = libraries_.find(handle.get());
    if (known != libraries_.end()) return &known->second;
    CK_FUNCTION_LIST* functions = functionsOf(handle.get());
    if (functions == nullptr) {
      return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, "%s is no PKCS #11 module",
                       file.c_str());
    }
    auto made = libraries_.try_emplace(handle.get(), functions, pathOf(handle.get(), file));
    (void)handle.release();  // kept for good
    return &made.first->second;
  }

 private:
  sys::Mutex mutex_;
  std::map<void*, Library> libraries_ ZEL_GUARDED_BY(mutex_);
};

}  // namespace

sys::Result<NamedModule> loadModule(std::string_view name) {
  ModuleName resolved = resolveModuleName(std::string(name));
  sys::Result<Library*> library = Libraries::instance().load(resolved.file);
  if (!library) return library.failure();
  return NamedModule{.library = library.value(), .arguments = std::move(resolved.arguments)};
}

}  // namespace zel::km::token
