#ifndef ZEL_TESTS_ENGINE_WORK_WORK_TEST_H_
#define ZEL_TESTS_ENGINE_WORK_WORK_TEST_H_

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "engine/km/store/store.h"
#include "engine/sys/file_name.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/stores/labels.h"

/**
 * @file
 * What the tests of use cases share: a store, what is in it, and what becomes of that when a call
 * fails.
 */

namespace zel::km {

/** A store's entries, one a line: kind, label, thumbprint of the document, marks. */
std::vector<std::string> contentOf(Store& store);

/** The line that contentOf has for an entry. */
std::string lineOf(const KeyEntry& entry);
std::string lineOf(const RequestEntry& entry);

/**
 * A test on a key database that is empty to begin with. Making one takes a costly derivation, so
 * all tests share the database and each clears it.
 */
class WorkTest : public testing::Test {
 protected:
  static constexpr const char* kPassword = "correct horse";

  WorkTest();

  Store& store() { return store_; }
  std::vector<std::string> content() { return contentOf(store_); }
  void insert(const KeyEntry& entry) { EXPECT_TRUE(store_.insertKey(entry)); }
  void insert(const RequestEntry& entry) { EXPECT_TRUE(store_.insertRequest(entry)); }

  cms::TemporaryFolder& folder() { return folder_; }
  sys::FileName file(const char* name) const { return fileName(folder_.path(name)); }
  /** A name in a folder that does not exist. */
  sys::FileName unwritableFile() const { return file("nowhere/file"); }
  bool exists(const char* name) const;

  /**
   * Runs a use case on the store with its first call failing, then its second and so on, until it
   * succeeds without having met the failure. Each failure is answered, and leaves the store as it
   * was.
   */
  void expectAllOrNothing(const std::function<sys::Status(Store&)>& useCase);

 private:
  Store& store_;
  cms::TemporaryFolder folder_;
};

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_WORK_WORK_TEST_H_
