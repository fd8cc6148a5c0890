#include "engine/sys/trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/engine/cms/tools.h"

namespace zel::sys {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

class TraceTest : public testing::Test {
 protected:
  ~TraceTest() override { stopTrace(); }

  std::string path(const std::string& name) const { return folder_.path(name); }
  std::string contentOf(const std::string& name) const {
    const Bytes bytes = folder_.read(name);
    return {bytes.begin(), bytes.end()};
  }
  std::vector<std::string> linesOf(const std::string& name) const {
    std::istringstream content(contentOf(name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(content, line);) lines.push_back(line);
    return lines;
  }
  int firstNumberOf(const std::string& name) const {
    const std::string line = linesOf(name).front();
    return std::stoi(line.substr(line.find("line ") + 5));
  }
  void start(const std::string& name, TraceSettings settings = {}) {
    ASSERT_TRUE(startTrace("tag", path(name).c_str(), settings));
  }

  cms::TemporaryFolder folder_;
};

TEST_F(TraceTest, WritesNothingBeforeItStarts) {
  traceLine("unheard");
  start("trace");
  EXPECT_EQ(contentOf("trace"), "");
}

TEST_F(TraceTest, WritesALineWithItsComponent) {
  start("trace");
  traceLine("handle %d", 7);
  ASSERT_THAT(linesOf("trace"), SizeIs(1));
  EXPECT_THAT(linesOf("trace")[0], EndsWith(" tag handle 7"));
}

TEST_F(TraceTest, SaysWhyInTheSameBreathAsTheCode) {
  start("trace");
  EXPECT_EQ(fail(ZELKM_ERR_IO, "%s is full", "disk").code, ZELKM_ERR_IO);
  EXPECT_THAT(contentOf("trace"), HasSubstr("disk is full"));
}

TEST_F(TraceTest, KeepsALineALine) {
  start("trace");
  traceLine("label \"%s\"", "first\nsecond\x1b[2J");
  ASSERT_THAT(linesOf("trace"), SizeIs(1));
  EXPECT_THAT(linesOf("trace")[0], HasSubstr("first?second?[2J"));
}

TEST_F(TraceTest, CutsAMessageThatIsTooLong) {
  start("trace");
  traceLine("%s", std::string(10'000, 'x').c_str());
  ASSERT_THAT(linesOf("trace"), SizeIs(1));
  EXPECT_LT(linesOf("trace")[0].size(), 3000U);
}

TEST_F(TraceTest, LetsOnlyTheOwnerRead) {
  start("trace");
  struct stat status {};
  ASSERT_EQ(::stat(path("trace").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(TraceTest, ContinuesAnEarlierFile) {
  start("trace");
  traceLine("one");
  stopTrace();
  start("trace");
  traceLine("two");
  EXPECT_THAT(linesOf("trace"), SizeIs(2));
}

TEST_F(TraceTest, WritesToEveryFileThatWasStarted) {
  start("first");
  start("second");
  start("first");
  traceLine("once in each");
  EXPECT_THAT(linesOf("first"), SizeIs(1));
  EXPECT_THAT(linesOf("second"), SizeIs(1));
}

TEST_F(TraceTest, KeepsSoManyOlderFiles) {
  start("trace", {.olderFiles = 2, .kibibytesPerFile = 1});
  for (int line = 0; line < 100; ++line)
    traceLine("line %d %s", line, std::string(100, 'x').c_str());
  EXPECT_TRUE(std::filesystem::exists(path("trace.1")));
  EXPECT_TRUE(std::filesystem::exists(path("trace.2")));
  EXPECT_FALSE(std::filesystem::exists(path("trace.3")));
  EXPECT_THAT(linesOf("trace").back(), HasSubstr("line 99 "));
  EXPECT_LT(contentOf("trace.1").size(), 1024U + 300U);
  EXPECT_LT(firstNumberOf("trace.2"), firstNumberOf("trace.1"));
  EXPECT_LT(firstNumberOf("trace.1"), firstNumberOf("trace"));
}

TEST_F(TraceTest, StartsAfreshWhenNoOlderFileIsKept) {
  start("trace", {.olderFiles = 0, .kibibytesPerFile = 1});
  for (int line = 0; line < 100; ++line)
    traceLine("line %d %s", line, std::string(100, 'x').c_str());
  EXPECT_FALSE(std::filesystem::exists(path("trace.1")));
  EXPECT_LT(contentOf("trace").size(), 1024U + 300U);
  EXPECT_THAT(contentOf("trace"), HasSubstr("line 99 "));
}

TEST_F(TraceTest, DoesNotMixLinesOfThreads) {
  start("trace", {.olderFiles = 0, .kibibytesPerFile = 0});
  const std::string text(200, 'y');
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&] {
      for (int line = 0; line < 200; ++line) traceLine("%s", text.c_str());
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::vector<std::string> lines = linesOf("trace");
  ASSERT_THAT(lines, SizeIs(1600));
  EXPECT_TRUE(std::ranges::all_of(
      lines, [&](const std::string& line) { return line.ends_with(" tag " + text); }));
}

TEST_F(TraceTest, RefusesAFileThatCannotBe) {
  EXPECT_EQ(startTrace("tag", path("none/trace").c_str(), {}).code(), ZELKM_ERR_FILE_OPEN_TO_WRITE);
  EXPECT_EQ(startTrace("tag", "", {}).code(), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(startTrace(nullptr, "x", {}).code(), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(startTrace("tag", nullptr, {}).code(), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(startTrace("tag", "/dev/null", {}).code(), ZELKM_ERR_FILE_OPEN_TO_WRITE);
}

TEST_F(TraceTest, FollowsNoLink) {
  folder_.write("target", {});
  std::filesystem::create_symlink(path("target"), path("link"));
  EXPECT_EQ(startTrace("tag", path("link").c_str(), {}).code(), ZELKM_ERR_FILE_OPEN_TO_WRITE);
}

}  // namespace
}  // namespace zel::sys
