#ifndef ZEL_KM_STORE_STORE_H_
#define ZEL_KM_STORE_STORE_H_

#include <functional>

#include "engine/km/store/key_entries.h"
#include "engine/km/store/private_keys.h"
#include "engine/km/store/request_entries.h"
#include "engine/km/store/transactions.h"
#include "engine/sys/result.h"

/**
 * @file
 * The one face of everything that holds keys: key databases, tokens, certificate stores. An
 * operation of the C interface is written against it and knows no other:
 *
 *     int ZELKM_SetTrustStatus(int handle, const char* label, unsigned char trusted) {
 *       return onStore(__func__, handle, [&](Store& store) -> Status {
 *         return store.setTrusted(wanted, trusted != 0);
 *       });
 *     }
 *
 * Conventions:
 *  1. A changing call is all or nothing, and so is a run of them inside inTransaction.
 *  2. A store is used by one thread at a time: onStore sees to it.
 *  3. What a store cannot do is ZELKM_ERR_UNSUPPORTED_OPTION (80), what a token cannot do is
 *     ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT (141).
 */

namespace zel::km {

/** A Store has four sides; what needs one of them alone takes that. */
class Store : public KeyEntries, public RequestEntries, public PrivateKeys, public Transactions {
 public:
  Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
  virtual ~Store() = default;

  /**
   * Runs the body on the store that takes the certificates which come along with an entry: this
   * one, or the secondary key database of a token that was lent one.
   */
  virtual sys::Status onSignerStore(const std::function<sys::Status(Store&)>& body) {
    return body(*this);
  }
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_STORE_H_
