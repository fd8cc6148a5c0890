#include <gtest/gtest.h>
#include <openssl/x509.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>
#include <thread>

#include "engine/cms/openssl_ptr.h"
#include "tests/engine/operations/database.h"
#include "tests/engine/token/hooks.h"
#include "tests/engine/token/test_token.h"

// Four processes of sixteen threads on one token: every answer is right, and nobody gets in on the
// PIN of another. A fifth process looks on.

namespace zel::km::token {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kProcesses = 4;
constexpr int kThreads = 16;
constexpr const char* kSteady = "steady";

/** What the threads of one process did, and what they should not have got. */
class Tally {
 public:
  void count(const std::string& what) {
    std::lock_guard lock(mutex_);
    ++counts_[what];
  }
  void expect(bool holds, const std::string& what) {
    if (!holds) count("WRONG: " + what);
  }
  void expectCode(int code, int wanted, const std::string& what) {
    expect(code == wanted, what + " is " + std::to_string(code));
  }
  /** Adds what another process wrote. */
  void read(const std::string& file) {
    std::ifstream lines(file);
    long number = 0;
    std::string what;
    while (lines >> number && std::getline(lines >> std::ws, what)) counts_[what] += number;
  }
  void write(const std::string& file) const {
    std::ofstream lines(file);
    for (const auto& [what, number] : counts_) lines << number << ' ' << what << '\n';
  }
  void print() const {
    for (const auto& [what, number] : counts_) std::printf("%8ld %s\n", number, what.c_str());
  }
  bool has(const std::string& what) const { return counts_.contains(what); }
  bool isRight() const {
    return std::none_of(counts_.begin(), counts_.end(),
                        [](const auto& entry) { return entry.first.starts_with("WRONG"); });
  }

 private:
  std::mutex mutex_;
  std::map<std::string, long> counts_;
};

/** The certificate's bytes, and whether they are signed by their own key. */
bool isSignedByItself(const ZELKMCertItem& item) {
  const unsigned char* at = item.certDer;
  const std::unique_ptr<X509, cms::Releaser<X509_free>> certificate(
      d2i_X509(nullptr, &at, static_cast<long>(item.certDerLength)));
  return certificate != nullptr &&
         X509_verify(certificate.get(), X509_get0_pubkey(certificate.get())) == 1;
}

/** One thread with an entry of its own beside the one that stays. */
class Worker {
 public:
  Worker(const KeyDbLocator& token, const sys::Bytes& steady, std::string entry, Tally& tally)
      : token_(token), steady_(steady), entry_(std::move(entry)), tally_(tally) {}

  void workUntil(Clock::time_point end) {
    for (int round = 0; Clock::now() < end; ++round) {
      isKeptOut();
      findsWhatStays();
      if (round % 4 == 0) makesAndDeletes();
    }
  }

  void tryUntil(Clock::time_point end) {
    while (Clock::now() < end) isKeptOut();
  }

 private:
  int open(const char* pin, int* handle) const {
    KeyDbLocator named = token_;
    named.password = pin;
    return ZELKM_OpenKeyDbX(&named, handle);
  }

  /** Runs a body on a handle of its own. */
  template <typename Body>
  void onToken(Body body) {
    int handle = 0;
    const int code = open(kPin, &handle);
    tally_.expectCode(code, ZELKM_OK, "opening with the PIN");
    if (code != ZELKM_OK) return;
    body(handle);
    tally_.expectCode(ZELKM_CloseKeyDb(handle), ZELKM_OK, "closing");
  }

  void isKeptOut() {
    int handle = 0;
    tally_.expectCode(open(kWrongPin, &handle), ZELKM_ERR_DATABASE_INVALID_PASSWORD,
                      "opening with a wrong PIN");
    tally_.expectCode(open(nullptr, &handle), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED,
                      "opening without PIN");
    tally_.expect(handle == 0, "a handle without the PIN");
    tally_.count("times kept out");
  }

  void findsWhatStays() {
    onToken([this](int handle) {
      ZELKMKeyItem* found = nullptr;
      const int code = ZELKM_GetKeyItemByLabel(handle, kSteady, &found);
      tally_.expectCode(code, ZELKM_OK, "reading what stays");
      if (code != ZELKM_OK) return;
      const KeyItem item(found);
      const ZELKMCertItem& certificate = *item->certList->item;
      tally_.expect(bytesOf(certificate.certDer, certificate.certDerLength) == steady_,
                    "what stays has changed");
      tally_.expect(item->hasPrivateKey == 1, "what stays has lost its key");
      tally_.count("entries read");
    });
  }

  void makesAndDeletes() {
    int code = -1;
    onToken([&](int handle) {
      code = ZELKM_CreateSelfSignedCertSigExt(handle, entry_.c_str(), 0, 3, 256,
                                              name(entry_.c_str()).get(), 10, 1, nullptr, 0,
                                              nullptr, 0);
      tally_.expectCode(code, ZELKM_OK, "making an entry");
    });
    if (code != ZELKM_OK) return;
    onToken([&](int handle) {
      ZELKMKeyItem* found = nullptr;
      const int read = ZELKM_GetKeyItemByLabel(handle, entry_.c_str(), &found);
      tally_.expectCode(read, ZELKM_OK, "reading the own entry");
      if (read != ZELKM_OK) return;
      const KeyItem item(found);
      tally_.expect(entry_ == item->certList->item->subjectDN->cn, "another one's entry");
      tally_.expect(isSignedByItself(*item->certList->item), "a wrong signature");
    });
    onToken([&](int handle) {
      code = ZELKM_DeleteKey(handle, entry_.c_str());
      tally_.expectCode(code, ZELKM_OK, "deleting");
      if (code != ZELKM_OK) return;
      ZELKMKeyItem* found = nullptr;
      tally_.expectCode(ZELKM_GetKeyItemByLabel(handle, entry_.c_str(), &found),
                        ZELKM_ERR_KEY_GET_BY_LABEL, "reading what was deleted");
      tally_.count("keys made, used and deleted");
    });
  }

  const KeyDbLocator& token_;
  const sys::Bytes& steady_;
  std::string entry_;
  Tally& tally_;
};

/** Looks at the token past the library: in a process without the PIN nobody is logged in. */
class Onlooker {
 public:
  explicit Onlooker(Tally& tally) : tally_(tally) {}

  void lookUntil(Clock::time_point end) {
    while (Clock::now() < end) {
      CK_C_INITIALIZE_ARGS arguments{};
      arguments.flags = CKF_OS_LOCKING_OK;
      tally_.expect(module_->C_Initialize(&arguments) == CKR_OK, "initialising the module");
      look();
      tally_.expect(module_->C_Finalize(nullptr) == CKR_OK, "finalising the module");
    }
  }

 private:
  void look() {
    CK_SLOT_ID slots[8];
    CK_ULONG count = 8;
    CK_SESSION_HANDLE session = CK_INVALID_HANDLE;
    CK_SESSION_INFO info{};
    if (module_->C_GetSlotList(CK_TRUE, &slots[0], &count) != CKR_OK ||
        module_->C_OpenSession(slots[0], CKF_SERIAL_SESSION, nullptr, nullptr, &session) !=
            CKR_OK ||
        module_->C_GetSessionInfo(session, &info) != CKR_OK) {
      return;
    }
    tally_.expect(info.state == CKS_RO_PUBLIC_SESSION, "a login seen without the PIN");
    tally_.count("looks that saw no login");
  }

  Tally& tally_;
  CK_FUNCTION_LIST* module_ = rawModule(kSoftHsmModule);
};

class SharedToken : public TokenTest {
 protected:
  SharedToken() {
    const int handle = open(kPin);
    EXPECT_EQ(ZELKM_CreateSelfSignedCertSigExt(handle, kSteady, 0, 3, 256, name(kSteady).get(), 100,
                                               1, nullptr, 0, nullptr, 0),
              ZELKM_OK);
    EXPECT_EQ(ZELKM_ExportCert(handle, kSteady, path("steady.der").c_str(), 0), ZELKM_OK);
    steady_ = folder_.read("steady.der");
    close(handle);  // the module is finalised, as it has to be before a fork
  }

  std::string tallyFile(int process) const { return path("tally" + std::to_string(process)); }

  /** What one process does; the last of them never has the PIN. */
  void work(int process, Clock::time_point end, Tally& tally) const {
    const bool hasPin = process < kProcesses - 1;
    const KeyDbLocator token = locator(nullptr);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        Worker worker(token, steady_, std::to_string(process) + "-" + std::to_string(thread),
                      tally);
        hasPin ? worker.workUntil(end) : worker.tryUntil(end);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }

  void shareFor(std::chrono::seconds duration) {
    const Clock::time_point end = Clock::now() + duration;
    std::vector<pid_t> children;
    for (int process = 0; process <= kProcesses; ++process) {
      const pid_t child = fork();
      ASSERT_GE(child, 0);
      if (child == 0) {
        Tally tally;
        if (process < kProcesses) {
          work(process, end, tally);
        } else {
          Onlooker(tally).lookUntil(end);
        }
        tally.write(tallyFile(process));
        std::_Exit(0);
      }
      children.push_back(child);
    }
    Tally tally;
    for (int process = 0; process <= kProcesses; ++process) {
      int status = 0;
      ASSERT_EQ(waitpid(children[process], &status, 0), children[process]);
      EXPECT_EQ(status, 0) << "process " << process;
      tally.read(tallyFile(process));
    }
    tally.print();
    EXPECT_TRUE(tally.isRight());
    for (const char* what : {"times kept out", "entries read", "keys made, used and deleted",
                             "looks that saw no login"}) {
      EXPECT_TRUE(tally.has(what)) << what;
    }
    EXPECT_EQ(labels(&ZELKM_GetKeyDbLabelList, open(kPin)), std::vector<std::string>{kSteady});
  }

 private:
  sys::Bytes steady_;
};

TEST_P(SharedToken, everyAnswerIsRight) { shareFor(std::chrono::seconds(1)); }

TEST_P(SharedToken, DISABLED_EveryAnswerIsRightForAMinute) { shareFor(std::chrono::seconds(60)); }

INSTANTIATE_TEST_SUITE_P(, SharedToken, testing::Values(Vendor::softHsm), vendorName);

}  // namespace

}  // namespace zel::km::token
