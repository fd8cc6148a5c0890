#include "bridge/frame/trace.h"

#include <cstdlib>

#include "bridge/frame/load.h"
#include "com_nelo_zel_vosmar_basic_KMSystem.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

/** The trace operation and its two sinks. */
class Trace : public NativeTest {
 protected:
  Trace() : NativeTest("KMSystem") {}
  ~Trace() override { switchLogOff(); }

  static void switchLogOn() {
    const BridgeCall bridge;
    bridge::openDebugLog("vsmjdbg.log");
  }
  static void switchLogOff() {
    const BridgeCall bridge;
    bridge::closeDebugLog();
  }
};

TEST_F(Trace, IsSilentWithBothSinksOff) {
  bridge::debugMsgEnv = nullptr;
  EXPECT_FALSE(bridge::isTracing());
  int evaluated = 0;
  {
    const BridgeCall bridge;
    traceMessage("%d\n", ++evaluated);
  }
  EXPECT_EQ(evaluated, 0);
  EXPECT_TRANSCRIPT("");
}

TEST_F(Trace, IsOnForAnEmptyValueOfTheVariable) {
  bridge::debugMsgEnv = "";
  {
    const BridgeCall bridge;
    traceMessage("JNI_DEBUG......certCnt = %d\n", 3);
  }
  EXPECT_TRANSCRIPT("trace JNI_DEBUG......certCnt = 3");
}

TEST_F(Trace, PrintsANullTextAsNull) {
  const BridgeCall bridge;
  traceMessage("a = %s\n", bridge::orNull(nullptr));
  traceMessage("b = %s\n", bridge::orNull("text"));
  traceMessage("c = %s\n", bridge::nullOrNot(nullptr));
  traceMessage("d = %s\n", bridge::nullOrNot(this));
  EXPECT_TRANSCRIPT(R"(
    trace a = null
    trace b = text
    trace c = NULL
    trace d = NON-NULL
  )");
}

TEST_F(Trace, GoesToStandardErrorFirstAndExpandsAlikeInBothSinks) {
  switchLogOn();
  {
    const BridgeCall bridge;
    traceMessage("%d%% of %s\n", 50, "100 %s");
  }
  EXPECT_TRANSCRIPT(R"(
    fopen("vsmjdbg.log", "w+t")
    trace 50% of 100 %s
    malloc(161) = block#1
    vsmjdbg.log 20240229|23:59:58 || 50% of 100 %s
  )");
}

TEST_F(Trace, ReplacesItsFormatOnEveryLineOfTheLog) {
  bridge::debugMsgEnv = nullptr;
  switchLogOn();
  {
    const BridgeCall bridge;
    traceMessage("one\n");
    watchedLibc().now += 3;
    traceMessage("two\n");
  }
  EXPECT_TRANSCRIPT(R"(
    fopen("vsmjdbg.log", "w+t")
    malloc(154) = block#1
    vsmjdbg.log 20240229|23:59:58 || one
    free(block#1)
    malloc(154) = block#2
    vsmjdbg.log 20240301|00:00:01 || two
  )");
}

TEST_F(Trace, WritesOnlyToStandardErrorAfterTheLogIsClosed) {
  switchLogOn();
  switchLogOff();
  {
    const BridgeCall bridge;
    bridge::staticFini();
  }
  EXPECT_TRANSCRIPT(R"(
    fopen("vsmjdbg.log", "w+t")
    fclose(file "vsmjdbg.log")
    trace JNI_DEBUG......staticFini: DLL_PROCESS_DETACH
  )");
}

TEST_F(Trace, LosesALogLineWithoutMemoryAndGoesOn) {
  bridge::debugMsgEnv = nullptr;
  switchLogOn();
  recorder().faults.failCall("malloc", 1);
  {
    const BridgeCall bridge;
    traceMessage("one\n");
    traceMessage("two\n");
  }
  EXPECT_TRANSCRIPT(R"(
    fopen("vsmjdbg.log", "w+t")
    malloc(154) = null
    malloc(154) = block#1
    vsmjdbg.log 20240229|23:59:58 || two
  )");
}

}  // namespace
}  // namespace zel::test
