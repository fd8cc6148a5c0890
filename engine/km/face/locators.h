#ifndef ZEL_KM_FACE_LOCATORS_H_
#define ZEL_KM_FACE_LOCATORS_H_

#include <functional>
#include <string>
#include <string_view>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/token/token_access.h"
#include "engine/sys/result.h"

/**
 * @file
 * Locators: what kind of store a caller points to.
 *
 *     return atLocator(locator, {.keyDatabase = [&] { return open(locator->fileName); },
 *                                .token = [&] { return openToken(locator->moduleName); },
 *                                .certificateStore = [&] { return openStore(); }});
 */

namespace zel::km {

/** What an operation does with each kind of store. */
struct LocatorCases {
  std::function<sys::Status()> keyDatabase;
  std::function<sys::Status()> token;
  std::function<sys::Status()> certificateStore;
  /** The key databases of another Java class; without a case of their own they are refused. */
  std::function<sys::Status()> webDatabase = {};
};

/**
 * Runs the case of the kind that the locator names.
 *  - ZELKM_ERR_NULL_PARAMETER (66): no locator.
 *  - ZELKM_ERR_UNSUPPORTED_OPTION (80): a kind that the operation has no case for.
 *  - ZELKM_ERR_INVALID_DATABASE_TYPE (134): no kind of store.
 */
sys::Status atLocator(const KeyDbLocator* locator, const LocatorCases& cases);

/** The name of a module. ZELKM_ERR_NULL_PARAMETER (66), ZELKM_ERR_PARAMETER (65). */
sys::Result<std::string> moduleNameArgument(const char* moduleName);

/**
 * The token that a locator names. The codes of moduleNameArgument, and
 * ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST (137) for a text that no token has as its label.
 */
sys::Result<token::TokenName> tokenAt(const KeyDbLocator& locator);

/** The certificate store that a locator names. ZELKM_ERR_NULL_PARAMETER (66) for no name. */
sys::Result<std::string_view> certificateStoreAt(const KeyDbLocator& locator);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_LOCATORS_H_
