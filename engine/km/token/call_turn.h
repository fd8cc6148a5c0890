#ifndef ZEL_KM_TOKEN_CALL_TURN_H_
#define ZEL_KM_TOKEN_CALL_TURN_H_

/**
 * @file
 * One caller of PKCS #11 modules at a time, over the threads of this process and the processes of
 * this user:
 *
 *     const CallTurn turn;
 *     rv = functions->C_FindObjects(...);
 *
 * Who has the turn may take it again, so that it can be kept over several calls.
 *
 * Modules lock for themselves, but not all do it well. SoftHSM 2.6, which keeps its tokens in
 * files, unlocks a file before it writes to it, so that a process that reads it meanwhile sees no
 * token, or one without flags, PIN or objects. And its locks are those of a whole process: a thread
 * that closes a file gives up the lock of another, and two threads that wait look like a deadlock.
 *
 * Processes take turns by a lock on a file in XDG_RUNTIME_DIR, or else in /tmp. Where there can be
 * none they do without. Other programs take no turns.
 */

namespace zel::km::token {

class CallTurn {
 public:
  CallTurn();
  ~CallTurn();
  CallTurn(const CallTurn&) = delete;
  CallTurn& operator=(const CallTurn&) = delete;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_CALL_TURN_H_
