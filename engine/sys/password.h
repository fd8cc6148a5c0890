#ifndef ZEL_SYS_PASSWORD_H_
#define ZEL_SYS_PASSWORD_H_

#include <optional>
#include <utility>

#include "engine/sys/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

namespace zel::sys {

/** A Password is a text in real UTF-8, as keys are derived from it; wiped when it goes. */
class Password {
 public:
  /** The empty one. */
  Password() = default;
  /** Text that is real UTF-8 already. */
  explicit Password(SecretBytes utf8) : utf8_(std::move(utf8)) {}

  /**
   * A password that a caller gives, in modified UTF-8. ZELKM_ERR_NULL_PARAMETER (66) for null,
   * ZELKM_ERR_PARAMETER (65) for text that is none.
   */
  ZEL_SYS_API static Result<Password> given(const char* text);
  /** As given, with null for the empty one. */
  ZEL_SYS_API static Result<Password> givenOrEmpty(const char* text);
  /**
   * As given, with nothing for null and for the empty one: where no password is empty, that asks
   * for one that is kept elsewhere, and Java cannot pass null.
   */
  ZEL_SYS_API static Result<std::optional<Password>> givenOrKept(const char* text);

  ByteView bytes() const { return utf8_; }
  bool empty() const { return utf8_.empty(); }

 private:
  SecretBytes utf8_;
};

}  // namespace zel::sys

#endif  // ZEL_SYS_PASSWORD_H_
