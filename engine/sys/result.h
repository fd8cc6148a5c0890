#ifndef ZEL_SYS_RESULT_H_
#define ZEL_SYS_RESULT_H_

#include <optional>
#include <utility>

#include "bridge/kmlib/zelkm_codes.h"

/**
 * @file
 * How the engine answers: a value, or one of the result codes of zelkm_codes.h.
 *
 *     Result<Certificate> parsed = parseCertificate(der);
 *     if (!parsed) return parsed.failure();
 *     use(parsed.value());
 *
 * Nothing but std::bad_alloc is thrown inside the engine, and that is caught at the C interface.
 */

namespace zel::sys {

/** A Failure carries one result code other than ZELKM_OK. */
struct Failure {
  int code;
};

/** A Result is a value or a Failure. */
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}     // NOLINT(google-explicit-constructor)
  Result(Failure failure) : code_(failure.code) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return value_.has_value(); }
  /** ZELKM_OK when there is a value. */
  int code() const { return code_; }
  Failure failure() const { return Failure{code_}; }

  T& value() & { return *value_; }
  const T& value() const& { return *value_; }
  T&& value() && { return *std::move(value_); }

 private:
  std::optional<T> value_;
  int code_ = ZELKM_OK;
};

/** A Status is the answer of what has no value to give. */
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(Failure failure) : code_(failure.code) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return code_ == ZELKM_OK; }
  int code() const { return code_; }
  Failure failure() const { return Failure{code_}; }

 private:
  int code_ = ZELKM_OK;
};

inline Status success() { return {}; }

}  // namespace zel::sys

#endif  // ZEL_SYS_RESULT_H_
