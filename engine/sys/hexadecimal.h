#ifndef ZEL_SYS_HEXADECIMAL_H_
#define ZEL_SYS_HEXADECIMAL_H_

#include <string>

#include "engine/sys/bytes.h"

namespace zel::sys {

/** hexadecimal answers two capital digits for each byte. */
inline std::string hexadecimal(ByteView bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

}  // namespace zel::sys

#endif  // ZEL_SYS_HEXADECIMAL_H_
