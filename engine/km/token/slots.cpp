#include "engine/km/token/slots.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "engine/km/store/numbered_labels.h"
#include "engine/km/token/cryptoki_codes.h"
#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/** The text of one of PKCS #11's fields of fixed length, which blanks pad (or NULs, in error). */
template <std::size_t length>
std::string unpadded(const CK_UTF8CHAR (&field)[length]) {
  std::string text(reinterpret_cast<const char*>(field), length);
  text.resize(std::min(text.find('\0'), text.size()));
  text.resize(text.find_last_not_of(' ') + 1);
  return text;
}

sys::Result<std::vector<CK_SLOT_ID>> listSlots(const Module& module) {
  constexpr CK_BBOOL kWithToken = CK_TRUE;
  std::vector<CK_SLOT_ID> slots;
  CK_RV rv = CKR_BUFFER_TOO_SMALL;
  // Tokens may be plugged in between the question how many there are and the one which they are.
  for (int tries = 0; rv == CKR_BUFFER_TOO_SMALL && tries < 3; ++tries) {
    CK_ULONG count = 0;
    rv = module.call(&CK_FUNCTION_LIST::C_GetSlotList, kWithToken, nullptr, &count);
    if (rv != CKR_OK) break;
    slots.resize(count);
    rv = module.call(&CK_FUNCTION_LIST::C_GetSlotList, kWithToken, slots.data(), &count);
    slots.resize(std::min<std::size_t>(count, slots.size()));
  }
  if (rv != CKR_OK) return cryptokiFailure(rv, "list its slots");
  return slots;
}

/** Nothing when the slot's token is not initialised, or has just been pulled out. */
std::optional<Token> readToken(const Module& module, CK_SLOT_ID slot) {
  CK_TOKEN_INFO info{};
  const CK_RV rv = module.call(&CK_FUNCTION_LIST::C_GetTokenInfo, slot, &info);
  if (rv != CKR_OK) {
    sys::traceLine("slot %lu has no readable token: %s", slot, cryptokiName(rv));
    return std::nullopt;
  }
  if ((info.flags & CKF_TOKEN_INITIALIZED) == 0) return std::nullopt;
  Token token{.slot = slot,
              .label = Label::ofName(unpadded(info.label)),
              .serialNumber = sys::toModifiedUtf8(unpadded(info.serialNumber)),
              .flags = info.flags,
              .shortestPin = info.ulMinPinLen};
  if (token.label.empty()) token.label = Label::kept(token.serialNumber);
  return token;
}

}  // namespace

sys::Result<std::vector<Token>> listTokens(const Module& module) {
  sys::Result<std::vector<CK_SLOT_ID>> slots = listSlots(module);
  if (!slots) return slots.failure();
  std::vector<Token> tokens;
  for (const CK_SLOT_ID slot : slots.value()) {
    std::optional<Token> token = readToken(module, slot);
    if (token) tokens.push_back(*std::move(token));
  }
  std::sort(tokens.begin(), tokens.end(), [](const Token& left, const Token& right) {
    return std::tie(left.label, left.serialNumber) < std::tie(right.label, right.serialNumber);
  });
  numberLabels(tokens);
  return tokens;
}

sys::Result<Token> findToken(const Module& module, const Label& label) {
  sys::Result<std::vector<Token>> tokens = listTokens(module);
  if (!tokens) return tokens.failure();
  if (tokens.value().empty()) return sys::fail(ZELKM_ERR_NO_TOKEN_PRESENT, "no token is present");
  for (const Token& token : tokens.value()) {
    if (token.label == label) return token;
  }
  return sys::fail(ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST, "no token has the label \"%s\"",
                   label.c_str());
}

}  // namespace zel::km::token
