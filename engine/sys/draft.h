#ifndef ZEL_SYS_DRAFT_H_
#define ZEL_SYS_DRAFT_H_

#include <string>

#include "engine/sys/api.h"
#include "engine/sys/descriptor.h"
#include "engine/sys/result.h"

/**
 * @file
 * Files that get their name only once they are whole:
 *
 *     Draft draft(name);
 *     Result<Descriptor> file = draft.create(FileAccess::ownerOnly);
 *     if (!file) return file.failure();
 *     if (Status written = writeAllOf(file.value()); !written) return written;
 *     return draft.takeNewName();
 *
 * Codes are those of files.h.
 */

namespace zel::sys {

/** Who may read a file that is written: whoever the user's umask lets, or its owner alone. */
enum class FileAccess { everybody, ownerOnly };

/** A Draft is a file beside the name it is to have, and is removed unless it has got it. */
class ZEL_SYS_API Draft {
 public:
  explicit Draft(std::string finalName);
  ~Draft();
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  /** The name that the draft has for now. */
  const std::string& name() const { return name_; }

  /** Makes the file, empty, and opens it for writing. */
  Result<Descriptor> create(FileAccess access);

  /** Gives it its final name, as moveToNewName does; where that fails it remains a draft. */
  Status takeNewName();
  /** The same in the place of what has the name. ZELKM_ERR_FILE_WRITE (91). */
  Status takeName();

 private:
  std::string finalName_;
  std::string name_;
  bool created_ = false;
};

/** createFile makes an empty file. ZELKM_ERR_DATABASE_ALREADY_EXISTS (9) when there is one. */
ZEL_SYS_API Status createFile(const std::string& name, FileAccess access);

/**
 * moveToNewName gives a file its final name, which survives a crash from then on.
 * ZELKM_ERR_DATABASE_ALREADY_EXISTS (9) when the name is taken, with the file left where it is.
 */
ZEL_SYS_API Status moveToNewName(const std::string& from, const std::string& to);

/** A name beside the given one, in the same folder, that no file has. */
ZEL_SYS_API std::string temporaryName(const std::string& name);

/** A new or removed name is only sure to stay so after a crash when its folder is on the disk. */
bool syncFolderOf(const std::string& name);

}  // namespace zel::sys

#endif  // ZEL_SYS_DRAFT_H_
