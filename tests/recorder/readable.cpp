#include "tests/recorder/readable.h"

#include <algorithm>

namespace zel::test {

std::string quoted(const char* text) {
  return text == nullptr ? "null" : '"' + std::string(text) + '"';
}

std::string inHex(const void* bytes, size_t length) {
  constexpr size_t kShown = 16;
  constexpr const char* kDigits = "0123456789abcdef";
  if (bytes == nullptr) return "null";
  std::string text = "[";
  for (size_t i = 0; i < std::min(length, kShown); ++i) {
    const unsigned byte = static_cast<const unsigned char*>(bytes)[i];
    if (i > 0) text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  if (length > kShown) text += " .. " + std::to_string(length) + " bytes";
  return text + "]";
}

}  // namespace zel::test
