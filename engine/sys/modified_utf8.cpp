#include "engine/sys/modified_utf8.h"

#include <cstdint>
#include <optional>

#include "engine/sys/trace.h"

namespace zel::sys {

namespace {

constexpr std::uint32_t kFirstSurrogate = 0xD800;
constexpr std::uint32_t kFirstLowSurrogate = 0xDC00;
constexpr std::uint32_t kLastSurrogate = 0xDFFF;
constexpr std::uint32_t kFirstSupplementary = 0x10000;
constexpr std::uint32_t kLastCharacter = 0x10FFFF;

bool isHighSurrogate(std::uint32_t c) { return c >= kFirstSurrogate && c < kFirstLowSurrogate; }
bool isLowSurrogate(std::uint32_t c) { return c >= kFirstLowSurrogate && c <= kLastSurrogate; }

/** Takes one encoded unit off the front, or nothing; surrogates are units here. */
std::optional<std::uint32_t> takeUnit(std::string_view& text) {
  const auto lead = static_cast<std::uint8_t>(text.front());
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC0 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                                           : 4;
  if (length == 0 || length > text.size()) return std::nullopt;

  static constexpr std::uint8_t kLeadMasks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  std::uint32_t unit = lead & kLeadMasks[length];
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<std::uint8_t>(text[i]);
    if ((next & 0xC0) != 0x80) return std::nullopt;
    unit = (unit << 6) | (next & 0x3FU);
  }
  // Only the shortest form counts, but for U+0000, whose two bytes are what makes it "modified".
  static constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, kFirstSupplementary};
  const bool isShortest = unit >= kSmallest[length] || (length == 2 && unit == 0);
  if (!isShortest || lead >= 0xF8 || unit > kLastCharacter) return std::nullopt;
  text.remove_prefix(length);
  return unit;
}

template <typename Text>
void append(Text& text, std::uint32_t c) {
  using Char = typename Text::value_type;
  const auto put = [&](std::uint32_t byte) { text.push_back(static_cast<Char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    put(0x80 | (c & 0x3F));
  } else if (c < kFirstSupplementary) {
    put(0xE0 | (c >> 12));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

template <typename Text>
Result<Text> decode(std::string_view modified) {
  Text text;
  text.reserve(modified.size());
  while (!modified.empty()) {
    std::optional<std::uint32_t> c = takeUnit(modified);
    if (c && isHighSurrogate(*c) && !modified.empty()) {
      const std::optional<std::uint32_t> low = takeUnit(modified);
      if (low && isLowSurrogate(*low)) {
        c = kFirstSupplementary + ((*c - kFirstSurrogate) << 10) + (*low - kFirstLowSurrogate);
      }
    }
    if (!c || isHighSurrogate(*c) || isLowSurrogate(*c)) {
      return fail(ZELKM_ERR_PARAMETER, "a text is not UTF-8");
    }
    append(text, *c);
  }
  return text;
}

}  // namespace

Result<std::string> toUtf8(std::string_view modified) { return decode<std::string>(modified); }

Result<SecretBytes> secretToUtf8(std::string_view modified) {
  return decode<SecretBytes>(modified);
}

std::string toModifiedUtf8(std::string_view text) {
  std::string modified;
  modified.reserve(text.size());
  while (!text.empty()) {
    const std::optional<std::uint32_t> c = takeUnit(text);
    if (!c) {
      modified.push_back('?');
      text.remove_prefix(1);
    } else if (*c == 0) {
      modified += "\xC0\x80";
    } else if (*c < kFirstSupplementary) {
      append(modified, *c);
    } else {
      const std::uint32_t offset = *c - kFirstSupplementary;
      append(modified, kFirstSurrogate + (offset >> 10));
      append(modified, kFirstLowSurrogate + (offset & 0x3FF));
    }
  }
  return modified;
}

}  // namespace zel::sys
