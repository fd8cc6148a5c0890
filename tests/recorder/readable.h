#ifndef TESTS_RECORDER_READABLE_H_
#define TESTS_RECORDER_READABLE_H_

#include <cstddef>
#include <cstdint>
#include <string>

/**
 * @file
 * Values as they stand in a transcript.
 */

namespace zel::test {

/** quoted() is the text in double quotes, or null. */
std::string quoted(const char* text);

/** inHex() is [30 82 01 0a], at most 16 bytes of it and then the number of all, or null. */
std::string inHex(const void* bytes, size_t length);

}  // namespace zel::test

#endif  // TESTS_RECORDER_READABLE_H_
