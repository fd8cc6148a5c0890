#include "tests/engine/stores/store_kinds.h"

#include <algorithm>
#include <array>
#include <functional>

#include "engine/km/certstore/certificate_store.h"
#include "engine/km/keydb/creation.h"
#include "engine/km/keydb/key_database.h"
#include "engine/km/token/token_store.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/makers.h"

namespace zel::km {

namespace {

constexpr const char* kDatabasePassword = "correct horse";

class DatabasePlace : public StorePlace {
 public:
  DatabasePlace() {
    EXPECT_TRUE(createKeyDatabase(fileName(file_), password(kDatabasePassword), {}));
  }
  sys::Result<std::unique_ptr<Store>> open() const override {
    return KeyDatabase::open(fileName(file_), password(kDatabasePassword));
  }

 private:
  cms::TemporaryFolder folder_;
  const std::string file_ = folder_.path("test.kdb");
};

class SoftHsmPlace : public StorePlace {
 public:
  SoftHsmPlace() { token::SoftHsm(folder_).addToken(token::kSoftHsmLabel); }
  sys::Result<std::unique_ptr<Store>> open() const override {
    return token::TokenStore::open(
        {.module = token::kSoftHsmModule, .label = Label::ofName(token::kSoftHsmLabel)},
        password(token::kPin));
  }

 private:
  cms::TemporaryFolder folder_;
};

class NssPlace : public StorePlace {
 public:
  sys::Result<std::unique_ptr<Store>> open() const override {
    return token::TokenStore::open(
        {.module = nss_.moduleName(), .label = Label::ofName(token::kNssLabel)},
        password(token::kPin));
  }

 private:
  cms::TemporaryFolder folder_;
  const token::NssDatabase nss_{folder_};
};

class CertificateStorePlace : public StorePlace {
 public:
  sys::Result<std::unique_ptr<Store>> open() const override {
    return certstore::CertificateStore::open("CurrentUser/My", {});
  }

 private:
  cms::TemporaryFolder home_;
  const cms::HomeVariable homeVariable_{home_.path("").c_str()};
};

template <typename Place>
std::unique_ptr<StorePlace> newPlace() {
  return std::make_unique<Place>();
}

const std::array kKinds = {
    StoreKind{.name = "keyDatabase",
              .newPlace = newPlace<DatabasePlace>,
              .password = kDatabasePassword,
              .order = Order::ofArrival,
              .takesSnapshots = true,
              .keepsRequests = true,
              .refusals = &kRefusedByKeyDatabases},
    StoreKind{.name = "softHsm",
              .newPlace = newPlace<SoftHsmPlace>,
              .password = token::kPin,
              .order = Order::ofLabels,
              .takesSnapshots = false,
              .keepsRequests = true,
              .refusals = &kRefusedBySoftHsm},
    StoreKind{.name = "nss",
              .newPlace = newPlace<NssPlace>,
              .password = token::kPin,
              .order = Order::ofLabels,
              .takesSnapshots = false,
              .keepsRequests = false,
              .refusals = &kRefusedByNss},
    StoreKind{.name = "certificateStore",
              .newPlace = newPlace<CertificateStorePlace>,
              .password = "",
              .order = Order::ofArrival,
              .takesSnapshots = false,
              .keepsRequests = false,
              .refusals = &kRefusedByCertificateStores},
};

StoreKinds kindsThat(const std::function<bool(const StoreKind&)>& test) {
  StoreKinds found;
  for (const StoreKind& kind : kKinds) {
    if (test(kind)) found.push_back(&kind);
  }
  return found;
}

}  // namespace

int StoreKind::codeOf(Operation operation) const {
  const auto refusal = std::ranges::find(*refusals, operation, &Refusal::operation);
  return refusal == refusals->end() ? ZELKM_OK : refusal->code;
}

StoreKinds allStores() {
  return kindsThat([](const StoreKind&) { return true; });
}

StoreKinds storesThatDo(Operation operation) {
  return kindsThat([&](const StoreKind& kind) { return kind.does(operation); });
}

StoreKinds storesThatTakeSnapshots() {
  return kindsThat([](const StoreKind& kind) { return kind.takesSnapshots; });
}

StoreKinds storesThatKeepRequests() {
  return kindsThat([](const StoreKind& kind) { return kind.keepsRequests; });
}

std::string storeName(const testing::TestParamInfo<const StoreKind*>& info) {
  return info.param->name;
}

}  // namespace zel::km
