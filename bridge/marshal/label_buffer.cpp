#include "bridge/marshal/label_buffer.h"

#include <cstring>

namespace zel::bridge {

namespace {

/** isContinuation tells whether the byte goes on with a UTF-8 character begun before it. */
bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

const char* LabelBuffer::copy(const char* label) {
  std::size_t length = strnlen(label, kSize);
  if (length == kSize) {
    length = kSize - 1;
    while (length > 0 && isContinuation(label[length])) --length;
  }
  std::memcpy(text_, label, length);
  text_[length] = '\0';
  return text_;
}

}  // namespace zel::bridge
