#include "tests/recorder/fault_plan.h"

namespace zel::test {

void FaultPlan::failCall(const std::string& functionOrGroup, int n) {
  callsLeft_[functionOrGroup] = n;
}

bool FaultPlan::fails(const char* group, const std::string& function) {
  const bool groupFails = counts(group);
  const bool functionFails = counts(function);
  return groupFails || functionFails;
}

bool FaultPlan::reached(const std::string& functionOrGroup) const {
  const auto planned = callsLeft_.find(functionOrGroup);
  return planned != callsLeft_.end() && planned->second <= 0;
}

bool FaultPlan::counts(const std::string& name) {
  const auto planned = callsLeft_.find(name);
  return planned != callsLeft_.end() && --planned->second == 0;
}

}  // namespace zel::test
