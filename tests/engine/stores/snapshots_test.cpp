#include <gmock/gmock.h>

#include <chrono>
#include <new>
#include <thread>

#include "tests/engine/stores/store_test.h"

// Reading a store as it is at one moment.

namespace zel::km {

namespace {

using testing::ElementsAre;

class Snapshots : public StoreTest {};

TEST_P(Snapshots, RunTheirBodyOnTheStoreAndAnswerWhatItAnswers) {
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  int runs = 0;
  const sys::Status read = atOneMoment([&]() -> sys::Status {
    ++runs;
    EXPECT_THAT(keys(), ElementsAre("web"_label));
    return atOneMoment([&]() -> sys::Status {
      ++runs;
      EXPECT_THAT(keys(), ElementsAre("web"_label));
      return sys::success();
    });
  });
  EXPECT_EQ(read.code(), ZELKM_OK);
  EXPECT_EQ(atOneMoment([]() -> sys::Status { return sys::Failure{ZELKM_ERR_ASN}; }).code(),
            ZELKM_ERR_ASN);
  EXPECT_EQ(runs, 2);
}

TEST_P(Snapshots, LetChangesBeMadeAfterwards) {
  EXPECT_THROW((void)atOneMoment([&]() -> sys::Status { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
}

INSTANTIATE_TEST_SUITE_P(, Snapshots, testing::ValuesIn(allStores()), storeName);

class TrueSnapshots : public StoreTest {};

TEST_P(TrueSnapshots, ShowNothingOfWhatOthersChangeMeanwhile) {
  const std::unique_ptr<Store> other = openBeside();
  const KeyEntry later = newEntry("later");
  ASSERT_EQ(store().insertKey(newEntry("web")).code(), ZELKM_OK);
  std::thread writer;
  const sys::Status read = atOneMoment([&]() -> sys::Status {
    EXPECT_THAT(keys(), ElementsAre("web"_label));
    writer = std::thread([&] { EXPECT_EQ(other->insertKey(later).code(), ZELKM_OK); });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_THAT(keys(), ElementsAre("web"_label));
    return sys::success();
  });
  writer.join();
  EXPECT_EQ(read.code(), ZELKM_OK);
  EXPECT_EQ(keys(), listed({"web"_label, "later"_label}));
}

INSTANTIATE_TEST_SUITE_P(, TrueSnapshots, testing::ValuesIn(storesThatTakeSnapshots()), storeName);

}  // namespace

}  // namespace zel::km
