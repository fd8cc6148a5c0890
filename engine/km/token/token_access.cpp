#include "engine/km/token/token_access.h"

#include <utility>

#include "engine/km/token/call_turn.h"

namespace zel::km::token {

namespace {

struct FoundToken {
  std::shared_ptr<Module> module;
  Token token;
};

sys::Result<FoundToken> locateToken(const char* moduleName, const char* tokenLabel) {
  if (moduleName == nullptr || tokenLabel == nullptr) {
    return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  }
  sys::Result<std::shared_ptr<Module>> module = Module::open(moduleName);
  if (!module) return module.failure();
  sys::Result<Token> token = findToken(*module.value(), tokenLabel);
  if (!token) return token.failure();
  return FoundToken{.module = std::move(module).value(), .token = std::move(token).value()};
}

}  // namespace

sys::Result<std::vector<Label>> listTokenLabels(const char* moduleName) {
  const CallTurn turn;
  if (moduleName == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  sys::Result<std::shared_ptr<Module>> module = Module::open(moduleName);
  if (!module) return module.failure();
  sys::Result<std::vector<Token>> tokens = listTokens(*module.value());
  if (!tokens) return tokens.failure();
  std::vector<Label> labels;
  labels.reserve(tokens.value().size());
  for (Token& token : tokens.value()) labels.push_back(std::move(token.label));
  return labels;
}

sys::Result<bool> isPinRequired(const char* moduleName, const char* tokenLabel) {
  const CallTurn turn;
  sys::Result<FoundToken> found = locateToken(moduleName, tokenLabel);
  if (!found) return found.failure();
  return found.value().token.wantsPin();
}

sys::Result<std::unique_ptr<Session>> openToken(const char* moduleName, const char* tokenLabel,
                                                const char* password) {
  const CallTurn turn;
  sys::Result<FoundToken> found = locateToken(moduleName, tokenLabel);
  if (!found) return found.failure();
  return Session::open(std::move(found.value().module), std::move(found.value().token), password);
}

sys::Status changeTokenPin(const char* moduleName, const char* tokenLabel, const char* oldPassword,
                           const char* newPassword) {
  const CallTurn turn;
  if (newPassword == nullptr) return sys::Failure{ZELKM_ERR_NEW_PASSWORD};
  sys::Result<std::unique_ptr<Session>> session = openToken(moduleName, tokenLabel, oldPassword);
  if (!session) return session.failure();
  return session.value()->changePin(newPassword);
}

}  // namespace zel::km::token
