#include "engine/km/store/transactions.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace zel::km {

namespace {

/** Tells what became of each run, and fails to keep it when told to. */
class Told final : public Transactions {
 public:
  sys::Status runChanges(const Run& run) override {
    told_ += "begin ";
    try {
      if (sys::Status done = run(); !done) {
        told_ += "undone";
        return done;
      }
    } catch (...) {
      told_ += "undone";
      throw;
    }
    if (failsToKeep_) return sys::Failure{ZELKM_ERR_DATABASE_WRITE};
    told_ += "kept";
    return sys::success();
  }

  std::string told_;
  bool failsToKeep_ = false;
};

TEST(TransactionsTest, AnswerWhatTheirBodyAnswers) {
  Told store;
  const sys::Result<std::string> answer =
      inTransaction(store, []() -> sys::Result<std::string> { return std::string("done"); });
  EXPECT_EQ(answer.value(), "done");
  EXPECT_EQ(store.told_, "begin kept");
  EXPECT_EQ(inSnapshot(store, []() -> sys::Result<int> { return 7; }).value(), 7);
  EXPECT_TRUE(inTransaction(store, [] { return sys::success(); }));
}

TEST(TransactionsTest, AreUndoneWithTheCodeOfTheirBody) {
  Told store;
  const sys::Result<int> answer = inTransaction(
      store, []() -> sys::Result<int> { return sys::Failure{ZELKM_ERR_KEY_GET_BY_LABEL}; });
  EXPECT_EQ(answer.code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store.told_, "begin undone");
}

TEST(TransactionsTest, AnswerNothingThatWasNotKept) {
  Told store;
  store.failsToKeep_ = true;
  EXPECT_EQ(inTransaction(store, []() -> sys::Result<int> { return 7; }).code(),
            ZELKM_ERR_DATABASE_WRITE);
}

TEST(TransactionsTest, LetExceptionsThrough) {
  Told store;
  EXPECT_THROW(
      (void)inTransaction(store, []() -> sys::Status { throw std::runtime_error("stop"); }),
      std::runtime_error);
  EXPECT_EQ(store.told_, "begin undone");
}

}  // namespace

}  // namespace zel::km
