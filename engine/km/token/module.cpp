#include "engine/km/token/module.h"

#include <utility>

#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/** PKCS #11 takes what it only reads without const. */
CK_UTF8CHAR_PTR pinText(Pin pin) { return const_cast<CK_UTF8CHAR_PTR>(pin.data()); }

}  // namespace

sys::Result<std::shared_ptr<Module>> Module::open(const NamedModule& named) {
  Library& library = *named.library;
  const CallTurn turn(library.turns);
  if (!turn.had()) return cryptokiFailure(kNoTurn, "open");
  std::shared_ptr<Module> module(new Module(library));
  if (library.users == 1) {
    sys::Status ready = module->initialise(named.arguments);
    if (!ready) return ready.failure();
  } else if (library.arguments != named.arguments) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED,
                     "the module is in use with other arguments");
  }
  return module;
}

/** Only made, and only destroyed, in a turn: whoever comes next finds the module as it is. */
Module::Module(Library& library) : library_(library) { ++library.users; }

Module::~Module() {
  const CallTurn turn = takeTurn();
  if (--library_.users > 0 || !library_.initialisedHere) return;
  callAnyway(&CK_FUNCTION_LIST::C_Finalize, nullptr);
  library_.logins.forget();
  library_.initialisedHere = false;
}

sys::Status Module::initialise(const std::string& arguments) const {
  // NSS reads one pointer past the end of the standard's record; it must find null there.
  struct {
    CK_C_INITIALIZE_ARGS standard;
    void* beyond;
  } args{};
  std::string text = arguments;
  args.standard.flags = CKF_OS_LOCKING_OK;
  if (!text.empty()) args.standard.pReserved = text.data();

  library_.arguments = arguments;
  const CK_RV rv = callAnyway(&CK_FUNCTION_LIST::C_Initialize, static_cast<CK_VOID_PTR>(&args));
  if (rv != CKR_OK && rv != CKR_CRYPTOKI_ALREADY_INITIALIZED) {
    return cryptokiFailure(rv, "initialise");
  }
  library_.initialisedHere = rv == CKR_OK;
  return sys::success();
}

sys::Result<CK_SESSION_HANDLE> Module::openSession(CK_SLOT_ID slot, std::optional<Pin> pin) const {
  const CallTurn turn = takeTurn();
  CK_SESSION_HANDLE session = CK_INVALID_HANDLE;
  const auto open = [&](CK_FLAGS flags) {
    return call(&CK_FUNCTION_LIST::C_OpenSession, slot, flags | CKF_SERIAL_SESSION, nullptr,
                nullptr, &session);
  };
  CK_RV rv = open(CKF_RW_SESSION);
  if (rv == CKR_TOKEN_WRITE_PROTECTED) rv = open(0);
  if (rv != CKR_OK) return cryptokiFailure(rv, "open a session");

  sys::Status status = sys::success();
  if (pin) status = logIn(slot, session, *pin);
  if (!status) {
    closeSession(session);
    return status.failure();
  }
  return session;
}

CK_RV Module::destroyAnyway(CK_SESSION_HANDLE session, CK_OBJECT_HANDLE object) const {
  const CallTurn turn = takeTurn();
  return callAnyway(&CK_FUNCTION_LIST::C_DestroyObject, session, object);
}

void Module::closeSession(CK_SESSION_HANDLE session) const {
  const CallTurn turn = takeTurn();
  callAnyway(&CK_FUNCTION_LIST::C_CloseSession, session);
}

bool Module::isLoggedIn(CK_SESSION_HANDLE session) const {
  CK_SESSION_INFO info{};
  return call(&CK_FUNCTION_LIST::C_GetSessionInfo, session, &info) == CKR_OK &&
         (info.state == CKS_RW_USER_FUNCTIONS || info.state == CKS_RO_USER_FUNCTIONS);
}

sys::Status Module::logIn(CK_SLOT_ID slot, CK_SESSION_HANDLE session, Pin pin) const {
  if (isLoggedIn(session)) return library_.logins.join(slot, pin);
  sys::Result<sys::ProofOfSecret> proof = sys::ProofOfSecret::of(pin);
  if (!proof) return proof.failure();
  const CK_RV rv = call(&CK_FUNCTION_LIST::C_Login, session, CK_USER_TYPE(CKU_USER),
                        pin.empty() ? nullptr : pinText(pin), CK_ULONG(pin.size()));
  if (rv == CKR_USER_ALREADY_LOGGED_IN) return library_.logins.join(slot, pin);
  if (rv != CKR_OK) return cryptokiFailure(rv, "log in");
  library_.logins.note(slot, std::move(proof).value());
  return sys::success();
}

sys::Result<CK_RV> Module::changePin(CK_SLOT_ID slot, CK_SESSION_HANDLE session, Pin oldPin,
                                     Pin newPin) const {
  const CallTurn turn = takeTurn();
  sys::Result<sys::ProofOfSecret> proof = sys::ProofOfSecret::of(newPin);
  if (!proof) return proof.failure();
  const CK_RV rv = call(&CK_FUNCTION_LIST::C_SetPIN, session, pinText(oldPin),
                        CK_ULONG(oldPin.size()), pinText(newPin), CK_ULONG(newPin.size()));
  if (rv == CKR_OK) library_.logins.note(slot, std::move(proof).value());
  return rv;
}

}  // namespace zel::km::token
