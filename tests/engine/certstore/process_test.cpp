#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "tests/engine/certstore/test_stores.h"

namespace zel::km::certstore {
namespace {

using testing::SizeIs;

/** Several writers on one store. */
class StoreProcesses : public StoreTest {
 protected:
  static constexpr int kWriters = 4;
  static constexpr int kRounds = 5;

  /** Inserts entries and deletes every second one again; answers how many operations failed. */
  static int work(int writer) {
    const KeyDbLocator named = locator(kMy);
    int handle = 0;
    int failures = ZELKM_OpenKeyDbX(&named, &handle) == ZELKM_OK ? 0 : 1;
    for (int round = 0; round < kRounds; ++round) {
      const std::string label = std::to_string(writer) + "." + std::to_string(round);
      const cms::TestAuthority owner(label);
      if (insert(handle, label.c_str(), owner) != ZELKM_OK) ++failures;
      if (round % 2 == 1 && ZELKM_DeleteKey(handle, label.c_str()) != ZELKM_OK) ++failures;
    }
    ZELKM_CloseKeyDb(handle);
    return failures;
  }
};

TEST_F(StoreProcesses, WriteSideBySide) {
  std::vector<pid_t> children;
  for (int writer = 0; writer < kWriters; ++writer) {
    const pid_t child = fork();
    if (child == 0) _exit(work(writer));
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }
  EXPECT_THAT(labels(open(kMy)), SizeIs(kWriters * 3));
  EXPECT_THAT(files(), SizeIs(kWriters * 3));
}

TEST_F(StoreProcesses, HaveThreadsThatWriteSideBySide) {
  std::vector<std::thread> threads;
  std::vector<int> failures(kWriters);
  for (int writer = 0; writer < kWriters; ++writer) {
    threads.emplace_back(
        [&, writer] { failures[static_cast<std::size_t>(writer)] = work(writer); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(failures, testing::Each(0));
  EXPECT_THAT(labels(open(kMy)), SizeIs(kWriters * 3));
}

TEST_F(StoreProcesses, GiveALabelToOneOfThemOnly) {
  const cms::TestAuthority owners[] = {cms::TestAuthority("a"), cms::TestAuthority("b"),
                                       cms::TestAuthority("c"), cms::TestAuthority("d")};
  std::vector<std::thread> threads;
  std::vector<int> codes(kWriters);
  for (std::size_t writer = 0; writer < kWriters; ++writer) {
    const int handle = open(kMy);
    threads.emplace_back(
        [&, handle, writer] { codes[writer] = insert(handle, "web", owners[writer]); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::ranges::count(codes, ZELKM_OK), 1);
  EXPECT_EQ(std::ranges::count(codes, ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL), kWriters - 1);
  EXPECT_THAT(files(), SizeIs(1));
}

}  // namespace
}  // namespace zel::km::certstore
