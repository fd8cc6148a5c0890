#ifndef ZEL_TESTS_ENGINE_KM_KEY_DATABASE_H_
#define ZEL_TESTS_ENGINE_KM_KEY_DATABASE_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/sys/bytes.h"
#include "tests/engine/cms/tools.h"

/**
 * @file
 * What tests of key databases share: a folder with a database in it, seen through the C interface.
 */

namespace zel::km {

inline constexpr const char* kPassword = "correct horse";
inline constexpr const char* kOtherPassword = "battery staple";

/** A test with a new key database; its handle is closed when the test ends. */
class KeyDatabaseTest : public testing::Test {
 protected:
  KeyDatabaseTest();
  ~KeyDatabaseTest() override;

  std::string path(const std::string& name) const { return folder_.path(name); }
  /** The whole file; nothing may be open on it but through SQLite, so a copy is read. */
  sys::Bytes bytesOf(const std::string& file) const;

  /** The code of opening the database with a password, and of closing it. */
  int openAndClose(const char* password) const;

  cms::TemporaryFolder folder_;
  const std::string file_ = path("test.kdb");
  int handle_ = 0;
};

/** The labels that a list operation answers; a failure of it fails the test. */
std::vector<std::string> keyLabelsOf(int handle);

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_KM_KEY_DATABASE_H_
