#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "engine/km/token/call_turn.h"
#include "engine/km/token/module.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/token/hooks.h"
#include "tests/engine/token/test_token.h"

// Turns, over threads and processes.

namespace zel::km::token {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/** A process that keeps the turn of a module until it is ended. */
class Keeper {
 public:
  explicit Keeper(const std::string& moduleFile) {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    process_ = fork();
    if (process_ == 0) {
      Turns turns(moduleFile);
      const CallTurn turn(turns);
      if (write(ready[1], "+", 1) != 1) std::_Exit(1);
      for (;;) pause();
    }
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
    close(ready[1]);
  }
  ~Keeper() { end(); }
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;

  void end() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }

 private:
  pid_t process_ = 0;
};

/** Where this test has its locks, apart from all others. */
class RuntimeFolder {
 public:
  explicit RuntimeFolder(const std::string& path) {
    if (const char* value = std::getenv(kName)) old_ = value;
    setenv(kName, path.c_str(), 1);
  }
  ~RuntimeFolder() {
    if (old_) {
      setenv(kName, old_->c_str(), 1);
    } else {
      unsetenv(kName);
    }
  }
  RuntimeFolder(const RuntimeFolder&) = delete;
  RuntimeFolder& operator=(const RuntimeFolder&) = delete;

 private:
  static constexpr const char* kName = "XDG_RUNTIME_DIR";

  std::optional<std::string> old_;
};

class TokenTurns : public testing::Test {
 protected:
  std::string module(const std::string& name) {
    folder_.write(name, {});
    return folder_.path(name);
  }

  cms::TemporaryFolder folder_;
  RuntimeFolder locks_{folder_.path("")};
};

TEST_F(TokenTurns, whoHasTheTurnMayTakeItAgain) {
  Turns turns(module("a.so"));
  const CallTurn turn(turns);
  const CallTurn again(turns);
  EXPECT_TRUE(turn.had());
  EXPECT_TRUE(again.had());
}

TEST_F(TokenTurns, threadsWaitForEachOther) {
  Turns turns(module("a.so"), 0ms);
  std::atomic<int> inside = 0;
  std::atomic<int> met = 0;
  constexpr int kThreads = 8;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&] {
      const CallTurn turn(turns);
      if (!turn.had() || ++inside > 1) ++met;
      std::this_thread::sleep_for(2ms);
      --inside;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(met, 0);
}

TEST_F(TokenTurns, anotherProcessIsNotWaitedForWithoutEnd) {
  const std::string file = module("a.so");
  const Keeper keeper(file);
  Turns turns(file, 100ms);
  const Clock::time_point begun = Clock::now();
  const CallTurn turn(turns);
  EXPECT_FALSE(turn.had());
  const CallTurn again(turns);
  EXPECT_FALSE(again.had()) << "what was not had is not had within itself";
  EXPECT_GE(Clock::now() - begun, 100ms);
  EXPECT_LT(Clock::now() - begun, 10s);
}

TEST_F(TokenTurns, aTurnEndsWithItsProcess) {
  const std::string file = module("a.so");
  Keeper keeper(file);
  Turns turns(file, 10s);
  std::thread ending([&] {
    std::this_thread::sleep_for(50ms);
    keeper.end();
  });
  const CallTurn turn(turns);
  ending.join();
  EXPECT_TRUE(turn.had());
}

TEST_F(TokenTurns, eachModuleFileHasItsOwn) {
  const std::string file = module("a.so");
  const Keeper keeper(file);
  Turns other(module("b.so"), 0ms);
  EXPECT_TRUE(CallTurn(other).had());

  std::filesystem::create_symlink(file, folder_.path("link.so"));
  Turns same(folder_.path("link.so"), 0ms);
  EXPECT_FALSE(CallTurn(same).had()) << "two names of one file are one";
}

TEST_F(TokenTurns, whereNoFileCanBeLockedProcessesDoWithout) {
  const RuntimeFolder nowhere(folder_.path("no/such/folder"));
  Turns turns(module("a.so"), 0ms);
  EXPECT_TRUE(CallTurn(turns).had());
}

/** Four processes that want the turn all the time, each of them gets on. */
TEST_F(TokenTurns, noProcessTakesTheTurnsOfTheOthers) {
  constexpr int kProcesses = 4;
  constexpr int kTurns = 25;
  const std::string file = module("a.so");
  const Clock::time_point longest = Clock::now() + 60s;
  std::vector<pid_t> processes;
  for (int number = 0; number < kProcesses; ++number) {
    const pid_t process = fork();
    if (process == 0) {
      Turns turns(file);
      for (int had = 0; had < kTurns && Clock::now() < longest;) {
        const CallTurn turn(turns);
        if (!turn.had()) std::_Exit(1);
        std::this_thread::sleep_for(1ms);
        ++had;
      }
      std::_Exit(Clock::now() < longest ? 0 : 2);
    }
    processes.push_back(process);
  }
  for (const pid_t process : processes) {
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
  }
}

/** A module whose callers have little patience. */
class TokenTurnsOfModule : public TokenTest {
 protected:
  sys::Result<std::shared_ptr<Module>> openModule() {
    return Module::open({.library = &library_, .arguments = {}});
  }
  static CK_RV countSlots(const Module& module) {
    CK_ULONG count = 0;
    return module.call(&CK_FUNCTION_LIST::C_GetSlotList, CK_BBOOL(CK_TRUE), nullptr, &count);
  }
  bool isInitialised() const {
    CK_INFO info{};
    return library_.functions->C_GetInfo(&info) == CKR_OK;
  }

  RuntimeFolder locks_{path("")};
  Library library_{rawModule(kSoftHsmModule), kSoftHsmModule, 50ms};
};

TEST_P(TokenTurnsOfModule, aModuleThatAnotherProcessKeepsDoesNotOpen) {
  const Keeper keeper(kSoftHsmModule);
  EXPECT_EQ(openModule().code(), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
  EXPECT_FALSE(isInitialised());
}

TEST_P(TokenTurnsOfModule, itIsNotCalledButCloses) {
  std::shared_ptr<Module> module = openModule().value();
  EXPECT_EQ(countSlots(*module), CKR_OK);
  Keeper keeper(kSoftHsmModule);
  EXPECT_EQ(countSlots(*module), kNoTurn);
  EXPECT_EQ(cryptokiFailure(kNoTurn, "be called").code,
            ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
  keeper.end();
  EXPECT_EQ(countSlots(*module), CKR_OK);
  const Keeper another(kSoftHsmModule);
  module = nullptr;
  EXPECT_FALSE(isInitialised());
}

INSTANTIATE_TEST_SUITE_P(, TokenTurnsOfModule, testing::Values(Vendor::softHsm), vendorName);

}  // namespace

}  // namespace zel::km::token
