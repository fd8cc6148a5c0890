#include "engine/km/token/token_access.h"

#include <type_traits>
#include <utility>

#include "engine/km/token/library.h"

namespace zel::km::token {

namespace {

/** Runs a body on the module of that name, in one turn. */
template <typename Body>
auto onModule(const char* moduleName, Body body)
    -> std::invoke_result_t<Body, std::shared_ptr<Module>> {
  if (moduleName == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  sys::Result<NamedModule> named = loadModule(moduleName);
  if (!named) return named.failure();
  const CallTurn turn(named.value().library->turns);
  sys::Result<std::shared_ptr<Module>> module = Module::open(named.value());
  if (!module) return module.failure();
  return body(std::move(module).value());
}

/** Runs a body on the token of that label, in one turn. */
template <typename Body>
auto onToken(const char* moduleName, const char* tokenLabel, Body body)
    -> std::invoke_result_t<Body, std::shared_ptr<Module>, Token> {
  using Answer = std::invoke_result_t<Body, std::shared_ptr<Module>, Token>;
  if (tokenLabel == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return onModule(moduleName, [&](std::shared_ptr<Module> module) -> Answer {
    sys::Result<Token> token = findToken(*module, tokenLabel);
    if (!token) return token.failure();
    return body(std::move(module), std::move(token).value());
  });
}

}  // namespace

sys::Result<std::vector<Label>> listTokenLabels(const char* moduleName) {
  using Labels = sys::Result<std::vector<Label>>;
  return onModule(moduleName, [](const std::shared_ptr<Module>& module) -> Labels {
    sys::Result<std::vector<Token>> tokens = listTokens(*module);
    if (!tokens) return tokens.failure();
    std::vector<Label> labels;
    labels.reserve(tokens.value().size());
    for (Token& token : tokens.value()) labels.push_back(std::move(token.label));
    return labels;
  });
}

sys::Result<bool> isPinRequired(const char* moduleName, const char* tokenLabel) {
  return onToken(moduleName, tokenLabel,
                 [](const std::shared_ptr<Module>&, const Token& token) -> sys::Result<bool> {
                   return token.wantsPin();
                 });
}

sys::Result<std::unique_ptr<Session>> openToken(const char* moduleName, const char* tokenLabel,
                                                const char* password) {
  return onToken(moduleName, tokenLabel, [&](std::shared_ptr<Module> module, Token token) {
    return Session::open(std::move(module), std::move(token), password);
  });
}

sys::Status changeTokenPin(const char* moduleName, const char* tokenLabel, const char* oldPassword,
                           const char* newPassword) {
  if (newPassword == nullptr) return sys::Failure{ZELKM_ERR_NEW_PASSWORD};
  return onToken(moduleName, tokenLabel,
                 [&](std::shared_ptr<Module> module, Token token) -> sys::Status {
                   sys::Result<std::unique_ptr<Session>> session =
                       Session::open(std::move(module), std::move(token), oldPassword);
                   if (!session) return session.failure();
                   return session.value()->changePin(newPassword);
                 });
}

}  // namespace zel::km::token
