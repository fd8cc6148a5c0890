#ifndef ZEL_KM_TOKEN_SNAPSHOT_H_
#define ZEL_KM_TOKEN_SNAPSHOT_H_

#include <optional>

#include "engine/km/token/session.h"
#include "engine/km/token/token_view.h"
#include "engine/sys/result.h"

/**
 * @file
 * A token as it is in one turn, read when it is first asked for and not again:
 *
 *     Snapshot snapshot(session, newKeys);
 *     if (Status begun = snapshot.begun(); !begun) return begun;
 *     Result<TokenView*> view = snapshot.view();
 */

namespace zel::km::token {

class Snapshot {
 public:
  /** New keys are told as to a TokenView. */
  Snapshot(const Session& session, Handles newKeys);
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

  /** ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED (142): other processes keep their turns. */
  sys::Status begun() const;

  sys::Result<TokenView*> view();
  /** Nothing before it was asked for. */
  const std::optional<TokenView>& viewSoFar() const { return view_; }
  /** Takes note of a key pair that was made meanwhile. */
  void addNewKey(const KeyPairObjects& pair);

 private:
  const CallTurn turn_;
  const Session& session_;
  Handles newKeys_;
  std::optional<TokenView> view_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_SNAPSHOT_H_
