#include "bridge/frame/library_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/recorder/recorder.h"
#include "tests/recorder/watched_libc.h"

namespace zel::test {
namespace {

class LibraryPath : public testing::Test {
 protected:
  LibraryPath() { reset(); }
  ~LibraryPath() override { reset(); }

  /** path() asks for the path as a native would; "null" is none. */
  static std::string path() {
    const BridgeCall bridge;
    char* path = bridge::getLibraryPath();
    const std::string found = path == nullptr ? "null" : path;
    std::free(path);
    return found;
  }

 private:
  static void reset() {
    recorder().reset();
    watchedLibc().reset();
  }
};

/** The tests have the bridge in the program itself. */
TEST_F(LibraryPath, IsTheResolvedPathOfTheFileThatHoldsTheCode) {
  EXPECT_EQ(path(), std::filesystem::canonical("/proc/self/exe"));
}

TEST_F(LibraryPath, IsEmptyForCodeThatIsInNoFile) {
  watchedLibc().loadedFromFile = false;
  EXPECT_EQ(path(), "");
}

TEST_F(LibraryPath, IsNullWithoutMemory) {
  recorder().faults.failCall("malloc", 1);
  EXPECT_EQ(path(), "null");
}

}  // namespace
}  // namespace zel::test
