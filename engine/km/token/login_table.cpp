#include "engine/km/token/login_table.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <new>

#include "engine/km/token/call_turn.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/module.h"
#include "engine/km/token/slots.h"
#include "engine/sys/secrets.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/** The random key of this process under which PINs are compared. */
sys::ByteView processKey() {
  static const auto* key = [] {
    auto* block = new sys::SecretBlock(32);
    if (RAND_priv_bytes(block->bytes().data(), 32) != 1) throw std::bad_alloc();
    return block;
  }();
  return key->bytes();
}

std::array<std::uint8_t, 32> proofOf(Pin pin) {
  std::array<std::uint8_t, 32> proof{};
  const sys::ByteView key = processKey();
  if (HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), pin.data(), pin.size(),
           proof.data(), nullptr) == nullptr) {
    throw std::bad_alloc();
  }
  return proof;
}

/** PKCS #11 takes what it only reads without const. */
CK_UTF8CHAR_PTR pinText(Pin pin) { return const_cast<CK_UTF8CHAR_PTR>(pin.data()); }

bool isLoggedIn(const Module& module, CK_SESSION_HANDLE session) {
  CK_SESSION_INFO info{};
  return module.call(&CK_FUNCTION_LIST::C_GetSessionInfo, session, &info) == CKR_OK &&
         (info.state == CKS_RW_USER_FUNCTIONS || info.state == CKS_RO_USER_FUNCTIONS);
}

}  // namespace

sys::Result<CK_SESSION_HANDLE> LoginTable::openSession(const Module& module, const Token& token,
                                                       Pin pin) {
  const CallTurn turn;
  const auto open = [&](CK_FLAGS flags, CK_SESSION_HANDLE* session) {
    return module.call(&CK_FUNCTION_LIST::C_OpenSession, token.slot, flags | CKF_SERIAL_SESSION,
                       nullptr, nullptr, session);
  };
  CK_SESSION_HANDLE session = CK_INVALID_HANDLE;
  CK_RV rv = open(CKF_RW_SESSION, &session);
  if (rv == CKR_TOKEN_WRITE_PROTECTED) rv = open(0, &session);
  if (rv != CKR_OK) return cryptokiFailure(rv, "open a session");

  sys::Status status = sys::success();
  if (token.wantsLogin()) status = logIn(module, token, session, pin);
  if (!status) {
    module.call(&CK_FUNCTION_LIST::C_CloseSession, session);
    return status.failure();
  }
  return session;
}

void LoginTable::closeSession(const Module& module, CK_SESSION_HANDLE session) {
  const CallTurn turn;
  module.call(&CK_FUNCTION_LIST::C_CloseSession, session);
}

CK_RV LoginTable::changePin(const Module& module, const Token& token, CK_SESSION_HANDLE session,
                            Pin oldPin, Pin newPin) {
  const CallTurn turn;
  const CK_RV rv = module.call(&CK_FUNCTION_LIST::C_SetPIN, session, pinText(oldPin),
                               CK_ULONG(oldPin.size()), pinText(newPin), CK_ULONG(newPin.size()));
  if (rv == CKR_OK) accepted_[token.slot] = proofOf(newPin);
  return rv;
}

void LoginTable::forget() {
  const CallTurn turn;
  accepted_.clear();
}

sys::Status LoginTable::logIn(const Module& module, const Token& token, CK_SESSION_HANDLE session,
                              Pin pin) {
  if (isLoggedIn(module, session)) return joinLogin(token.slot, pin);
  const CK_RV rv = module.call(&CK_FUNCTION_LIST::C_Login, session, CK_USER_TYPE(CKU_USER),
                               pin.empty() ? nullptr : pinText(pin), CK_ULONG(pin.size()));
  if (rv == CKR_USER_ALREADY_LOGGED_IN) return joinLogin(token.slot, pin);
  if (rv != CKR_OK) return cryptokiFailure(rv, "log in");
  accepted_[token.slot] = proofOf(pin);
  return sys::success();
}

sys::Status LoginTable::joinLogin(CK_SLOT_ID slot, Pin pin) const {
  auto accepted = accepted_.find(slot);
  if (accepted == accepted_.end()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED,
                     "somebody else in this process is logged in to the token");
  }
  const Proof given = proofOf(pin);
  if (CRYPTO_memcmp(given.data(), accepted->second.data(), given.size()) != 0) {
    return sys::fail(ZELKM_ERR_DATABASE_INVALID_PASSWORD,
                     "the token is in use with another PIN than the one given");
  }
  return sys::success();
}

}  // namespace zel::km::token
