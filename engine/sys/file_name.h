#ifndef ZEL_SYS_FILE_NAME_H_
#define ZEL_SYS_FILE_NAME_H_

#include <string>
#include <utility>

#include "engine/sys/api.h"
#include "engine/sys/result.h"

namespace zel::sys {

/** A FileName is a name as the file system takes it: real UTF-8, not empty, without U+0000. */
class FileName {
 public:
  /**
   * A name that a caller gives, in modified UTF-8. ZELKM_ERR_FILENAME_NULL (85) for none,
   * ZELKM_ERR_PARAMETER (65) for text that is none.
   */
  ZEL_SYS_API static Result<FileName> given(const char* text);

  /** A name that is made of another, such as that of a file beside it. */
  static FileName derived(std::string path) { return FileName(std::move(path)); }

  const std::string& path() const { return path_; }

 private:
  explicit FileName(std::string path) : path_(std::move(path)) {}

  std::string path_;
};

}  // namespace zel::sys

#endif  // ZEL_SYS_FILE_NAME_H_
