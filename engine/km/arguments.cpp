#include "engine/km/arguments.h"

#include <utility>

#include "engine/cms/modified_utf8.h"

namespace zel::km {

sys::Result<std::string> fileNameArgument(const char* fileName) {
  if (fileName == nullptr) return sys::Failure{ZELKM_ERR_FILENAME_NULL};
  return cms::toUtf8(fileName);
}

sys::Result<std::optional<sys::SecretBytes>> optionalPasswordArgument(const char* password) {
  if (password == nullptr) return std::optional<sys::SecretBytes>();
  sys::Result<sys::SecretBytes> text = passwordArgument(password);
  if (!text) return text.failure();
  return std::optional(std::move(text.value()));
}

sys::Result<sys::SecretBytes> passwordArgument(const char* password) {
  if (password == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return cms::secretToUtf8(password);
}

}  // namespace zel::km
