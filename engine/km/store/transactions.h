#ifndef ZEL_KM_STORE_TRANSACTIONS_H_
#define ZEL_KM_STORE_TRANSACTIONS_H_

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

#include "engine/sys/result.h"

/**
 * @file
 * Several operations on a store as one. The body answers a Status or a Result, and that is what the
 * transaction answers:
 *
 *     return inTransaction(store, [&]() -> Result<GeneratedKey> {
 *       Result<GeneratedKey> key = store.generateKey(256);
 *       ...
 *       return key;
 *     });
 */

namespace zel::km {

/** How a store runs something as one; inTransaction and inSnapshot are how it is asked to. */
class Transactions {
 public:
  using Run = std::function<sys::Status()>;

  /** Keeps what was changed meanwhile when the run succeeds; undoes it when it fails or throws. */
  virtual sys::Status runChanges(const Run& run) = 0;
  /** Shows the store as it is at one moment. A store that cannot runs it as it is. */
  virtual sys::Status runReading(const Run& run) { return run(); }

 protected:
  ~Transactions() = default;
};

namespace transactions {

/** Lets the store run the body, and answers what it answered. */
template <typename Body>
std::invoke_result_t<Body&> answerOf(Transactions& store,
                                     sys::Status (Transactions::*run)(const Transactions::Run&),
                                     Body& body) {
  std::optional<std::invoke_result_t<Body&>> answer;
  const sys::Status ran = (store.*run)([&]() -> sys::Status {
    answer.emplace(body());
    return *answer ? sys::success() : answer->failure();
  });
  if (!ran) return ran.failure();
  return *std::move(answer);
}

}  // namespace transactions

/**
 * inTransaction runs several changes as one: all of them stay when the body answers success, none
 * when it fails or throws. Nested transactions belong to the outermost.
 */
template <typename Body>
auto inTransaction(Transactions& store, Body&& body) {
  return transactions::answerOf(store, &Transactions::runChanges, body);
}

/**
 * inSnapshot runs the body on the store as it is at one moment: what others change meanwhile it
 * does not see.
 */
template <typename Body>
auto inSnapshot(Transactions& store, Body&& body) {
  return transactions::answerOf(store, &Transactions::runReading, body);
}

}  // namespace zel::km

#endif  // ZEL_KM_STORE_TRANSACTIONS_H_
