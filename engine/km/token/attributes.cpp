#include "engine/km/token/attributes.h"

#include <cstring>

namespace zel::km::token {

Template& Template::addBytes(CK_ATTRIBUTE_TYPE type, sys::ByteView value) {
  sys::SecretBytes& kept = values_.emplace_back(value.begin(), value.end());
  attributes_.push_back({type, kept.data(), CK_ULONG(kept.size())});
  return *this;
}

Template& Template::addText(CK_ATTRIBUTE_TYPE type, std::string_view value) {
  return addBytes(type, sys::bytesOf(value));
}

Template& Template::addNumber(CK_ATTRIBUTE_TYPE type, CK_ULONG value) {
  std::uint8_t bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  return addBytes(type, bytes);
}

Template& Template::addFlag(CK_ATTRIBUTE_TYPE type, bool value) {
  const std::uint8_t byte = value ? CK_TRUE : CK_FALSE;
  return addBytes(type, {&byte, 1});
}

sys::ByteView Attributes::bytes(CK_ATTRIBUTE_TYPE type) const {
  auto found = values_.find(type);
  if (found == values_.end()) return {};
  return found->second;
}

std::string_view Attributes::text(CK_ATTRIBUTE_TYPE type) const {
  const sys::ByteView value = bytes(type);
  return {reinterpret_cast<const char*>(value.data()), value.size()};
}

CK_ULONG Attributes::number(CK_ATTRIBUTE_TYPE type, CK_ULONG fallback) const {
  const sys::ByteView value = bytes(type);
  if (value.size() != sizeof fallback) return fallback;
  std::memcpy(&fallback, value.data(), sizeof fallback);
  return fallback;
}

bool Attributes::flag(CK_ATTRIBUTE_TYPE type) const {
  const sys::ByteView value = bytes(type);
  return value.size() == 1 && value.front() != CK_FALSE;
}

}  // namespace zel::km::token
