#ifndef TESTS_RECORDER_RECORDER_H_
#define TESTS_RECORDER_RECORDER_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/recorder/fault_plan.h"
#include "tests/recorder/ownership.h"

/**
 * @file
 * The one ordered record of what a native does.
 *
 * The scripted JNI environment, the double of the key management library, the watched C library
 * and the trace streams all write their events here, one line each, so that a test compares a
 * whole native with a whole text. There is one recorder per process because the functions that
 * write to it are plain C functions without a context of their own:
 *
 *     recorder().event("GetObjectClass(this) = class basic/KeyItem");
 *     recorder().error("released twice");  // a line, and a failure of the test whatever it expects
 *     EXPECT_EQ(recorder().transcript(), expected);
 */

namespace zel::test {

class Recorder {
 public:
  /** event() adds a line. */
  void event(std::string line);

  /** error() adds a line that no correct native brings about; see errors(). */
  void error(const std::string& what);

  /**
   * streamed() takes what was written to a stream and adds an event for each finished line, under
   * the stream's name. A line that has no end when something else happens is marked as such.
   */
  void streamed(const char* stream, std::string_view text);

  /** transcript() is all lines so far, each with a line end. */
  std::string transcript();

  /** errors() are the lines of error(). */
  const std::vector<std::string>& errors() const { return errors_; }

  /** reset() forgets everything, for the next test. */
  void reset();

  /** Puts a name in the place of a reference that was printed as a hexadecimal number. */
  std::function<std::string(uint64_t)> nameOfReference;

  Ownership owned;
  FaultPlan faults;

 private:
  void endStreamedLine();
  std::string withReferencesNamed(std::string_view text) const;

  std::vector<std::string> lines_;
  std::vector<std::string> errors_;
  std::string stream_;
  std::string unfinished_;
};

Recorder& recorder();

/**
 * While a BridgeCall lives, calls to malloc, fopen and the like, and writes to the standard streams
 * are the bridge's own and are recorded.
 */
class BridgeCall {
 public:
  BridgeCall();
  ~BridgeCall();
  BridgeCall(const BridgeCall&) = delete;
  BridgeCall& operator=(const BridgeCall&) = delete;

 private:
  FILE* standardError_;
  FILE* standardOutput_;
};

/** While a HostCode lives, a double is at work: what it allocates is not the bridge's. */
class HostCode {
 public:
  HostCode();
  ~HostCode();
  HostCode(const HostCode&) = delete;
  HostCode& operator=(const HostCode&) = delete;

 private:
  bool bridgeWasRunning_;
};

/** bridgeIsRunning() tells whether the code that runs now is the bridge's. */
bool bridgeIsRunning();

}  // namespace zel::test

#endif  // TESTS_RECORDER_RECORDER_H_
