#include "engine/km/face/locators.h"

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

}  // namespace zel::km
