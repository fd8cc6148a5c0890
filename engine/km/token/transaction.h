#ifndef ZEL_KM_TOKEN_TRANSACTION_H_
#define ZEL_KM_TOKEN_TRANSACTION_H_

#include <deque>
#include <map>

#include "engine/km/token/plan.h"
#include "engine/km/token/session.h"
#include "engine/km/token/snapshot.h"
#include "engine/km/token/token_view.h"
#include "engine/sys/result.h"

/**
 * @file
 * A run of changes to a token, in one turn and on one view of it, that is done as a whole or not at
 * all:
 *
 *     Transaction transaction(session, newKeys);
 *     if (Status begun = transaction.begun(); !begun) return begun;
 *     Result<TokenView*> view = transaction.token().view();
 *     ...
 *     if (Status done = transaction.apply(std::move(plan)); !done) return done;
 *     return transaction.commit();
 *
 * Tokens have no transactions, so what is made is noted, to be destroyed if need be, attributes get
 * their old values back, and what is destroyed goes last, when nothing can fail but the destroying
 * itself.
 */

namespace zel::km::token {

class Transaction {
 public:
  /** New keys are told as to a TokenView. */
  Transaction(const Session& session, Handles newKeys);
  /** Undoes what was not committed, last change first. What cannot be undone is traced. */
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /** ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): other processes keep their turns. */
  sys::Status begun() const { return token_.begun(); }

  /** The token as it is now: what is done here it follows. */
  Snapshot& token() { return token_; }

  /** Carries out a plan that was made on the view: all of it, or nothing. */
  sys::Status apply(Plan plan);

  /** Destroys what was removed. Nothing is undone any more. */
  sys::Status commit();

 private:
  class Savepoint;

  /** How to undo one change: destroy what was made, or give an attribute its old value back. */
  struct Undo {
    CK_OBJECT_HANDLE made = CK_INVALID_HANDLE;
    CK_OBJECT_HANDLE changed = CK_INVALID_HANDLE;
    Template oldValue = {};
  };

  /** What the objects of a plan are on the token. */
  using Made = std::map<CK_OBJECT_HANDLE, CK_OBJECT_HANDLE>;

  sys::Status apply(Plan& plan, Made& made);
  CK_RV carryOut(CreateObject& action, Made& made);
  CK_RV carryOut(SetAttribute& action, Made& made);
  static CK_RV carryOut(RemoveObject& action, Made& made);
  static CK_RV carryOut(RestoreKey& action, Made& made);
  static CK_RV carryOut(UseNewKey& action, Made& made);
  bool undo(const Undo& change) const;
  void undoTo(std::size_t mark) noexcept;

  const Session& session_;
  Snapshot token_;            // its turn lasts: what others would see in between is half an entry
  TokenView* view_ = nullptr; /**< the snapshot's, while a plan is carried out */
  std::deque<Undo> undos_;    /**< a deque: growing does not move what is in it */
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TRANSACTION_H_
