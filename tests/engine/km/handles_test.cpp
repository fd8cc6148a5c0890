#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

namespace fs = std::filesystem;

std::int64_t openDescriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

std::int64_t residentBytes() {
  std::ifstream statm("/proc/self/statm");
  std::int64_t total = 0;
  std::int64_t resident = 0;
  statm >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

class HandlesTest : public KeyDatabaseTest {
 protected:
  int open(const std::string& file) {
    int handle = 0;
    EXPECT_EQ(ZELKM_OpenKeyDb(file.c_str(), kPassword, &handle), ZELKM_OK);
    opened_.push_back(handle);
    return handle;
  }
  /** Opens so many handles, uses each once, and answers how far memory grew. */
  std::int64_t growthOf(int count) {
    const std::int64_t before = residentBytes();
    for (int each = 0; each < count && !HasFailure(); ++each) {
      EXPECT_TRUE(keyLabelsOf(open(file_)).empty());
    }
    return residentBytes() - before;
  }
  ~HandlesTest() override {
    for (const int handle : opened_) ZELKM_CloseKeyDb(handle);
  }

  std::vector<int> opened_;
};

TEST_F(HandlesTest, CostLittleWhenNobodyClosesThem) {
  growthOf(200);
  const std::int64_t descriptors = openDescriptors();
  const std::int64_t growth = growthOf(2000);
  EXPECT_LE(openDescriptors(), descriptors);
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  (void)growth;  // the sanitizer's own memory grows with every allocation
#else
  EXPECT_LT(growth, 2000 * 1024);
#endif
}

// Takes half a minute; script/soak runs it.
TEST_F(HandlesTest, DISABLED_CostLittleAHundredThousandTimes) {
  growthOf(200);
  const std::int64_t descriptors = openDescriptors();
  const std::int64_t growth = growthOf(100'000);
  EXPECT_LE(openDescriptors(), descriptors);
  EXPECT_LT(growth, 100'000 * 512);
  RecordProperty("bytesPerHandle", std::to_string(growth / 100'000));
  std::printf("%ld bytes per handle\n", static_cast<long>(growth / 100'000));
}

TEST_F(HandlesTest, ShareAFewConnectionsAmongManyFiles) {
  const std::int64_t descriptors = openDescriptors();
  for (int copy = 0; copy < 20; ++copy) {
    const std::string name = path(std::to_string(copy) + ".kdb");
    fs::copy_file(file_, name);
    open(name);
  }
  for (const int handle : opened_) EXPECT_TRUE(keyLabelsOf(handle).empty());
  EXPECT_LE(openDescriptors(), descriptors + 16);
}

TEST_F(HandlesTest, LeaveNoDescriptorWhenClosed) {
  ASSERT_EQ(ZELKM_CloseKeyDb(handle_), ZELKM_OK);
  const std::int64_t descriptors = openDescriptors();
  for (int each = 0; each < 50; ++each) ASSERT_EQ(openAndClose(kPassword), ZELKM_OK);
  EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(HandlesTest, HoldNoLockBetweenOperations) {
  EXPECT_TRUE(keyLabelsOf(handle_).empty());
  const cms::CommandResult other =
      cms::run("python3 -c 'import sqlite3; c = sqlite3.connect(\"" + file_ +
               "\", timeout=0); c.execute(\"begin exclusive\"); c.rollback()'");
  EXPECT_EQ(other.exitCode, 0) << other.output;
}

}  // namespace
}  // namespace zel::km
