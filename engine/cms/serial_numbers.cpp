#include "engine/cms/serial_numbers.h"

#include <openssl/bn.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** At most 20 octets, the highest bit of which is the sign. */
constexpr int kMostBits = 159;
/** No such number has more, leading zeros allowed for; reading more would take long. */
constexpr std::size_t kMostDigits = 64;

}  // namespace

sys::Result<sys::Bytes> parseSerialNumber(std::string_view text) {
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  const std::string digits(text.substr(isHexadecimal ? 2 : 0));
  const auto isDigit = [&](unsigned char c) {
    return isHexadecimal ? std::isxdigit(c) != 0 : std::isdigit(c) != 0;
  };
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit)) {
    return sys::fail(ZELKM_ERR_PARAMETER, "no serial number: \"%.*s\"",
                     static_cast<int>(text.size()), text.data());
  }
  if (digits.size() > kMostDigits) {
    return sys::fail(ZELKM_ERR_NUMBER_SIZE, "a serial number of %zu digits", digits.size());
  }

  BIGNUM* parsed = nullptr;
  const int taken =
      isHexadecimal ? BN_hex2bn(&parsed, digits.c_str()) : BN_dec2bn(&parsed, digits.c_str());
  const BigNumberPtr number(parsed);
  if (taken == 0) return cryptoFailure(ZELKM_ERR_NUMBER_SIZE, "read a serial number");
  if (BN_is_zero(number.get())) return sys::fail(ZELKM_ERR_PARAMETER, "the serial number 0");
  if (BN_num_bits(number.get()) > kMostBits) {
    return sys::fail(ZELKM_ERR_NUMBER_SIZE, "a serial number of more than 20 bytes");
  }
  sys::Bytes bytes(static_cast<std::size_t>(BN_num_bytes(number.get())));
  BN_bn2bin(number.get(), bytes.data());
  return bytes;
}

}  // namespace zel::cms
