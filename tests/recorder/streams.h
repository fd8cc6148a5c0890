#ifndef TESTS_RECORDER_STREAMS_H_
#define TESTS_RECORDER_STREAMS_H_

#include <cstdio>
#include <string>
#include <vector>

/**
 * @file
 * Streams that live in the recorder instead of on a disk.
 */

namespace zel::test {

/** recordedStream() opens a stream whose lines become events under the given name. */
FILE* recordedStream(const std::string& name);

/** readableStream() opens a stream that reads the bytes. */
FILE* readableStream(std::vector<unsigned char> bytes);

}  // namespace zel::test

#endif  // TESTS_RECORDER_STREAMS_H_
