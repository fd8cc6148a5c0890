#ifndef TESTS_RECORDER_FAULT_PLAN_H_
#define TESTS_RECORDER_FAULT_PLAN_H_

#include <map>
#include <string>

/**
 * @file
 * Which call fails. A plan counts the calls that can fail, by function and by group:
 *
 *     faults.failCall("GetMethodID", 2);      // the second GetMethodID
 *     faults.failCall(FaultPlan::kJni, 7);    // the seventh JNI call, whichever it is
 *     if (faults.fails(FaultPlan::kJni, "FindClass")) return nullptr;
 */

namespace zel::test {

class FaultPlan {
 public:
  static constexpr const char* kJni = "any JNI function";
  static constexpr const char* kLibrary = "any library operation";
  static constexpr const char* kAllocation = "any allocation";
  static constexpr const char* kReading = "any reading of a file";

  /** failCall() lets the n-th call from now on fail, n counted from 1. */
  void failCall(const std::string& functionOrGroup, int n);

  /** fails() counts a call and tells whether it is one that shall fail. */
  bool fails(const char* group, const std::string& function);

  /** reached() tells whether the call that was to fail was made. */
  bool reached(const std::string& functionOrGroup) const;

 private:
  bool counts(const std::string& name);

  std::map<std::string, int> callsLeft_;
};

}  // namespace zel::test

#endif  // TESTS_RECORDER_FAULT_PLAN_H_
