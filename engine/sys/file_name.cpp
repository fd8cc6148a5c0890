#include "engine/sys/file_name.h"

#include <utility>

#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::sys {

Result<FileName> FileName::given(const char* text) {
  if (text == nullptr || *text == '\0') return Failure{ZELKM_ERR_FILENAME_NULL};
  Result<std::string> path = toUtf8(text);
  if (!path) return path.failure();
  // The system ends a name there, which would be the name of another file.
  if (path.value().find('\0') != std::string::npos) {
    return fail(ZELKM_ERR_PARAMETER, "a file name holds U+0000");
  }
  return FileName(std::move(path).value());
}

}  // namespace zel::sys
