#include "engine/km/face/locators.h"

#include <utility>

#include "engine/sys/modified_utf8.h"

namespace zel::km {

sys::Status atLocator(const KeyDbLocator* locator, const LocatorCases& cases) {
  if (locator == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  switch (locator->type) {
    case KEYDB_LOCATOR_KEY_DATABASE:
      return cases.keyDatabase();
    case KEYDB_LOCATOR_TOKEN:
      return cases.token();
    case KEYDB_LOCATOR_CERTIFICATE_STORE:
      return cases.certificateStore();
    case KEYDB_LOCATOR_WEBDB:
      return cases.webDatabase ? cases.webDatabase() : sys::Failure{ZELKM_ERR_UNSUPPORTED_OPTION};
    default:
      return sys::Failure{ZELKM_ERR_INVALID_DATABASE_TYPE};
  }
}

sys::Result<std::string> moduleNameArgument(const char* moduleName) {
  if (moduleName == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return sys::toUtf8(moduleName);
}

sys::Result<token::TokenName> tokenAt(const KeyDbLocator& locator) {
  sys::Result<std::string> module = moduleNameArgument(locator.moduleName);
  if (!module) return module.failure();
  if (locator.tokenLabel == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  sys::Result<Label> label = Label::given(locator.tokenLabel);
  if (!label) return sys::Failure{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST};
  return token::TokenName{std::move(module).value(), std::move(label).value()};
}

sys::Result<std::string_view> certificateStoreAt(const KeyDbLocator& locator) {
  if (locator.tokenLabel == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return std::string_view(locator.tokenLabel);
}

}  // namespace zel::km
