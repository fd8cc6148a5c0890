#ifndef ZEL_KM_KEYDB_FIELDS_H_
#define ZEL_KM_KEYDB_FIELDS_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "engine/sys/bytes.h"

/**
 * @file
 * Runs of numbers and byte strings as bytes, in one way only: numbers are 8 bytes big endian, byte
 * strings are their length and themselves. No two runs give the same bytes.
 *
 *     SecretBytes plain = FieldWriter<SecretBytes>().bytes(certificate).bytes(key).take();
 *     FieldReader fields(plain);
 *     std::optional<ByteView> certificate = fields.bytes();
 */

namespace zel::km {

template <typename Container>
class FieldWriter {
 public:
  FieldWriter& number(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    for (unsigned shift = 64; shift > 0; shift -= 8) {
      written_.push_back(static_cast<std::uint8_t>(bits >> (shift - 8)));
    }
    return *this;
  }
  FieldWriter& bytes(sys::ByteView value) {
    number(static_cast<std::int64_t>(value.size()));
    written_.insert(written_.end(), value.begin(), value.end());
    return *this;
  }
  FieldWriter& text(std::string_view value) { return bytes(sys::bytesOf(value)); }

  Container take() { return std::move(written_); }

 private:
  Container written_;
};

/** A FieldReader borrows the bytes; what it answers points into them. */
class FieldReader {
 public:
  explicit FieldReader(sys::ByteView written) : rest_(written) {}

  /** Nothing when the bytes end too soon. */
  std::optional<std::int64_t> number() {
    if (rest_.size() < 8) return std::nullopt;
    std::uint64_t bits = 0;
    for (std::uint8_t byte : rest_.first(8)) bits = bits << 8U | byte;
    rest_ = rest_.subspan(8);
    return static_cast<std::int64_t>(bits);
  }
  std::optional<sys::ByteView> bytes() {
    const std::optional<std::int64_t> length = number();
    if (!length || *length < 0 || static_cast<std::uint64_t>(*length) > rest_.size()) {
      return std::nullopt;
    }
    const sys::ByteView value = rest_.first(static_cast<std::size_t>(*length));
    rest_ = rest_.subspan(value.size());
    return value;
  }
  bool atEnd() const { return rest_.empty(); }

 private:
  sys::ByteView rest_;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_FIELDS_H_
