#include "engine/km/keydb/password_rules.h"

#include <algorithm>
#include <ctime>
#include <limits>

#include "engine/sys/trace.h"

namespace zel::km {

namespace {

constexpr std::int64_t kShortest = 6;
constexpr std::int64_t kShortestApproved = 14;

bool isDigit(std::uint8_t byte) { return byte >= '0' && byte <= '9'; }

// Of the characters beyond ASCII every one counts as a letter.
bool isLetter(std::uint8_t byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte >= 0x80;
}

bool beginsCharacter(std::uint8_t byte) { return (byte & 0xC0U) != 0x80U; }

}  // namespace

sys::Status checkNewPassword(sys::ByteView password, bool approvedOnly) {
  const std::int64_t characters = std::ranges::count_if(password, beginsCharacter);
  const std::int64_t shortest = approvedOnly ? kShortestApproved : kShortest;
  if (characters < shortest) {
    return sys::fail(ZELKM_ERR_PWD_TOO_SHORT, "the password has fewer than %lld characters",
                     static_cast<long long>(shortest));
  }
  if (!approvedOnly) return sys::success();
  if (std::ranges::none_of(password, isDigit)) {
    return sys::fail(ZELKM_ERR_PWD_NO_NUMBER, "the password has no digit");
  }
  if (std::ranges::all_of(password, [](auto byte) { return isLetter(byte) || isDigit(byte); })) {
    return sys::fail(ZELKM_ERR_PWD_NO_CONTROL_KEY,
                     "the password has nothing but letters and digits");
  }
  return sys::success();
}

sys::Result<std::int64_t> expiryOf(std::int64_t lifetime) {
  if (lifetime < 0) return sys::fail(ZELKM_ERR_PARAMETER, "a password lifetime below zero");
  if (lifetime == 0) return std::int64_t{0};
  const std::int64_t now = std::time(nullptr);
  if (lifetime > std::numeric_limits<std::int64_t>::max() - now) {
    return std::numeric_limits<std::int64_t>::max();
  }
  return now + lifetime;
}

sys::Status checkNotExpired(std::int64_t expiresAt) {
  if (expiresAt == 0 || std::time(nullptr) < expiresAt) return sys::success();
  return sys::fail(ZELKM_ERR_PASSWORD_EXPIRATION_TIME,
                   "the password's lifetime has passed; it can be changed");
}

}  // namespace zel::km
