#include "tests/recording_double/recording_double.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "tests/recorder/recorder.h"

namespace zel::test {
namespace {

class RecordingDoubleTest : public testing::Test {
 protected:
  void TearDown() override {
    recorder().reset();
    resetLibrary();
  }

  static int openedHandle() {
    int handle = 0;
    EXPECT_EQ(ZELKM_OpenKeyDb("a.kdb", "secret", &handle), 0);
    return handle;
  }

  static size_t errorCount() { return recorder().errors().size(); }
  static std::vector<std::string> held() { return recorder().owned.held(); }
};

TEST_F(RecordingDoubleTest, RecordsArgumentsAnswersAndOutputs) {
  library().keyItem = [] { return newKeyItem("my key"); };
  const int handle = openedHandle();
  ZELKMKeyItem* item = nullptr;
  ZELKM_GetKeyItemByLabel(handle, "my key", &item);
  ZELKM_FreeKeyItem(item);
  const unsigned char cert[] = {0x30, 0x01};
  ZELKM_InsertKey(handle, "other", 2, cert, 5, nullptr, 1, 0);
  ZELKM_CloseKeyDb(handle);
  EXPECT_EQ(recorder().transcript(), R"(ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
ZELKM_FreeKeyItem(key item#1)
ZELKM_InsertKey(1, "other", 2, [30 01], 5, null, 1, 0) = 0
ZELKM_CloseKeyDb(1) = 0
)");
  EXPECT_TRUE(held().empty());
  EXPECT_EQ(errorCount(), 0U);
}

TEST_F(RecordingDoubleTest, AnswersWhatItIsTold) {
  library().answers["ZELKM_OpenKeyDb"] = 16;
  int handle = 0;
  EXPECT_EQ(ZELKM_OpenKeyDb("a.kdb", "wrong", &handle), 16);
  EXPECT_EQ(handle, 0);
  EXPECT_EQ(recorder().transcript(), "ZELKM_OpenKeyDb(\"a.kdb\", \"wrong\") = 16\n");
}

TEST_F(RecordingDoubleTest, FailsTheChosenOperation) {
  recorder().faults.failCall(FaultPlan::kLibrary, 2);
  const int handle = openedHandle();
  EXPECT_EQ(ZELKM_CloseKeyDb(handle), RecordingDouble::kFailure);
}

TEST_F(RecordingDoubleTest, CanWriteAnOutputTogetherWithAnError) {
  library().outputsDespiteErrors = true;
  library().answers["ZELKM_GetKeyDbLabelList"] = 18;
  library().keyLabels = [] { return newLabelList({"a"}); };
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(openedHandle(), &list), 18);
  EXPECT_STREQ(list->label, "a");
}

TEST_F(RecordingDoubleTest, NamesWhatIsStillHeld) {
  library().keyLabels = [] { return newLabelList({"a"}); };
  ZELKMLabelList* list = nullptr;
  ZELKM_GetKeyDbLabelList(openedHandle(), &list);
  ZELKM_Strdup("text");
  EXPECT_EQ(held(), (std::vector<std::string>{"handle 1", "label list#1", "text \"text\""}));
}

TEST_F(RecordingDoubleTest, CallsASecondCloseAnError) {
  const int handle = openedHandle();
  ZELKM_CloseKeyDb(handle);
  EXPECT_EQ(errorCount(), 0U);
  ZELKM_CloseKeyDb(handle);
  EXPECT_EQ(errorCount(), 1U);
}

TEST_F(RecordingDoubleTest, CallsTheWrongReleaseAnError) {
  library().epki = [] { return newEpki({1}); };
  ZELKMEPKIItem* epki = nullptr;
  ZELKM_GetEPKIItemFromPrivateKey(nullptr, 0, "secret", &epki);
  ZELKM_FreePrivKeyInfoItem(reinterpret_cast<ZELKMPrivKeyInfoItem*>(epki));
  EXPECT_EQ(errorCount(), 1U);
  ZELKM_FreeEPKIItem(epki);
  EXPECT_EQ(errorCount(), 1U);
}

TEST_F(RecordingDoubleTest, CallsAnOutputThatWasNotClearedAnError) {
  int handle = 7;
  ZELKM_OpenKeyDb("a.kdb", "secret", &handle);
  EXPECT_EQ(errorCount(), 1U);
}

TEST_F(RecordingDoubleTest, ReadsALocatorNoFurtherThanItsExtent) {
  KeyDbLocator locator;
  std::memset(&locator, 0xff, sizeof locator);
  std::memset(&locator, 0, KEYDB_LOCATOR_QUERY_EXTENT);
  locator.type = KEYDB_LOCATOR_KEY_DATABASE;
  locator.fileName = "a.kdb";
  unsigned char required = 0;
  ZELKM_IsPasswordRequired(&locator, &required);
  EXPECT_EQ(recorder().transcript(), "ZELKM_IsPasswordRequired({type 1, file \"a.kdb\"}) = 0, 1\n");
  int handle = 0;
  ZELKM_OpenKeyDbX(&locator, &handle);
  EXPECT_EQ(errorCount(), 1U) << "an open reads eight bytes more";
}

TEST_F(RecordingDoubleTest, LetsABufferGoByFreeOrByItsOwnFree) {
  unsigned char* first = nullptr;
  uint32_t firstLength = 0;
  unsigned char* second = nullptr;
  uint32_t secondLength = 0;
  ZELKM_Base64DecodeFileToBuf("a.pem", &first, &firstLength);
  ZELKM_Base64DecodeFileToBuf("b.pem", &second, &secondLength);
  EXPECT_EQ(firstLength, 2U);
  ZELKM_Free(first);
  {
    const BridgeCall bridge;
    std::free(second);
  }
  EXPECT_TRUE(held().empty());
  EXPECT_EQ(errorCount(), 0U);
}

TEST_F(RecordingDoubleTest, ReleasesTheNamesTextsWithTheName) {
  ZELKMDNItem* dn = nullptr;
  {
    const BridgeCall bridge;
    dn = static_cast<ZELKMDNItem*>(std::malloc(sizeof(ZELKMDNItem)));
    ZELKM_InitDNItem(&dn);
    dn->cn = ZELKM_Strdup("Alice");
  }
  ZELKM_CreateNewCertReq(openedHandle(), "key", 2048, dn, "a.arm", 0, 0);
  ZELKM_FreeDNItem(dn);
  EXPECT_EQ(recorder().transcript(), R"(malloc(104) = block#1
ZELKM_InitDNItem(block#1)
ZELKM_Strdup("Alice")
ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
ZELKM_CreateNewCertReq(1, "key", 2048, DN{cn="Alice"}, "a.arm", 0, 0) = 0
ZELKM_FreeDNItem(block#1)
)");
  EXPECT_EQ(held(), std::vector<std::string>{"handle 1"});
}

TEST_F(RecordingDoubleTest, KeepsTheCryptoInfoForGood) {
  auto* info = static_cast<ZELKMCryptoInfo*>(ZELKM_Malloc(sizeof(ZELKMCryptoInfo)));
  info->firstFlag = 1;
  info->secondFlag = 0;
  ZELKM_SetCryptoInfo(info);
  EXPECT_EQ(recorder().transcript(),
            "ZELKM_Malloc(256) = block#1\nZELKM_SetCryptoInfo(block#1 [01 00]..) = 0\n");
  EXPECT_TRUE(held().empty());
}

TEST_F(RecordingDoubleTest, LetsTheChosenAllocationFail) {
  recorder().faults.failCall(FaultPlan::kAllocation, 2);
  void* block = ZELKM_Malloc(4);
  EXPECT_EQ(ZELKM_Realloc(block, 8), nullptr);
  EXPECT_EQ(held(), std::vector<std::string>{"block#1"}) << "left as it was";
}

}  // namespace
}  // namespace zel::test
