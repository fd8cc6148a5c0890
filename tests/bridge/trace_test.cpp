#include "bridge/frame/trace.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

namespace zel::bridge {
namespace {

class TraceTest : public testing::Test {
 protected:
  TraceTest() { debugMsgEnv = nullptr; }
  ~TraceTest() override {
    closeDebugLog();
    std::filesystem::remove(log_);
  }

  std::vector<std::string> linesOfTheLog() {
    std::ifstream file(log_);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

  std::filesystem::path log_ =
      std::filesystem::path(testing::TempDir()) / ("trace_" + std::to_string(getpid()) + ".log");
};

TEST_F(TraceTest, KeepsTheLinesOfManyThreadsWhole) {
  constexpr int kThreads = 8;
  constexpr int kLinesEach = 500;
  openDebugLog(log_.c_str());
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([thread] {
      for (int line = 0; line < kLinesEach; ++line) {
        traceMessage("thread %d line %d of %s\n", thread, line, "many");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  closeDebugLog();

  const auto lines = linesOfTheLog();
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kLinesEach));
  const std::regex whole("[0-9|:]{17} \\|\\| thread \\d line \\d+ of many");
  for (const std::string& line : lines) EXPECT_TRUE(std::regex_match(line, whole)) << line;
}

}  // namespace
}  // namespace zel::bridge
