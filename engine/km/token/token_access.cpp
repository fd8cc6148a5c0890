#include "engine/km/token/token_access.h"

#include <type_traits>
#include <utility>

#include "engine/km/token/library.h"

namespace zel::km::token {

namespace {

/** Runs a body on the module of that name, in one turn. */
template <typename Body>
auto onModule(const std::string& name, Body body)
    -> std::invoke_result_t<Body, std::shared_ptr<Module>> {
  sys::Result<NamedModule> named = loadModule(name);
  if (!named) return named.failure();
  const CallTurn turn(named.value().library->turns);
  sys::Result<std::shared_ptr<Module>> module = Module::open(named.value());
  if (!module) return module.failure();
  return body(std::move(module).value());
}

/** Runs a body on the token of that label, in one turn. */
template <typename Body>
auto onToken(const TokenName& name, Body body)
    -> std::invoke_result_t<Body, std::shared_ptr<Module>, Token> {
  using Answer = std::invoke_result_t<Body, std::shared_ptr<Module>, Token>;
  return onModule(name.module, [&](std::shared_ptr<Module> module) -> Answer {
    sys::Result<Token> token = findToken(*module, name.label);
    if (!token) return token.failure();
    return body(std::move(module), std::move(token).value());
  });
}

}  // namespace

sys::Result<std::vector<Label>> listTokenLabels(const std::string& module) {
  using Labels = sys::Result<std::vector<Label>>;
  return onModule(module, [](const std::shared_ptr<Module>& opened) -> Labels {
    sys::Result<std::vector<Token>> tokens = listTokens(*opened);
    if (!tokens) return tokens.failure();
    std::vector<Label> labels;
    labels.reserve(tokens.value().size());
    for (Token& token : tokens.value()) labels.push_back(std::move(token.label));
    return labels;
  });
}

sys::Result<bool> isPinRequired(const TokenName& name) {
  return onToken(name, [](const std::shared_ptr<Module>&, const Token& token) -> sys::Result<bool> {
    return token.wantsPin();
  });
}

sys::Result<std::unique_ptr<Session>> openToken(const TokenName& name, const sys::Password& pin) {
  return onToken(name, [&](std::shared_ptr<Module> module, Token token) {
    return Session::open(std::move(module), std::move(token), pin);
  });
}

sys::Status changeTokenPin(const TokenName& name, const sys::Password& oldPin,
                           const sys::Password& newPin) {
  return onToken(name, [&](std::shared_ptr<Module> module, Token token) -> sys::Status {
    sys::Result<std::unique_ptr<Session>> session =
        Session::open(std::move(module), std::move(token), oldPin);
    if (!session) return session.failure();
    return session.value()->changePin(newPin);
  });
}

}  // namespace zel::km::token
