#include "tests/recorder/recorder.h"

#include <cstdio>
#include <utility>

#include "tests/recorder/streams.h"

namespace zel::test {

namespace {
bool bridgeRunning = false;
}  // namespace

Recorder& recorder() {
  static Recorder instance;
  return instance;
}

void Recorder::event(std::string line) {
  endStreamedLine();
  lines_.push_back(std::move(line));
}

void Recorder::error(const std::string& what) {
  errors_.push_back(what);
  event("ERROR " + what);
}

void Recorder::streamed(const char* stream, std::string_view text) {
  if (stream != stream_) endStreamedLine();
  stream_ = stream;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    unfinished_ += text.substr(0, end);
    if (end == std::string_view::npos) return;
    lines_.push_back(stream_ + " " + withReferencesNamed(unfinished_));
    unfinished_.clear();
    text.remove_prefix(end + 1);
  }
}

void Recorder::endStreamedLine() {
  if (unfinished_.empty()) return;
  lines_.push_back(stream_ + " " + withReferencesNamed(unfinished_) + " (no line end)");
  unfinished_.clear();
}

std::string Recorder::withReferencesNamed(std::string_view text) const {
  std::string named;
  for (size_t at = text.find("0x"); at != std::string_view::npos; at = text.find("0x")) {
    const size_t digits = text.find_first_not_of("0123456789abcdef", at + 2);
    const size_t length = std::min(digits, text.size()) - at;
    const std::string number(text.substr(at, length));
    const uint64_t value = length > 2 ? std::stoull(number, nullptr, 16) : 0;
    const std::string name = value != 0 && nameOfReference ? nameOfReference(value) : std::string();
    named += text.substr(0, at);
    named += name.empty() ? number : "0x{" + name + "}";
    text.remove_prefix(at + length);
  }
  return named + std::string(text);
}

std::string Recorder::transcript() {
  endStreamedLine();
  std::string text;
  for (const std::string& line : lines_) text += line + "\n";
  return text;
}

void Recorder::reset() {
  owned.releaseHeld();
  *this = Recorder();
}

bool bridgeIsRunning() { return bridgeRunning; }

BridgeCall::BridgeCall()
    : standardError_(std::exchange(stderr, recordedStream("trace"))),
      standardOutput_(std::exchange(stdout, recordedStream("stdout"))) {
  bridgeRunning = true;
}

BridgeCall::~BridgeCall() {
  bridgeRunning = false;
  std::fclose(std::exchange(stderr, standardError_));
  std::fclose(std::exchange(stdout, standardOutput_));
}

HostCode::HostCode() : bridgeWasRunning_(std::exchange(bridgeRunning, false)) {}

HostCode::~HostCode() { bridgeRunning = bridgeWasRunning_; }

}  // namespace zel::test
