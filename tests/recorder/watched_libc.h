#ifndef TESTS_RECORDER_WATCHED_LIBC_H_
#define TESTS_RECORDER_WATCHED_LIBC_H_

#include <ctime>
#include <string>
#include <vector>

/**
 * @file
 * The C library's functions that the bridge calls, watched: while a BridgeCall is under way,
 * malloc, calloc, realloc, free, fopen, fread, fclose and time are recorded, and allocations and
 * reads fail as the fault plan says. Files are in memory, so nothing is read from or written to the
 * disk, the clock stands still, and dladdr can be made to know nothing.
 *
 * The linker does it: link the target watched_libc, which carries the --wrap options.
 */

namespace zel::test {

struct WatchedLibc {
  /** addFile() lets fopen find a file. */
  void addFile(const std::string& name, std::vector<unsigned char> contents);

  /** letFilesFail() makes every fopen fail. */
  void letFilesFail() { noFiles = true; }

  void reset() { *this = WatchedLibc(); }

  std::vector<std::pair<std::string, std::vector<unsigned char>>> files;
  bool noFiles = false;
  /** dladdr finds the file that holds the code. */
  bool loadedFromFile = true;
  /** 2024-02-29 23:59:58 UTC */
  time_t now = 1709251198;
};

WatchedLibc& watchedLibc();

}  // namespace zel::test

#endif  // TESTS_RECORDER_WATCHED_LIBC_H_
