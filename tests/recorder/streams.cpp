#include "tests/recorder/streams.h"

#include <algorithm>
#include <utility>

#include "tests/recorder/recorder.h"

namespace zel::test {

namespace {

ssize_t record(void* name, const char* text, size_t length) {
  const HostCode host;
  recorder().streamed(static_cast<std::string*>(name)->c_str(), {text, length});
  return static_cast<ssize_t>(length);
}

int forgetName(void* name) {
  const HostCode host;
  delete static_cast<std::string*>(name);
  return 0;
}

struct Contents {
  std::vector<unsigned char> bytes;
  size_t position = 0;
};

ssize_t readContents(void* cookie, char* out, size_t length) {
  auto* contents = static_cast<Contents*>(cookie);
  const size_t count = std::min(length, contents->bytes.size() - contents->position);
  std::copy_n(contents->bytes.data() + contents->position, count, out);
  contents->position += count;
  return static_cast<ssize_t>(count);
}

int forgetContents(void* cookie) {
  delete static_cast<Contents*>(cookie);
  return 0;
}

}  // namespace

FILE* recordedStream(const std::string& name) {
  const cookie_io_functions_t functions = {nullptr, record, nullptr, forgetName};
  FILE* stream = fopencookie(new std::string(name), "w", functions);
  std::setvbuf(stream, nullptr, _IONBF, 0);
  return stream;
}

FILE* readableStream(std::vector<unsigned char> bytes) {
  const cookie_io_functions_t functions = {readContents, nullptr, nullptr, forgetContents};
  return fopencookie(new Contents{std::move(bytes)}, "r", functions);
}

}  // namespace zel::test
