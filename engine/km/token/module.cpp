#include "engine/km/token/module.h"

#include <dlfcn.h>
#include <openssl/crypto.h>

#include <map>
#include <string>

#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/module_name.h"
#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

/** A loaded library, by its dlopen handle: two names of one file are one library. */
struct Module::Library {
  CK_FUNCTION_LIST* functions = nullptr;
  int users = 0;
  bool initialisedHere = false;
  std::string arguments;
  LoginTable logins;
};

/** The loaded libraries, used by whose turn it is. */
class Module::Registry {
 public:
  static Registry& instance() {
    // Never destroyed: modules stay loaded, and stores may stay open, while the process exits.
    static auto* registry = new Registry;
    return *registry;
  }

  sys::Result<std::shared_ptr<Module>> open(const ModuleName& name) {
    const CallTurn turn;
    sys::Result<Library*> library = load(name.file);
    if (!library) return library.failure();
    sys::Status status = use(*library.value(), name);
    if (!status) return status.failure();
    return std::shared_ptr<Module>(new Module(*library.value()));
  }

  void close(Library& library) {
    const CallTurn turn;
    if (--library.users > 0 || !library.initialisedHere) return;
    ERR_set_mark();
    library.functions->C_Finalize(nullptr);
    ERR_pop_to_mark();
    library.logins.forget();
    library.initialisedHere = false;
  }

 private:
  sys::Result<Library*> load(const std::string& file) {
    // OpenSSL's exit handler is to run after the module's: handlers run last come, first served.
    OPENSSL_init_crypto(0, nullptr);
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, "%s", dlerror());
    }
    auto known = libraries_.find(handle);
    if (known != libraries_.end()) {
      dlclose(handle);
      return &known->second;
    }
    auto getFunctionList =
        reinterpret_cast<CK_C_GetFunctionList>(dlsym(handle, "C_GetFunctionList"));
    CK_FUNCTION_LIST* functions = nullptr;
    if (getFunctionList == nullptr || getFunctionList(&functions) != CKR_OK ||
        functions == nullptr) {
      dlclose(handle);
      return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, "%s is no PKCS #11 module",
                       file.c_str());
    }
    Library& library = libraries_[handle];
    library.functions = functions;
    return &library;
  }

  static sys::Status use(Library& library, const ModuleName& name) {
    if (library.users == 0) {
      sys::Status status = initialise(library, name.arguments);
      if (!status) return status;
    } else if (library.arguments != name.arguments) {
      return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED,
                       "%s is in use with other arguments", name.file.c_str());
    }
    ++library.users;
    return sys::success();
  }

  static sys::Status initialise(Library& library, const std::string& arguments) {
    // NSS reads one pointer past the end of the standard's record; it must find null there.
    struct {
      CK_C_INITIALIZE_ARGS standard;
      void* beyond;
    } args{};
    std::string text = arguments;
    args.standard.flags = CKF_OS_LOCKING_OK;
    if (!text.empty()) args.standard.pReserved = text.data();

    ERR_set_mark();
    const CK_RV rv = library.functions->C_Initialize(&args);
    ERR_pop_to_mark();
    if (rv != CKR_OK && rv != CKR_CRYPTOKI_ALREADY_INITIALIZED) {
      return cryptokiFailure(rv, "initialise");
    }
    library.initialisedHere = rv == CKR_OK;
    library.arguments = arguments;
    return sys::success();
  }

  std::map<void*, Library> libraries_;
};

sys::Result<std::shared_ptr<Module>> Module::open(std::string_view name) {
  sys::Result<std::string> text = sys::toUtf8(name);
  if (!text) return text.failure();
  return Registry::instance().open(resolveModuleName(text.value()));
}

Module::Module(Library& library)
    : library_(library), functions_(library.functions), logins_(&library.logins) {}

Module::~Module() { Registry::instance().close(library_); }

}  // namespace zel::km::token
