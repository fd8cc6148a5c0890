#include "bridge/frame/library_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace zel::bridge {
namespace {

TEST(LibraryPath, IsTheResolvedPathOfTheFileThatHoldsTheCode) {
  const std::unique_ptr<char, decltype(&std::free)> path(getLibraryPath(), &std::free);
  // The tests have the bridge in the program itself.
  EXPECT_STREQ(path.get(), std::filesystem::canonical("/proc/self/exe").c_str());
}

}  // namespace
}  // namespace zel::bridge
