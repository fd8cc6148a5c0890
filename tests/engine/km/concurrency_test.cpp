#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/engine/km/key_database.h"

namespace zel::km {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 50;

class ConcurrencyTest : public KeyDatabaseTest {
 protected:
  /** Runs the body on many threads; it answers whether all was well. */
  template <typename Body>
  int failuresOf(Body&& body) {
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&] {
        for (int round = 0; round < kRounds; ++round) {
          if (!body()) ++failures;
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    return failures;
  }

  static bool lists(int handle) {
    ZELKMLabelList* list = nullptr;
    const int code = ZELKM_GetKeyDbLabelList(handle, &list);
    ZELKM_FreeLabelList(list);
    return code == ZELKM_OK;
  }
};

TEST_F(ConcurrencyTest, ManyThreadsUseOneHandle) {
  EXPECT_EQ(failuresOf([&] { return lists(handle_); }), 0);
}

TEST_F(ConcurrencyTest, ManyThreadsUseHandlesOfTheirOwn) {
  EXPECT_EQ(failuresOf([&] {
              int handle = 0;
              if (ZELKM_OpenKeyDb(file_.c_str(), kPassword, &handle) != ZELKM_OK) return false;
              const bool listed = lists(handle);
              return ZELKM_CloseKeyDb(handle) == ZELKM_OK && listed;
            }),
            0);
}

TEST_F(ConcurrencyTest, OneThreadClosesWhatOthersUse) {
  std::atomic<int> handle = handle_;
  EXPECT_EQ(failuresOf([&] {
              int next = 0;
              if (ZELKM_OpenKeyDb(file_.c_str(), kPassword, &next) != ZELKM_OK) return false;
              ZELKM_CloseKeyDb(handle.exchange(next));
              ZELKMLabelList* list = nullptr;
              const int code = ZELKM_GetKeyDbLabelList(handle, &list);
              ZELKM_FreeLabelList(list);
              return code == ZELKM_OK || code == ZELKM_ERR_INVALID_DB_HANDLE;
            }),
            0);
  ZELKM_CloseKeyDb(handle);
}

TEST_F(ConcurrencyTest, ManyThreadsCreateOneFileOnlyOnce) {
  std::atomic<int> created = 0;
  std::atomic<int> refused = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&] {
      int handle = 0;
      const int code = ZELKM_CreateNewKeyDb(path("new.kdb").c_str(), kPassword, 0, &handle);
      if (code == ZELKM_OK) ++created;
      if (code == ZELKM_ERR_DATABASE_ALREADY_EXISTS) ++refused;
      ZELKM_CloseKeyDb(handle);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(created, 1);
  EXPECT_EQ(refused, kThreads - 1);
}

TEST_F(ConcurrencyTest, CleaningUpDisturbsNobody) {
  std::atomic<bool> over = false;
  std::thread cleaner([&] {
    while (!over) {
      ZELKM_CleanAll();
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
  for (int round = 0; round < 10; ++round) {
    int handle = 0;
    EXPECT_EQ(ZELKM_OpenKeyDb(file_.c_str(), kPassword, &handle), ZELKM_OK);
    ZELKM_CloseKeyDb(handle);
  }
  over = true;
  cleaner.join();
}

}  // namespace
}  // namespace zel::km
