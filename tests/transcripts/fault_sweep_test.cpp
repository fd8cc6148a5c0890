#include "tests/transcripts/fault_sweep.h"

#include <ostream>
#include <sstream>

#include "bridge/frame/trace.h"

namespace zel::test {

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }

namespace {

Held heldNow() {
  Held held;
  for (const std::string& name : recorder().owned.held()) {
    ++held[name.substr(0, name.find_first_of("#\""))];
  }
  return held;
}

std::vector<Row> rows() {
  std::vector<Row> all;
  for (const std::vector<Row>& some :
       {systemRows(), keyDatabaseRows(), tokenRows(), storeRows(), legacyRows()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

class FaultSweep : public testing::TestWithParam<Row> {
 protected:
  /** Runs the native with the n-th call of the group failing; false when it ran through. */
  static bool runWithFault(const char* group, int n) {
    const Row& row = GetParam();
    Sweep sweep(row);
    recorder().faults.failCall(group, n);
    row.call(sweep);
    const bool failed = recorder().faults.reached(group);
    if (failed) {
      expectAtMostPermitted(row);
    } else {
      EXPECT_EQ(heldNow(), row.leaves);
    }
    EXPECT_TRUE(recorder().errors().empty());
    if (HasFailure()) ADD_FAILURE() << group << ", call " << n << ":\n" << recorder().transcript();
    return failed;
  }

  static void expectAtMostPermitted(const Row& row) {
    for (const auto& [kind, count] : heldNow()) {
      const auto of = [&kind = kind](const Held& held) {
        const auto found = held.find(kind);
        return found == held.end() ? 0 : found->second;
      };
      EXPECT_LE(count, of(row.leaves) + of(row.mayLeave)) << kind << " stays held";
    }
  }

  /** Fails call after call until none is left to fail. */
  void sweepOver(const char* group) {
    int n = 1;
    while (runWithFault(group, n) && !HasFailure()) ++n;
    RecordProperty("failing_calls", n - 1);
  }
};

TEST_P(FaultSweep, SurvivesAnyJniCallFailing) { sweepOver(FaultPlan::kJni); }

TEST_P(FaultSweep, SurvivesAnyOperationFailing) { sweepOver(FaultPlan::kLibrary); }

TEST_P(FaultSweep, SurvivesAnyAllocationFailing) { sweepOver(FaultPlan::kAllocation); }

/** Without the trace a native does exactly what it does with it. */
TEST_P(FaultSweep, DoesTheSameWithoutTheTrace) {
  std::string untraced;
  {
    Sweep sweep(GetParam());
    bridge::debugMsgEnv = nullptr;
    GetParam().call(sweep);
    untraced = recorder().transcript();
  }
  Sweep sweep(GetParam());
  GetParam().call(sweep);
  std::string withoutTraces;
  std::istringstream traced(recorder().transcript());
  for (std::string line; std::getline(traced, line);) {
    if (!line.starts_with("trace ")) withoutTraces += line + "\n";
  }
  EXPECT_EQ(untraced, withoutTraces);
}

/** What comes with an error may have to stay behind, but is not used wrongly. */
TEST_P(FaultSweep, SurvivesOutputsThatComeWithAnError) {
  bool failed = true;
  for (int n = 1; failed && !HasFailure(); ++n) {
    Sweep sweep(GetParam());
    library().outputsDespiteErrors = true;
    recorder().faults.failCall(FaultPlan::kLibrary, n);
    GetParam().call(sweep);
    failed = recorder().faults.reached(FaultPlan::kLibrary);
  }
}

INSTANTIATE_TEST_SUITE_P(Natives, FaultSweep, testing::ValuesIn(rows()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace zel::test
