#ifndef ZEL_TESTS_ENGINE_STORES_STORE_KINDS_H_
#define ZEL_TESTS_ENGINE_STORES_STORE_KINDS_H_

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "engine/km/store/store.h"
#include "tests/engine/stores/refusals.h"

/**
 * @file
 * The four kinds of stores that there are, for suites that run on all of them or on those that do
 * what the suite is about:
 *
 *     INSTANTIATE_TEST_SUITE_P(, Entries, testing::ValuesIn(allStores()), storeName);
 *     INSTANTIATE_TEST_SUITE_P(, Requests,
 * testing::ValuesIn(storesThatDo(Operation::insertRequest)), storeName);
 */

namespace zel::km {

/** Where a new and empty store lies. */
class StorePlace {
 public:
  StorePlace() = default;
  StorePlace(const StorePlace&) = delete;
  StorePlace& operator=(const StorePlace&) = delete;
  virtual ~StorePlace() = default;

  /** Opens the store, beside others that have it open. */
  virtual sys::Result<std::unique_ptr<Store>> open() const = 0;
};

/** The order in which a store lists its labels. */
enum class Order { ofArrival, ofLabels };

struct StoreKind {
  const char* name;
  std::unique_ptr<StorePlace> (*newPlace)();
  const char* password; /**< that private keys are encrypted under on their way in and out */
  Order order;
  bool takesSnapshots;
  bool keepsRequests; /**< as they are; else it keeps their keys and signs them anew */
  const std::vector<Refusal>* refusals;

  /** ZELKM_OK for what the store does. */
  int codeOf(Operation operation) const;
  bool does(Operation operation) const { return codeOf(operation) == ZELKM_OK; }
};

/** Pointers are what the suites are instantiated with. */
using StoreKinds = std::vector<const StoreKind*>;

StoreKinds allStores();
StoreKinds storesThatDo(Operation operation);
StoreKinds storesThatTakeSnapshots();
StoreKinds storesThatKeepRequests();

std::string storeName(const testing::TestParamInfo<const StoreKind*>& info);
inline void PrintTo(const StoreKind* kind, std::ostream* out) { *out << kind->name; }

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_STORES_STORE_KINDS_H_
