#ifndef ZEL_KM_TOKEN_CALL_TURN_H_
#define ZEL_KM_TOKEN_CALL_TURN_H_

#include <sys/types.h>

#include <chrono>
#include <mutex>
#include <string>

/**
 * @file
 * One caller of a PKCS #11 module at a time, over the threads of this process and the processes of
 * this user:
 *
 *     const CallTurn turn(library.turns);
 *     if (!turn.had()) return kNoTurn;
 *     rv = functions->C_FindObjects(...);
 *
 * Who has the turn may take it again, so that it can be kept over several calls.
 *
 * Modules lock for themselves, but not all do it well. SoftHSM 2.6, which keeps its tokens in
 * files, unlocks a file before it writes to it, so that a process that reads it meanwhile sees no
 * token, or one without flags, PIN or objects. And its locks are those of a whole process: a thread
 * that closes a file gives up the lock of another, and two threads that wait look like a deadlock.
 *
 * Processes take turns by a lock on a file in XDG_RUNTIME_DIR, or else in /tmp, one for each module
 * file. Where there can be none they do without. Other programs take no turns.
 */

namespace zel::km::token {

/** Turns are what the callers of one module take turns by. */
class Turns {
 public:
  /**
   * How long other processes may keep the turn. A key is made within one, which takes some tokens
   * ten seconds and more, and a PIN is typed in within one at a token's own pad.
   */
  static constexpr std::chrono::seconds kPatience{30};

  explicit Turns(const std::string& moduleFile, std::chrono::milliseconds patience = kPatience);
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

 private:
  friend class CallTurn;
  using Clock = std::chrono::steady_clock;

  bool begin();
  void end();
  bool lockFile(Clock::time_point deadline);
  bool lock(off_t place, Clock::time_point deadline);
  void unlock(off_t place) const;

  const std::string path_;
  const std::chrono::milliseconds patience_;
  std::recursive_mutex threads_;
  int depth_ = 0;
  bool had_ = false; /**< whether the turn that is under way was had from the other processes */
  Clock::time_point lastEnd_{};
  pid_t process_ = 0;
  int file_ = -1;
};

/** A CallTurn lasts as long as it is there. */
class CallTurn {
 public:
  explicit CallTurn(Turns& turns) : turns_(turns), had_(turns.begin()) {}
  ~CallTurn() { turns_.end(); }
  CallTurn(const CallTurn&) = delete;
  CallTurn& operator=(const CallTurn&) = delete;

  /**
   * False when other processes kept the turn for too long. The threads of this process are kept out
   * all the same.
   */
  bool had() const { return had_; }

 private:
  Turns& turns_;
  bool had_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_CALL_TURN_H_
