#ifndef ZEL_TESTS_ENGINE_KM_FILLED_DATABASE_H_
#define ZEL_TESTS_ENGINE_KM_FILLED_DATABASE_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/km/key_database.h"
#include "tests/engine/stores/test_entries.h"

/**
 * @file
 * A key database with something in it, seen as a store.
 */

namespace zel::km {

/** The test of a database with two keys, "one" (the default) and "two" (trusted), and a request. */
class FilledDatabaseTest : public testing::Test {
 protected:
  FilledDatabaseTest();

  std::string path(const std::string& name) const { return folder_.path(name); }
  std::unique_ptr<Store> open() const;
  /** Opens after the file was changed, and answers the code. */
  int openingCode() const;
  /** The code of listing the keys, or the requests, of the database as it is now. */
  int listingCode() const;

  /** Runs SQL on the file, as somebody who has no password. */
  void tamper(const std::string& sql) const;

  cms::TemporaryFolder folder_;
  const std::string file_ = path("test.kdb");
  const cms::TestAuthority one_{"One"};
  const cms::TestAuthority two_{"Two"};
  std::unique_ptr<Store> store_;
};

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_KM_FILLED_DATABASE_H_
