#ifndef ZEL_SYS_TRACE_H_
#define ZEL_SYS_TRACE_H_

#include <cstdint>

#include "engine/sys/api.h"
#include "engine/sys/result.h"

/**
 * @file
 * The engine's own trace: it says in words what a result code cannot, which algorithm was refused
 * or which issuer is missing. Where an error is first known, it is traced and answered in one go:
 *
 *     if (!issuer) return fail(ZELKM_ERR_FIND_ISSUER_CHAIN, "no issuer \"%s\" in the database",
 * name);
 *
 * Lines go to every trace file that was started, on any number of threads. Secrets never do.
 */

namespace zel::sys {

/** The settings of one trace file. */
struct TraceSettings {
  /** How many older files are kept beside the current one, as name.1 (the youngest) and so on. */
  std::int64_t olderFiles = 0;
  /** The size at which a file is full, in KiB; 0 means no limit. */
  std::int64_t kibibytesPerFile = 0;
};

/**
 * startTrace opens a trace file (created 0600, an earlier one is continued) whose lines carry the
 * component's name. A file that is being traced into already takes the new settings.
 */
ZEL_SYS_API Status startTrace(const char* component, const char* fileName, TraceSettings settings);

/** stopTrace closes every trace file. */
ZEL_SYS_API void stopTrace();

/** traceLine writes one line (without its end) to every trace file, and nothing when there is none.
 */
ZEL_SYS_API void traceLine(const char* format, ...) __attribute__((format(printf, 1, 2)));

/** fail traces why, and gives the Failure to answer with. */
ZEL_SYS_API Failure fail(int code, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace zel::sys

#endif  // ZEL_SYS_TRACE_H_
