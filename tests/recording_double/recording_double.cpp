#include "tests/recording_double/recording_double.h"

#include <cstdlib>

#include "tests/recording_double/library_call.h"

namespace zel::test {

namespace {

const void* asKey(int handle) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a key of the ledger, never dereferenced.
  return reinterpret_cast<const void*>(static_cast<intptr_t>(handle));
}

}  // namespace

RecordingDouble::~RecordingDouble() {
  for (void* block : kept) std::free(block);
}

RecordingDouble& library() {
  static RecordingDouble instance;
  return instance;
}

void resetLibrary() {
  library().~RecordingDouble();
  new (&library()) RecordingDouble();
}

void LibraryCall::checkOpen(OpenHandle handle) {
  if (!recorder().owned.holds(Kind::kHandle, asKey(handle.number)))
    wrong("is given no open handle");
}

int OperationCall::codeOf(const char* operation) {
  if (recorder().faults.fails(FaultPlan::kLibrary, operation)) return RecordingDouble::kFailure;
  const auto scripted = library().answers.find(operation);
  return scripted == library().answers.end() ? 0 : scripted->second;
}

void OperationCall::handsOutHandle(int* out) {
  if (*out != 0) wrong("is given an output that was not cleared");
  if (!writesOutputs()) return;
  *out = library().opensWithoutHandle ? 0 : ++library().lastHandle;
  outputs_ += ", handle " + std::to_string(*out);
  if (*out != 0) {
    recorder().owned.takeAs(Kind::kHandle, asKey(*out), "handle " + std::to_string(*out));
  }
}

void OperationCall::setsFlag(unsigned char* out) {
  if (*out != 0) wrong("is given an output that was not cleared");
  if (!writesOutputs()) return;
  *out = library().flag;
  if (std::deque<unsigned char>& next = library().nextFlags; !next.empty()) {
    *out = next.front();
    next.pop_front();
  }
  outputs_ += ", " + std::to_string(*out);
}

void OperationCall::handsOutBuffer(unsigned char** out, uint32_t* length, const Bytes& bytes) {
  if (*out != nullptr || *length != 0) wrong("is given an output that was not cleared");
  if (!writesOutputs()) return;
  *out = library().losesBuffers ? nullptr : copyOf(bytes);
  *length = static_cast<uint32_t>(bytes.size());
  if (*out == nullptr) {
    outputs_ += ", null, " + std::to_string(*length);
    return;
  }
  outputs_ += ", " + recorder().owned.take(Kind::kBuffer, *out, std::free) + " " +
              inHex(*out, bytes.size());
  recorder().owned.setSize(*out, bytes.size());
}

int OperationCall::answer() {
  returns(std::to_string(code_) + outputs_);
  return code_;
}

bool recordRelease(const char* function, Kind kind, const void* record) {
  if (record == nullptr) {
    LibraryCall(function, std::string("null")).done();
    return false;
  }
  const std::string name = recorder().owned.nameOf(record);
  LibraryCall call(function, name.empty() ? std::string("unknown record") : name);
  call.done();
  if (recorder().owned.give(kind, record)) return true;
  call.wrong("releases what it may not, or twice");
  return false;
}

bool cannotAllocate(const char* function) {
  return recorder().faults.fails(FaultPlan::kAllocation, function);
}

}  // namespace zel::test

using zel::test::asKey;
using zel::test::Kind;
using zel::test::OpenHandle;
using zel::test::OperationCall;
using zel::test::recorder;

/* Handles live here, because only this file knows how one is held. */

int ZELKM_CloseKeyDb(int handle) {
  OperationCall call(__func__, OpenHandle{handle});
  recorder().owned.give(Kind::kHandle, asKey(handle));
  return call.answer();
}

int ZELKM_SetSecondaryKeyDb(int tokenHandle, int secondaryHandle) {
  OperationCall call(__func__, OpenHandle{tokenHandle}, OpenHandle{secondaryHandle});
  const int code = call.answer();
  if (code == 0) {
    recorder().owned.takeAs(Kind::kSecondaryKeyDb, asKey(tokenHandle),
                            "secondary key database of " + std::to_string(tokenHandle));
  }
  return code;
}

int ZELKM_UnsetSecondaryKeyDb(int tokenHandle) {
  OperationCall call(__func__, OpenHandle{tokenHandle});
  if (!recorder().owned.give(Kind::kSecondaryKeyDb, asKey(tokenHandle))) {
    call.wrong("has no secondary key database");
  }
  return call.answer();
}
