#include "engine/km/token/session.h"

#include <algorithm>
#include <utility>

#include "engine/km/token/cryptoki_codes.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/** The signature of the largest RSA key that is handled, 16384 bits. */
constexpr std::size_t kLongestSignature = 2048;

sys::SecretBlock pinBlock(const sys::Password& pin) {
  sys::SecretBlock block(pin.bytes().size());
  std::ranges::copy(pin.bytes(), block.bytes().begin());
  return block;
}

/** A search that was begun, and that a session has to end before it begins another. */
struct SearchUnderWay {
  const Module& module;
  CK_SESSION_HANDLE session;

  ~SearchUnderWay() { module.call(&CK_FUNCTION_LIST::C_FindObjectsFinal, session); }
};

/** What a token answers to a new PIN that it does not take. */
sys::Failure newPinFailure(CK_RV rv, const Token& token, std::size_t length) {
  if (rv == CKR_PIN_LEN_RANGE && length < token.shortestPin) {
    return sys::fail(ZELKM_ERR_PWD_TOO_SHORT, "the token wants PINs of %lu bytes at least",
                     token.shortestPin);
  }
  if (rv == CKR_PIN_LEN_RANGE || rv == CKR_PIN_INVALID) {
    return sys::fail(ZELKM_ERR_NEW_PASSWORD, "the token does not take the new PIN: %s",
                     cryptokiName(rv));
  }
  return cryptokiFailure(rv, "change the PIN");
}

}  // namespace

sys::Result<std::unique_ptr<Session>> Session::open(std::shared_ptr<Module> module, Token token,
                                                    const sys::Password& pin) {
  if (token.wantsPin() && pin.empty()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED, "the token wants a PIN");
  }
  if (!token.wantsPin() && !pin.empty()) {
    return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED,
                     "the token takes no PIN from a program");
  }
  std::unique_ptr<Session> session(new Session(std::move(module), std::move(token), pinBlock(pin)));
  sys::Status opened = session->openHandle();
  if (!opened) return opened.failure();
  return session;
}

Session::Session(std::shared_ptr<Module> module, Token token, sys::SecretBlock pin)
    : module_(std::move(module)), token_(std::move(token)), pin_(std::move(pin)) {}

Session::~Session() {
  const CallTurn turn = takeTurn();
  if (handle_ != CK_INVALID_HANDLE) module_->closeSession(handle_);
  module_ = nullptr;  // in the same turn, for the module may be finalised with it
}

sys::Status Session::openHandle() {
  std::optional<Pin> login;
  if (token_.wantsLogin()) login = pin();
  sys::Result<CK_SESSION_HANDLE> opened = module_->openSession(token_.slot, login);
  if (!opened) return opened.failure();
  handle_ = opened.value();
  return sys::success();
}

sys::Status Session::changePin(const sys::Password& newPin) {
  sys::SecretBlock pin = pinBlock(newPin);
  sys::Result<CK_RV> rv = module_->changePin(token_.slot, handle_, pin_.bytes(), pin.bytes());
  if (!rv) return rv.failure();
  if (rv.value() != CKR_OK) return newPinFailure(rv.value(), token_, pin.bytes().size());
  pin_ = std::move(pin);
  return sys::success();
}

sys::Result<std::vector<CK_OBJECT_HANDLE>> Session::find(const Template& wanted) const {
  constexpr CK_ULONG kAtOnce = 64;
  CK_RV rv =
      module_->call(&CK_FUNCTION_LIST::C_FindObjectsInit, handle_, wanted.data(), wanted.size());
  if (rv != CKR_OK) return cryptokiFailure(rv, "begin a search");
  const SearchUnderWay underWay{*module_, handle_};
  std::vector<CK_OBJECT_HANDLE> found;
  CK_ULONG count = 0;
  do {
    CK_OBJECT_HANDLE some[kAtOnce];
    count = 0;
    rv = module_->call(&CK_FUNCTION_LIST::C_FindObjects, handle_, &some[0], kAtOnce, &count);
    if (rv == CKR_OK) found.insert(found.end(), some, some + std::min(count, kAtOnce));
  } while (rv == CKR_OK && count > 0);
  if (rv != CKR_OK) return cryptokiFailure(rv, "search its objects");
  return found;
}

sys::Result<Attributes> Session::read(CK_OBJECT_HANDLE object,
                                      std::span<const CK_ATTRIBUTE_TYPE> types) const {
  // These three say that some attributes could not be had; the others are there.
  const auto answered = [](CK_RV rv) {
    return rv == CKR_OK || rv == CKR_ATTRIBUTE_TYPE_INVALID || rv == CKR_ATTRIBUTE_SENSITIVE;
  };
  const auto get = [&](std::vector<CK_ATTRIBUTE>& wanted) {
    return module_->call(&CK_FUNCTION_LIST::C_GetAttributeValue, handle_, object, wanted.data(),
                         CK_ULONG(wanted.size()));
  };
  std::vector<CK_ATTRIBUTE> wanted;
  for (const CK_ATTRIBUTE_TYPE type : types) wanted.push_back({type, nullptr, 0});
  CK_RV rv = get(wanted);
  if (!answered(rv)) return cryptokiFailure(rv, "tell the size of attributes");

  std::erase_if(wanted, [](const CK_ATTRIBUTE& attribute) {
    return attribute.ulValueLen == CK_UNAVAILABLE_INFORMATION || attribute.ulValueLen == 0;
  });
  Attributes attributes;
  if (wanted.empty()) return attributes;
  std::vector<sys::Bytes> values;
  for (CK_ATTRIBUTE& attribute : wanted) {
    attribute.pValue = values.emplace_back(attribute.ulValueLen).data();
  }
  rv = get(wanted);
  if (!answered(rv)) return cryptokiFailure(rv, "read attributes");
  for (std::size_t at = 0; at < wanted.size(); ++at) {
    if (wanted[at].ulValueLen > values[at].size()) continue;
    values[at].resize(wanted[at].ulValueLen);
    attributes.set(wanted[at].type, std::move(values[at]));
  }
  return attributes;
}

CK_RV Session::create(const Template& attributes, CK_OBJECT_HANDLE* object) const {
  return module_->call(&CK_FUNCTION_LIST::C_CreateObject, handle_, attributes.data(),
                       attributes.size(), object);
}

CK_RV Session::change(CK_OBJECT_HANDLE object, const Template& attributes) const {
  return module_->call(&CK_FUNCTION_LIST::C_SetAttributeValue, handle_, object, attributes.data(),
                       attributes.size());
}

sys::Status Session::destroyAnyway(CK_OBJECT_HANDLE object) const {
  const CK_RV rv = module_->destroyAnyway(handle_, object);
  if (rv != CKR_OK) return cryptokiFailure(rv, "destroy an object");
  return sys::success();
}

sys::Status Session::destroy(CK_OBJECT_HANDLE object) const {
  const CK_RV rv = module_->call(&CK_FUNCTION_LIST::C_DestroyObject, handle_, object);
  if (rv != CKR_OK) return cryptokiFailure(rv, "destroy an object");
  return sys::success();
}

sys::Result<bool> Session::offers(CK_MECHANISM_TYPE mechanism, int keySize) const {
  CK_MECHANISM_INFO info{};
  const CK_RV rv =
      module_->call(&CK_FUNCTION_LIST::C_GetMechanismInfo, token_.slot, mechanism, &info);
  if (rv == CKR_MECHANISM_INVALID) return false;
  if (rv != CKR_OK) return cryptokiFailure(rv, "describe a mechanism");
  const auto size = static_cast<CK_ULONG>(keySize);
  return info.ulMinKeySize <= size && size <= info.ulMaxKeySize;
}

sys::Result<KeyPairHandles> Session::generateKeyPair(CK_MECHANISM_TYPE mechanism,
                                                     const Template& publicKey,
                                                     const Template& privateKey) const {
  CK_MECHANISM how{mechanism, nullptr, 0};
  KeyPairHandles pair;
  const CK_RV rv = module_->call(&CK_FUNCTION_LIST::C_GenerateKeyPair, handle_, &how,
                                 publicKey.data(), publicKey.size(), privateKey.data(),
                                 privateKey.size(), &pair.publicKey, &pair.privateKey);
  if (rv != CKR_OK) return cryptokiFailure(rv, "generate a key pair");
  return pair;
}

sys::Result<sys::Bytes> Session::sign(CK_MECHANISM_TYPE mechanism, CK_OBJECT_HANDLE privateKey,
                                      sys::ByteView data) const {
  constexpr CK_ATTRIBUTE_TYPE kAsksEveryTime[] = {CKA_ALWAYS_AUTHENTICATE};
  sys::Result<Attributes> key = read(privateKey, kAsksEveryTime);
  if (!key) return key.failure();

  // Made first: where there is no memory for it, no signature may be left begun.
  sys::Bytes signature(kLongestSignature);
  CK_MECHANISM how{mechanism, nullptr, 0};
  CK_RV rv = module_->call(&CK_FUNCTION_LIST::C_SignInit, handle_, &how, privateKey);
  if (rv == CKR_OK && key.value().flag(CKA_ALWAYS_AUTHENTICATE)) {
    auto* pinText = pin_.bytes().empty() ? nullptr : const_cast<CK_UTF8CHAR*>(pin_.bytes().data());
    rv = module_->call(&CK_FUNCTION_LIST::C_Login, handle_, CK_USER_TYPE(CKU_CONTEXT_SPECIFIC),
                       pinText, CK_ULONG(pin_.bytes().size()));
  }
  if (rv != CKR_OK) return cryptokiFailure(rv, "begin a signature");
  CK_ULONG length = signature.size();
  rv = module_->call(&CK_FUNCTION_LIST::C_Sign, handle_, const_cast<CK_BYTE*>(data.data()),
                     CK_ULONG(data.size()), signature.data(), &length);
  if (rv != CKR_OK) return cryptokiFailure(rv, "sign");
  signature.resize(length);
  return signature;
}

}  // namespace zel::km::token
