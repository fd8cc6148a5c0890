#include "tests/fake_jni/fake_jni.h"

#include "tests/fake_jni/function_table.h"
#include "tests/recorder/recorder.h"

namespace zel::test {

FakeJni::FakeJni() {
  environment_.functions = &functionTable();
  environment_.fake = this;
  nameReferences();
}

void FakeJni::nameReferences() {
  recorder().nameOfReference = [this](uint64_t value) { return heap.shownNumber(value); };
}

FakeJni::~FakeJni() { recorder().nameOfReference = nullptr; }

}  // namespace zel::test
