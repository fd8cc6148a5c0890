// The passwords of stores: asked for, changed, and kept beside a key database.

#include <optional>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/certstore/store_folder.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/locators.h"
#include "engine/km/face/operation.h"
#include "engine/km/keydb/passwords.h"
#include "engine/km/token/token_access.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

using namespace zel;
using namespace zel::km;

namespace {

sys::Status change(const char* fileName, const char* oldPassword, const char* newPassword,
                   int64_t lifetime) {
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  if (newPassword == nullptr) return sys::Failure{ZELKM_ERR_NEW_PASSWORD};
  sys::Result<std::optional<sys::Password>> old = sys::Password::givenOrKept(oldPassword);
  if (!old) return old.failure();
  sys::Result<sys::Password> wanted = sys::Password::given(newPassword);
  if (!wanted) return wanted.failure();
  return changeDatabasePassword(name.value(), old.value(), wanted.value(), lifetime);
}

sys::Status stash(const char* fileName, const char* password) {
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  sys::Result<sys::Password> given = sys::Password::given(password);
  if (!given) return given.failure();
  return stashDatabasePassword(name.value(), given.value());
}

sys::Status askFile(const char* fileName, unsigned char* required) {
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  sys::Result<bool> needed = needsPassword(name.value());
  if (!needed) return needed.failure();
  *required = needed.value() ? 1 : 0;
  return sys::success();
}

sys::Status askToken(const KeyDbLocator& locator, unsigned char* required) {
  const sys::Result<token::TokenName> name = tokenAt(locator);
  if (!name) return name.failure();
  const sys::Result<bool> needed = token::isPinRequired(name.value());
  if (!needed) return needed.failure();
  *required = needed.value() ? 1 : 0;
  return sys::success();
}

sys::Status changePin(const KeyDbLocator& locator) {
  const sys::Result<token::TokenName> name = tokenAt(locator);
  if (!name) return name.failure();
  if (locator.newPassword == nullptr) return sys::Failure{ZELKM_ERR_NEW_PASSWORD};
  const sys::Result<sys::Password> oldPin = sys::Password::givenOrEmpty(locator.password);
  if (!oldPin) return oldPin.failure();
  const sys::Result<sys::Password> newPin = sys::Password::given(locator.newPassword);
  if (!newPin) return newPin.failure();
  return token::changeTokenPin(name.value(), oldPin.value(), newPin.value());
}

/** ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST (137) when no certificate store has the name. */
sys::Status requireStore(const KeyDbLocator& locator) {
  const sys::Result<std::string_view> name = certificateStoreAt(locator);
  if (!name) return name.failure();
  const sys::Result<certstore::StoreFolder> folder = certstore::StoreFolder::of(name.value());
  return folder ? sys::success() : folder.failure();
}

/** A certificate store never has a password. */
sys::Status askStore(const KeyDbLocator& locator, unsigned char* required) {
  if (sys::Status known = requireStore(locator); !known) return known;
  *required = 0;
  return sys::success();
}

sys::Status changeStore(const KeyDbLocator& locator) {
  if (sys::Status known = requireStore(locator); !known) return known;
  return sys::Failure{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED};
}

}  // namespace

int ZELKM_ChangeKeyDbPwd(const char* fileName, const char* oldPassword, const char* newPassword,
                         int64_t lifetime) {
  return answering(__func__, [&] { return change(fileName, oldPassword, newPassword, lifetime); });
}

int ZELKM_ChangeKeyDbPwdX(const KeyDbLocator* locator) {
  return answering(__func__, [&] {
    return atLocator(
        locator,
        {.keyDatabase =
             [&] { return change(locator->fileName, locator->password, locator->newPassword, 0); },
         .token = [&] { return changePin(*locator); },
         .certificateStore = [&] { return changeStore(*locator); }});
  });
}

int ZELKM_StashKeyDbPwd(const char* fileName, const char* password) {
  return answering(__func__, [&] { return stash(fileName, password); });
}

int ZELKM_IsPasswordRequired(const KeyDbLocator* locator, unsigned char* required) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(required); !given) return given;
    const auto askDatabase = [&] { return askFile(locator->fileName, required); };
    return atLocator(locator, {.keyDatabase = askDatabase,
                               .token = [&] { return askToken(*locator, required); },
                               .certificateStore = [&] { return askStore(*locator, required); },
                               .webDatabase = askDatabase});
  });
}
