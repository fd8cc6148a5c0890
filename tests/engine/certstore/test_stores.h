#ifndef ZEL_TESTS_ENGINE_CERTSTORE_TEST_STORES_H_
#define ZEL_TESTS_ENGINE_CERTSTORE_TEST_STORES_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/operations/database.h"

/**
 * @file
 * Certificate stores for the tests, in a home folder that goes with the test:
 *
 *     class MyTest : public StoreTest {};
 *     TEST_F(MyTest, opens) { EXPECT_GT(open(kMy), 0); }
 */

namespace zel::km::certstore {

inline constexpr const char* kMy = "CurrentUser/My";
inline constexpr const char* kRoot = "CurrentUser/Root";
inline constexpr const char* kAuthorities = "CurrentUser/CA";

class StoreTest : public testing::Test {
 protected:
  StoreTest();
  ~StoreTest() override;

  /** A handle that is closed when the test ends; the negative result code when it fails. */
  int open(const char* name, const char* password = nullptr);
  static KeyDbLocator locator(const char* name, const char* password = nullptr);

  /** Adds the authority's certificate, with its key or without; answers the code. */
  static int insert(int handle, const char* label, const cms::TestAuthority& owner,
                    bool withKey = true);
  static std::vector<std::string> labels(int handle);
  static KeyItem item(int handle, const char* label);
  static int codeOfItem(int handle, const char* label);

  /** A path below the folder of all stores: "my", "root/x.pfx". */
  std::string path(const std::string& name) const;
  /** The names of the files in a store's folder, sorted. */
  std::vector<std::string> files(const char* folder = "my") const;

  /** What another program puts into a store: a file that openssl writes, with openssl's options. */
  void opensslWrites(const std::string& file, const cms::TestAuthority& owner,
                     const std::string& options = "") const;
  /** The certificate and the key that openssl finds in a file, as PEM. */
  std::string opensslReads(const std::string& file, const std::string& options = "") const;

  cms::TemporaryFolder home_;

 private:
  cms::HomeVariable homeVariable_;
  std::vector<int> handles_;
};

/** The key of an item, which carries it under the empty password. */
sys::SecretBytes privateKeyOf(const ZELKMKeyItem& item);
sys::SecretBytes privateKeyOf(const cms::TestAuthority& owner);
/** The first certificate of an item. */
sys::Bytes certificateOf(const ZELKMKeyItem& item);
/** A certificate's or key's PEM, as openssl writes it. */
std::string pemOf(const char* armour, sys::ByteView der);

}  // namespace zel::km::certstore

#endif  // ZEL_TESTS_ENGINE_CERTSTORE_TEST_STORES_H_
