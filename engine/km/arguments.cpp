#include "engine/km/arguments.h"

#include "engine/cms/modified_utf8.h"

namespace zel::km {

sys::Result<std::string> fileNameArgument(const char* fileName) {
  if (fileName == nullptr || *fileName == '\0') return sys::Failure{ZELKM_ERR_FILENAME_NULL};
  return cms::toUtf8(fileName);
}

sys::Result<sys::SecretBytes> passwordArgument(const char* password) {
  if (password == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return cms::secretToUtf8(password);
}

}  // namespace zel::km
