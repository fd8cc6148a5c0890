#include "tests/recorder/recorder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "tests/recorder/readable.h"
#include "tests/recorder/watched_libc.h"

namespace zel::test {
namespace {

class RecorderTest : public testing::Test {
 protected:
  void SetUp() override {
    recorder().reset();
    watchedLibc().reset();
  }
  void TearDown() override { recorder().reset(); }
};

TEST_F(RecorderTest, KeepsTracesAndEventsInOneOrder) {
  {
    const BridgeCall call;
    std::fprintf(stderr, "file = %s\n", "a.kdb");
    recorder().event("something");
    std::fprintf(stderr, "no end");
    recorder().event("something else");
    std::printf("%d\n", 5);
  }
  EXPECT_EQ(
      recorder().transcript(),
      "trace file = a.kdb\nsomething\ntrace no end (no line end)\nsomething else\nstdout 5\n");
}

TEST_F(RecorderTest, WritesNamesForReferencesInTraces) {
  recorder().nameOfReference = [](uint64_t value) { return value == 0x12 ? "this" : ""; };
  recorder().streamed("trace", "a = 0x12, b = 0x0, c = 0x13\n");
  EXPECT_EQ(recorder().transcript(), "trace a = 0x{this}, b = 0x0, c = 0x13\n");
}

TEST_F(RecorderTest, SeesWhatIsNeverFreed) {
  {
    const BridgeCall call;
    void* volatile kept = std::malloc(10);
    EXPECT_NE(kept, nullptr);
    void* volatile freed = std::malloc(4);
    std::free(freed);
  }
  EXPECT_EQ(recorder().transcript(), "malloc(10) = block#1\nmalloc(4) = block#2\nfree(block#2)\n");
  EXPECT_EQ(recorder().owned.held(), std::vector<std::string>{"block#1"});
}

TEST_F(RecorderTest, TellsWhetherABlockWasWiped) {
  {
    const BridgeCall call;
    void* volatile block = std::malloc(4);
    explicit_bzero(block, 4);
    std::free(block);
  }
  EXPECT_EQ(recorder().transcript(), "malloc(4) = block#1\nfree(block#1 wiped)\n");
}

TEST_F(RecorderTest, LetsTheChosenAllocationFail) {
  recorder().faults.failCall(FaultPlan::kAllocation, 2);
  {
    const BridgeCall call;
    void* volatile first = std::malloc(1);
    void* volatile second = std::malloc(2);
    EXPECT_EQ(second, nullptr);
    std::free(first);
  }
  EXPECT_TRUE(recorder().faults.reached(FaultPlan::kAllocation));
  EXPECT_EQ(recorder().transcript(), "malloc(1) = block#1\nmalloc(2) = null\nfree(block#1)\n");
}

TEST_F(RecorderTest, LeavesWhatTheDoublesAllocateAlone) {
  const BridgeCall call;
  const HostCode host;
  std::free(std::malloc(1));
  EXPECT_EQ(recorder().transcript(), "");
}

TEST_F(RecorderTest, ReadsFilesFromMemory) {
  watchedLibc().addFile("a.der", {1, 2, 3});
  {
    const BridgeCall call;
    EXPECT_EQ(std::fopen("b.der", "rb"), nullptr);
    FILE* file = std::fopen("a.der", "rb");
    unsigned char bytes[8] = {};
    EXPECT_EQ(std::fread(bytes, 1, sizeof bytes, file), 3U);
    EXPECT_EQ(bytes[2], 3);
    std::fclose(file);
  }
  EXPECT_EQ(recorder().transcript(),
            "fopen(\"b.der\", \"rb\") = null\nfopen(\"a.der\", \"rb\")\nfread(1, 8) = 3\n"
            "fclose(file \"a.der\")\n");
  EXPECT_TRUE(recorder().owned.held().empty());
}

TEST_F(RecorderTest, CallsAWrongFreeAnError) {
  recorder().owned.takeAs(Kind::kText, this, "text#1");
  {
    const BridgeCall call;
    void* volatile notFromMalloc = this;
    std::free(notFromMalloc);
  }
  EXPECT_EQ(recorder().errors().size(), 1U);
  EXPECT_TRUE(recorder().owned.give(Kind::kText, this));
  EXPECT_FALSE(recorder().owned.give(Kind::kText, this));
}

TEST(Readable, ShortensLongBytes) {
  const unsigned char bytes[20] = {0x30, 0x82};
  EXPECT_EQ(inHex(bytes, 3), "[30 82 00]");
  EXPECT_EQ(inHex(bytes, 0), "[]");
  EXPECT_EQ(inHex(nullptr, 3), "null");
  EXPECT_EQ(inHex(bytes, 20), "[30 82 00 00 00 00 00 00 00 00 00 00 00 00 00 00 .. 20 bytes]");
}

}  // namespace
}  // namespace zel::test
