#include "engine/km/face/arguments.h"

#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::km {

sys::Result<std::string> fileNameArgument(const char* fileName) {
  if (fileName == nullptr || *fileName == '\0') return sys::Failure{ZELKM_ERR_FILENAME_NULL};
  sys::Result<std::string> name = sys::toUtf8(fileName);
  // The system ends a name there, which would be the name of another file.
  if (name && name.value().find('\0') != std::string::npos) {
    return sys::fail(ZELKM_ERR_PARAMETER, "a file name holds U+0000");
  }
  return name;
}

sys::Result<sys::SecretBytes> passwordArgument(const char* password) {
  if (password == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return sys::secretToUtf8(password);
}

sys::Result<std::optional<sys::SecretBytes>> passwordOrStash(const char* password) {
  if (password == nullptr || *password == '\0') return std::optional<sys::SecretBytes>();
  sys::Result<sys::SecretBytes> given = passwordArgument(password);
  if (!given) return given.failure();
  return std::optional(std::move(given.value()));
}

}  // namespace zel::km
