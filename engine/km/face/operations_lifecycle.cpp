// Stores made, opened and closed.

#include <memory>
#include <optional>
#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/certstore/certificate_store.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/handle_table.h"
#include "engine/km/face/locators.h"
#include "engine/km/face/operation.h"
#include "engine/km/keydb/creation.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/token/token_store.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

using namespace zel;
using namespace zel::km;

namespace {

sys::Status handOut(sys::Result<std::unique_ptr<Store>> store, int* handle) {
  if (!store) return store.failure();
  *handle = HandleTable::instance().add(std::move(store.value()));
  return sys::success();
}

sys::Status create(const char* fileName, const char* password, const NewDatabase& settings,
                   int* handle) {
  if (sys::Status output = requireOutput(handle); !output) return output;
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  sys::Result<sys::Password> given = sys::Password::given(password);
  if (!given) return given.failure();
  return handOut(createKeyDatabase(name.value(), given.value(), settings), handle);
}

sys::Status open(const char* fileName, const char* password, int* handle) {
  if (sys::Status output = requireOutput(handle); !output) return output;
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  sys::Result<std::optional<sys::Password>> given = sys::Password::givenOrKept(password);
  if (!given) return given.failure();
  return handOut(KeyDatabase::open(name.value(), given.value()), handle);
}

sys::Status openToken(const KeyDbLocator& locator, int* handle) {
  if (sys::Status output = requireOutput(handle); !output) return output;
  const sys::Result<token::TokenName> name = tokenAt(locator);
  if (!name) return name.failure();
  const sys::Result<sys::Password> pin = sys::Password::givenOrEmpty(locator.password);
  if (!pin) return pin.failure();
  return handOut(token::TokenStore::open(name.value(), pin.value()), handle);
}

sys::Status openCertificateStore(const KeyDbLocator& locator, int* handle) {
  if (sys::Status output = requireOutput(handle); !output) return output;
  const sys::Result<std::string_view> name = certificateStoreAt(locator);
  if (!name) return name.failure();
  const sys::Result<sys::Password> password = sys::Password::givenOrEmpty(locator.password);
  if (!password) return password.failure();
  return handOut(certstore::CertificateStore::open(name.value(), password.value()), handle);
}

}  // namespace

int ZELKM_CreateNewKeyDb(const char* fileName, const char* password, int64_t lifetime,
                         int* handle) {
  return answering(__func__, [&] {
    return create(fileName, password, {.lifetime = lifetime, .approvedOnly = false}, handle);
  });
}

int ZELKM_CreateNewKeyDbFIPS(const char* fileName, const char* password, int64_t lifetime,
                             int* handle) {
  return answering(__func__, [&] {
    return create(fileName, password, {.lifetime = lifetime, .approvedOnly = true}, handle);
  });
}

int ZELKM_OpenKeyDb(const char* fileName, const char* password, int* handle) {
  return answering(__func__, [&] { return open(fileName, password, handle); });
}

int ZELKM_OpenKeyDbX(const KeyDbLocator* locator, int* handle) {
  return answering(__func__, [&] {
    return atLocator(
        locator, {.keyDatabase = [&] { return open(locator->fileName, locator->password, handle); },
                  .token = [&] { return openToken(*locator, handle); },
                  .certificateStore = [&] { return openCertificateStore(*locator, handle); }});
  });
}

int ZELKM_CloseKeyDb(int handle) {
  return answering(__func__, [&] { return HandleTable::instance().close(handle); });
}
