#ifndef ZEL_KM_TOKEN_SECONDARY_H_
#define ZEL_KM_TOKEN_SECONDARY_H_

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

#include "engine/km/store/store.h"
#include "engine/sys/result.h"

/**
 * @file
 * The key database that is lent to a token, its secondary:
 *
 *     if (secondary.isLent()) return secondary.use([&](Store& store) { return store.keyLabels();
 * });
 */

namespace zel::km::token {

/** StoreOnLoan runs a body on a store that others use too, alone on it meanwhile, or fails. */
using StoreOnLoan = std::function<sys::Status(const std::function<sys::Status(Store&)>&)>;

class Secondary {
 public:
  void lend(StoreOnLoan loan) { loan_ = std::move(loan); }
  void giveBack() { loan_ = nullptr; }
  bool isLent() const { return static_cast<bool>(loan_); }

  /** Runs a body on the key database, and answers what it answers. Only when there is one. */
  template <typename Body>
  std::invoke_result_t<Body, Store&> use(Body body) {
    std::optional<std::invoke_result_t<Body, Store&>> answer;
    const sys::Status had = hold([&](Store& store) -> sys::Status {
      answer.emplace(body(store));
      return sys::success();
    });
    if (!answer) return had.failure();
    return *std::move(answer);
  }

  /** Runs something as a transaction of the key database, which it holds on to; or as it is. */
  sys::Status runChanges(const Transactions::Run& run);

 private:
  sys::Status hold(const std::function<sys::Status(Store&)>& body);

  StoreOnLoan loan_;      /**< empty when none is lent */
  Store* held_ = nullptr; /**< the key database, while a transaction holds on to it */
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_SECONDARY_H_
