#include "engine/sys/password.h"

#include "engine/sys/modified_utf8.h"

namespace zel::sys {

Result<Password> Password::given(const char* text) {
  if (text == nullptr) return Failure{ZELKM_ERR_NULL_PARAMETER};
  Result<SecretBytes> utf8 = secretToUtf8(text);
  if (!utf8) return utf8.failure();
  return Password(std::move(utf8).value());
}

Result<Password> Password::givenOrEmpty(const char* text) {
  return given(text == nullptr ? "" : text);
}

Result<std::optional<Password>> Password::givenOrKept(const char* text) {
  if (text == nullptr || *text == '\0') return std::optional<Password>();
  Result<Password> password = given(text);
  if (!password) return password.failure();
  return std::optional(std::move(password).value());
}

}  // namespace zel::sys
