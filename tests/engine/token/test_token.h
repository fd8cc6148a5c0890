#ifndef ZEL_TESTS_ENGINE_TOKEN_TEST_TOKEN_H_
#define ZEL_TESTS_ENGINE_TOKEN_TEST_TOKEN_H_

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/token/makers.h"

/**
 * @file
 * Tokens of two makers for the tests, new ones in a folder that goes with the test:
 *
 *     class MyTest : public TokenTest {};
 *     TEST_P(MyTest, opens) { EXPECT_GT(open(kPin), 0); }
 *     INSTANTIATE_TEST_SUITE_P(, MyTest, testing::ValuesIn(kVendors), vendorName);
 */

namespace zel::km::token {

/** The hooked SoftHSM is for tests that fail it on purpose (hooks.h). */
enum class Vendor { softHsm, nss, hookedSoftHsm };
inline constexpr Vendor kVendors[] = {Vendor::softHsm, Vendor::nss};

inline const char* nameOf(Vendor vendor) {
  switch (vendor) {
    case Vendor::softHsm:
      return "softHsm";
    case Vendor::nss:
      return "nss";
    case Vendor::hookedSoftHsm:
      break;
  }
  return "hookedSoftHsm";
}
inline std::string vendorName(const testing::TestParamInfo<Vendor>& info) {
  return nameOf(info.param);
}
inline void PrintTo(Vendor vendor, std::ostream* out) { *out << nameOf(vendor); }

/** A test with a new token. */
class TokenTest : public testing::TestWithParam<Vendor> {
 protected:
  TokenTest();
  ~TokenTest() override;

  /** A handle that is closed when the test ends; the negative result code when it fails. */
  int open(const char* pin);
  void close(int handle);

  KeyDbLocator locator(const char* pin) const;
  const std::string& moduleName() const { return moduleName_; }
  const std::string& label() const { return label_; }
  std::string path(const std::string& name) const { return folder_.path(name); }

  cms::TemporaryFolder folder_;

 private:
  std::string moduleName_;
  std::string label_;
  std::vector<int> handles_;
};

/** A locator of a token. */
KeyDbLocator tokenLocator(const std::string& moduleName, const char* label, const char* pin);

/** The labels of an operation that lists: `labels(&ZELKM_GetKeyDbLabelList, handle)`. */
std::vector<std::string> labels(int (*operation)(int, ZELKMLabelList**), int handle);
std::vector<std::string> tokenLabels(const std::string& moduleName);

}  // namespace zel::km::token

#endif  // ZEL_TESTS_ENGINE_TOKEN_TEST_TOKEN_H_
