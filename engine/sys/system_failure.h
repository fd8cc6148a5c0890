#ifndef ZEL_SYS_SYSTEM_FAILURE_H_
#define ZEL_SYS_SYSTEM_FAILURE_H_

#include <string>

#include "engine/sys/result.h"

namespace zel::sys {

/**
 * systemFailure is the Failure of a system call on a file or folder, by errno:
 * ZELKM_ERR_FILE_OPEN_NOT_EXIST (89), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90),
 * ZELKM_ERR_DATABASE_ALREADY_EXISTS (9), else the code given. It is traced.
 */
Failure systemFailure(int otherwise, const std::string& name);

}  // namespace zel::sys

#endif  // ZEL_SYS_SYSTEM_FAILURE_H_
