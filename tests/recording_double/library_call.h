#ifndef TESTS_RECORDING_DOUBLE_LIBRARY_CALL_H_
#define TESTS_RECORDING_DOUBLE_LIBRARY_CALL_H_

#include <string>
#include <type_traits>

#include "tests/recorder/readable.h"
#include "tests/recorder/recorder.h"
#include "tests/recording_double/recording_double.h"

/**
 * @file
 * One call of an operation, from its arguments to its line in the record:
 *
 *     OperationCall call(__func__, OpenHandle{handle}, quoted(label));
 *     call.handsOut(item, library().keyItem);
 *     return call.answer();    // ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
 */

namespace zel::test {

/** A handle among the arguments that has to be open. */
struct OpenHandle {
  int number;
};

/** How a record that the double hands out is held and released. */
template <typename Record>
struct HandedOut;

// NOLINTBEGIN(bugprone-macro-parentheses): a type name cannot be enclosed.
#define HANDED_OUT(Record, itsKind, freeRecord)                                     \
  template <>                                                                       \
  struct HandedOut<Record> {                                                        \
    static constexpr Kind kKind = Kind::itsKind;                                    \
    static void release(void* record) { freeRecord(static_cast<Record*>(record)); } \
  }
HANDED_OUT(ZELKMLabelList, kLabelList, freeLabelList);
HANDED_OUT(ZELKMKeyItem, kKeyItem, freeKeyItem);
HANDED_OUT(ZELKMKeyItemList, kKeyItemList, freeKeyItemList);
HANDED_OUT(ZELKMReqKeyItem, kReqKeyItem, freeReqKeyItem);
HANDED_OUT(ZELKMCertItemList, kCertList, freeCertList);
HANDED_OUT(ZELKMEPKIItem, kEpki, freeEpki);
HANDED_OUT(ZELKMPrivKeyInfoItem, kPrivKeyInfo, freePrivKeyInfo);
#undef HANDED_OUT
// NOLINTEND(bugprone-macro-parentheses)

/** A call of any function of the library. */
class LibraryCall {
 public:
  template <typename... Arguments>
  explicit LibraryCall(const char* function, const Arguments&... arguments) {
    text_ = std::string(function) + "(" + joined(textOf(arguments)...) + ")";
    (checkOpen(arguments), ...);
  }

  /** wrong() records an error of the caller. */
  void wrong(const std::string& what) { recorder().error(text_ + " " + what); }

  /** Each ends the call and records it: with a result, or without one. */
  void returns(const std::string& result) { recorder().event(text_ + " = " + result); }
  void done() { recorder().event(text_); }

 private:
  static std::string textOf(const std::string& text) { return text; }
  static std::string textOf(OpenHandle handle) { return std::to_string(handle.number); }
  template <typename Number>
  static std::enable_if_t<std::is_arithmetic_v<Number>, std::string> textOf(Number number) {
    return std::to_string(number);
  }

  template <typename... Texts>
  static std::string joined(const Texts&... texts) {
    std::string all;
    [[maybe_unused]] const char* comma = "";
    ((all += comma + texts, comma = ", "), ...);
    return all;
  }

  template <typename Argument>
  void checkOpen(const Argument&) {}
  void checkOpen(OpenHandle handle);

  HostCode host_;
  std::string text_;
};

/** A call of an operation, which answers a code and may fail. */
class OperationCall : public LibraryCall {
 public:
  template <typename... Arguments>
  explicit OperationCall(const char* operation, const Arguments&... arguments)
      : LibraryCall(operation, arguments...), code_(codeOf(operation)) {}

  /** Each is for one output, which is written unless the operation fails. */
  void handsOutHandle(int* out);
  void setsFlag(unsigned char* out);
  void handsOutBuffer(unsigned char** out, uint32_t* length, const Bytes& bytes);

  template <typename Record>
  void handsOut(Record** out, const Maker<Record>& make) {
    if (*out != nullptr) wrong("is given an output that was not cleared");
    if (!writesOutputs()) return;
    *out = make ? make() : nullptr;
    using Handed = HandedOut<Record>;
    outputs_ += *out == nullptr
                    ? std::string(", null")
                    : ", " + recorder().owned.take(Handed::kKind, *out, Handed::release);
  }

  int answer();

 private:
  static int codeOf(const char* operation);
  bool writesOutputs() const { return code_ == 0 || library().outputsDespiteErrors; }

  int code_;
  std::string outputs_;
};

/** recordRelease() is a call of a release function; false when the record is not its to release. */
bool recordRelease(const char* function, Kind kind, const void* record);

template <typename Record>
void releaseHandedOut(const char* function, Record* record) {
  using Handed = HandedOut<Record>;
  const HostCode host;
  if (recordRelease(function, Handed::kKind, record)) Handed::release(record);
}

/** cannotAllocate() counts an allocation and tells whether it shall fail. */
bool cannotAllocate(const char* function);

}  // namespace zel::test

#endif  // TESTS_RECORDING_DOUBLE_LIBRARY_CALL_H_
