#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/engine/token/hooks.h"
#include "tests/engine/token/token_store_test.h"

// A module is shared by a whole process: others in it, threads, and its end.

#if defined(__SANITIZE_ADDRESS__)
// OpenSC's spy, which stands before a module here, never frees its list of functions.
extern "C" __attribute__((visibility("default"))) const char*
__lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:pkcs11-spy.so\n";
}
#endif

namespace zel::km::token {

namespace {

/** Somebody else in the process who uses the same module. */
class SomebodyElse {
 public:
  SomebodyElse() : functions_(rawModule(kSoftHsmModule)) {}
  ~SomebodyElse() {
    if (hasInitialised_) finalise();
  }
  SomebodyElse(const SomebodyElse&) = delete;
  SomebodyElse& operator=(const SomebodyElse&) = delete;

  CK_RV initialise() {
    CK_C_INITIALIZE_ARGS arguments{};
    arguments.flags = CKF_OS_LOCKING_OK;
    hasInitialised_ = true;
    return functions_->C_Initialize(&arguments);
  }
  CK_RV finalise() {
    hasInitialised_ = false;
    return functions_->C_Finalize(nullptr);
  }
  bool isInitialised() const {
    CK_INFO info{};
    return functions_->C_GetInfo(&info) == CKR_OK;
  }
  CK_SESSION_HANDLE openSession() const {
    CK_SLOT_ID slots[8];
    CK_ULONG count = 8;
    EXPECT_EQ(functions_->C_GetSlotList(CK_TRUE, &slots[0], &count), CKR_OK);
    CK_SESSION_HANDLE session = CK_INVALID_HANDLE;
    EXPECT_EQ(functions_->C_OpenSession(slots[0], CKF_SERIAL_SESSION | CKF_RW_SESSION, nullptr,
                                        nullptr, &session),
              CKR_OK);
    return session;
  }
  CK_RV logIn(CK_SESSION_HANDLE session) const {
    std::string pin = kPin;
    return functions_->C_Login(session, CKU_USER, reinterpret_cast<CK_UTF8CHAR_PTR>(pin.data()),
                               pin.size());
  }
  bool isLoggedIn(CK_SESSION_HANDLE session) const {
    CK_SESSION_INFO info{};
    return functions_->C_GetSessionInfo(session, &info) == CKR_OK &&
           info.state == CKS_RW_USER_FUNCTIONS;
  }
  void close(CK_SESSION_HANDLE session) const { functions_->C_CloseSession(session); }

 private:
  CK_FUNCTION_LIST* functions_;
  bool hasInitialised_ = false;
};

class TokenProcess : public TokenTest {
 protected:
  SomebodyElse somebodyElse_;
};

TEST_P(TokenProcess, aModuleIsFinalisedWhenTheLastHandleCloses) {
  const int first = open(kPin);
  const int second = open(kPin);
  close(first);
  EXPECT_TRUE(somebodyElse_.isInitialised());
  close(second);
  EXPECT_FALSE(somebodyElse_.isInitialised());
}

TEST_P(TokenProcess, aModuleThatSomebodyElseInitialisedStaysSo) {
  ASSERT_EQ(somebodyElse_.initialise(), CKR_OK);
  close(open(kPin));
  EXPECT_TRUE(somebodyElse_.isInitialised());
  EXPECT_EQ(somebodyElse_.finalise(), CKR_OK);
  close(open(kPin));
}

TEST_P(TokenProcess, theLoginOfSomebodyElseProvesNothing) {
  ASSERT_EQ(somebodyElse_.initialise(), CKR_OK);
  const CK_SESSION_HANDLE session = somebodyElse_.openSession();
  ASSERT_EQ(somebodyElse_.logIn(session), CKR_OK);
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
  EXPECT_EQ(open(kPin), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
  EXPECT_TRUE(somebodyElse_.isLoggedIn(session));
  somebodyElse_.close(session);
  EXPECT_GT(open(kPin), 0);
}

TEST_P(TokenProcess, aLoginThatSomebodyElseKeepsAliveIsKnownAgain) {
  ASSERT_EQ(somebodyElse_.initialise(), CKR_OK);
  const CK_SESSION_HANDLE session = somebodyElse_.openSession();
  close(open(kPin));
  EXPECT_TRUE(somebodyElse_.isLoggedIn(session));
  EXPECT_EQ(open(kWrongPin), -ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_GT(open(kPin), 0);
}

TEST_P(TokenProcess, closingAHandleLogsNobodyOut) {
  const int first = open(kPin);
  const int second = open(kPin);
  const CK_SESSION_HANDLE session = somebodyElse_.openSession();
  close(first);
  EXPECT_TRUE(somebodyElse_.isLoggedIn(session));
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, second), testing::IsEmpty());
}

TEST_P(TokenProcess, manyThreadsWorkOnOneTokenAndOnlyThePinOpensIt) {
  constexpr int kThreads = 16;
  std::atomic<int> wrongAnswers = 0;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([this, number, &wrongAnswers] {
      for (int round = 0; round < 4; ++round) {
        const bool hasPin = (number + round) % 4 != 0;
        const KeyDbLocator named = locator(hasPin ? kPin : kWrongPin);
        int handle = 0;
        const int code = ZELKM_OpenKeyDbX(&named, &handle);
        if (code != (hasPin ? ZELKM_OK : ZELKM_ERR_DATABASE_INVALID_PASSWORD)) ++wrongAnswers;
        if (code != ZELKM_OK) continue;
        ZELKMLabelList* list = nullptr;
        if (ZELKM_GetReqKeyDbLabelList(handle, &list) != ZELKM_OK) ++wrongAnswers;
        ZELKM_FreeLabelList(list);
        if (ZELKM_CloseKeyDb(handle) != ZELKM_OK) ++wrongAnswers;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrongAnswers, 0);
}

using TokenProcessDeathTest = TokenProcess;

TEST_P(TokenProcessDeathTest, aProcessEndsCleanlyWithAnOpenToken) {
  const auto work = [this] {
    if (open(kPin) <= 0) std::exit(2);
    std::exit(0);
  };
  EXPECT_EXIT(work(), testing::ExitedWithCode(0), "");
}

TEST_P(TokenProcessDeathTest, aProcessEndsCleanlyAfterATokenWasClosed) {
  const auto work = [this] {
    const int handle = open(kPin);
    if (handle <= 0) std::exit(2);
    close(handle);
    std::exit(0);
  };
  EXPECT_EXIT(work(), testing::ExitedWithCode(0), "");
}

TEST_P(TokenProcessDeathTest, noModuleIsCalledWhileTheProcessExits) {
  // OpenSC's spy stands before the module and writes down every call.
  const std::string module = moduleName().substr(0, moduleName().find('?'));
  const std::string spy = "pkcs11-spy.so" + moduleName().substr(module.size());
  const std::string log = path("spy.log");
  setenv("PKCS11SPY", module.c_str(), 1);
  setenv("PKCS11SPY_OUTPUT", log.c_str(), 1);
  const auto work = [&] {
    const KeyDbLocator named = tokenLocator(spy, label().c_str(), kPin);
    int open = 0;
    int closed = 0;
    if (ZELKM_OpenKeyDbX(&named, &open) != ZELKM_OK) std::exit(2);
    if (ZELKM_OpenKeyDbX(&named, &closed) != ZELKM_OK) std::exit(3);
    ZELKM_CloseKeyDb(closed);
    std::filesystem::copy_file(log, path("before exit.log"));
    std::exit(0);
  };
  EXPECT_EXIT(work(), testing::ExitedWithCode(0), "");
  const sys::Bytes calls = folder_.read("spy.log");
  EXPECT_NE(std::string(calls.begin(), calls.end()).find("C_Login"), std::string::npos);
  EXPECT_EQ(calls, folder_.read("before exit.log"));
}

INSTANTIATE_TEST_SUITE_P(, TokenProcess, testing::Values(Vendor::softHsm), vendorName);
INSTANTIATE_TEST_SUITE_P(, TokenProcessDeathTest, testing::ValuesIn(kVendors), vendorName);

}  // namespace

}  // namespace zel::km::token
