#include "engine/sys/system_failure.h"

#include <cerrno>
#include <cstring>

#include "engine/sys/trace.h"

namespace zel::sys {

Failure systemFailure(int otherwise, const std::string& name) {
  int code = otherwise;
  if (errno == ENOENT || errno == ENOTDIR) code = ZELKM_ERR_FILE_OPEN_NOT_EXIST;
  if (errno == EACCES || errno == EPERM || errno == EROFS || errno == ELOOP) {
    code = ZELKM_ERR_FILE_OPEN_NOT_ALLOWED;
  }
  if (errno == EEXIST) code = ZELKM_ERR_DATABASE_ALREADY_EXISTS;
  return fail(code, "%s: %s", name.c_str(), std::strerror(errno));
}

}  // namespace zel::sys
