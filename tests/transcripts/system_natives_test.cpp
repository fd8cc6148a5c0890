#include "bridge/frame/trace.h"
#include "bridge/frame/version_block.h"
#include "com_nelo_zel_vosmar_basic_KMSystem.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_IsUSSharedLibraryLoaded =
    Java_com_nelo_zel_vosmar_basic_KMSystem_c_1IsUSSharedLibraryLoaded;
constexpr auto c_enableFIPSMode = Java_com_nelo_zel_vosmar_basic_KMSystem_c_1enableFIPSMode;
constexpr auto c_ZELKMInitDebug = Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInitDebug;
constexpr auto c_ZELKMInit = Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMInit;
constexpr auto c_ZELKMCleanAll = Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ZELKMCleanAll;
constexpr auto c_ShowLibInfo = Java_com_nelo_zel_vosmar_basic_KMSystem_c_1ShowLibInfo;

/** None of these natives looks at its environment or class, so they are called without any. */
class SystemNatives : public NativeTest {
 protected:
  SystemNatives() : NativeTest("KMSystem") {}
  ~SystemNatives() override {
    const BridgeCall bridge;
    c_ZELKMCleanAll(nullptr, nullptr);
  }

  template <typename Result, typename... Arguments>
  void callBare(Result (*native)(JNIEnv*, jclass, Arguments...),
                std::type_identity_t<Arguments>... arguments) {
    callOn(nullptr, nullptr, native, arguments...);
  }
};

class IsUSSharedLibraryLoaded : public SystemNatives {};

TEST_F(IsUSSharedLibraryLoaded, IsTrueForKeysOfMoreThan512Bits) {
  library().maxCryptoKeySize = 512;
  callBare(c_IsUSSharedLibraryLoaded);
  library().maxCryptoKeySize = 513;
  callBare(c_IsUSSharedLibraryLoaded);
  library().maxCryptoKeySize = 0;
  callBare(c_IsUSSharedLibraryLoaded);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_IsUSSharedLibraryLoaded().
    ZELKM_GetMaxCryptoKeySize(1) = 512
    return false
    held nothing
    trace JNI_DEBUG......Entered KMSystem_c_IsUSSharedLibraryLoaded().
    ZELKM_GetMaxCryptoKeySize(1) = 513
    return true
    held nothing
    trace JNI_DEBUG......Entered KMSystem_c_IsUSSharedLibraryLoaded().
    ZELKM_GetMaxCryptoKeySize(1) = 0
    return false
    held nothing
  )");
}

TEST_F(IsUSSharedLibraryLoaded, TakesANegativeSizeForAVeryLargeOne) {
  library().maxCryptoKeySize = static_cast<uint32_t>(-1);
  callBare(c_IsUSSharedLibraryLoaded);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_IsUSSharedLibraryLoaded().
    ZELKM_GetMaxCryptoKeySize(1) = 4294967295
    return true
    held nothing
  )");
}

class EnableFIPSMode : public SystemNatives {};

TEST_F(EnableFIPSMode, HandsTheLibraryABlockForGood) {
  callBare(c_enableFIPSMode, JNI_TRUE, JNI_FALSE);
  callBare(c_enableFIPSMode, JNI_FALSE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    ZELKM_Malloc(256) = block#1
    ZELKM_SetCryptoInfo(block#1 [01 00]..) = 0
    return 0
    held nothing
    ZELKM_Malloc(256) = block#2
    ZELKM_SetCryptoInfo(block#2 [00 01]..) = 0
    return 0
    held nothing
  )");
}

TEST_F(EnableFIPSMode, HandsBackTheCodeOfTheLibrary) {
  library().answers["ZELKM_SetCryptoInfo"] = 80;
  callBare(c_enableFIPSMode, JNI_TRUE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    ZELKM_Malloc(256) = block#1
    ZELKM_SetCryptoInfo(block#1 [01 01]..) = 80
    return 80
    held nothing
  )");
}

TEST_F(EnableFIPSMode, AnswersItselfWithoutMemory) {
  recorder().faults.failCall("ZELKM_Malloc", 1);
  callBare(c_enableFIPSMode, JNI_TRUE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    ZELKM_Malloc(256) = null
    return 79
    held nothing
  )");
}

class ZELKMInit : public SystemNatives {};

TEST_F(ZELKMInit, OnlyInitialisesWithoutTheTrace) {
  callBare(c_ZELKMInit, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_Init() = 0
    return 0
    held nothing
  )");
}

TEST_F(ZELKMInit, StartsTheLibrarysTraceFirst) {
  callBare(c_ZELKMInit, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_StartTrace("jnidump", "jnitrace", 0, 6144) = 0
    trace JNI_DEBUG......ZELKM_StartTrace returns = 0
    ZELKM_Init() = 0
    return 0
    held nothing
  )");
}

TEST_F(ZELKMInit, InitialisesEvenWhenTheTraceDoesNotStart) {
  library().answers["ZELKM_StartTrace"] = 88;
  library().answers["ZELKM_Init"] = 33;
  callBare(c_ZELKMInit, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_StartTrace("jnidump", "jnitrace", 0, 6144) = 88
    trace JNI_DEBUG......ZELKM_StartTrace returns = 88
    ZELKM_Init() = 33
    return 33
    held nothing
  )");
}

TEST_F(ZELKMInit, TakesOnlyOneForTrue) {
  callBare(c_ZELKMInit, static_cast<jboolean>(2));
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_Init() = 0
    return 0
    held nothing
  )");
}

class ZELKMInitDebug : public SystemNatives {};

TEST_F(ZELKMInitDebug, IsPlainInitialisationWithoutTheLog) {
  callBare(c_ZELKMInitDebug, JNI_FALSE, JNI_FALSE);
  callBare(c_ZELKMInitDebug, JNI_TRUE, JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_KMSystem::ZELKMInitDebug 0000, entered ...
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_Init() = 0
    return 0
    held nothing
    trace JNI_KMSystem::ZELKMInitDebug 0000, entered ...
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_StartTrace("jnidump", "jnitrace", 0, 6144) = 0
    trace JNI_DEBUG......ZELKM_StartTrace returns = 0
    ZELKM_Init() = 0
    return 0
    held nothing
  )");
}

/** The format of a log line lives in a block of the text's length and 150 bytes. */
TEST_F(ZELKMInitDebug, OpensTheLogAndStartsTheLibrarysTrace) {
  callBare(c_ZELKMInitDebug, JNI_FALSE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_KMSystem::ZELKMInitDebug 0000, entered ...
    fopen("vsmjdbg.log", "w+t")
    trace JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace
    malloc(209) = block#1
    vsmjdbg.log 20240229|23:59:58 || JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace
    ZELKM_StartTrace("specialDifferentLogTag", "vsmcdbg.log", 8, 4096) = 0
    trace JNI_KMSystem::ZELKMInitDebug 0020, rc=0
    free(block#1)
    malloc(191) = block#2
    vsmjdbg.log 20240229|23:59:58 || JNI_KMSystem::ZELKMInitDebug 0020, rc=0
    ZELKM_Init() = 0
    return 0
    held file "vsmjdbg.log"
    held block#2
  )");
}

TEST_F(ZELKMInitDebug, StartsBothTracesAndInitialisesOnce) {
  library().answers["ZELKM_StartTrace"] = 88;
  callBare(c_ZELKMInitDebug, JNI_TRUE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_KMSystem::ZELKMInitDebug 0000, entered ...
    fopen("vsmjdbg.log", "w+t")
    trace JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace
    malloc(209) = block#1
    vsmjdbg.log 20240229|23:59:58 || JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace
    ZELKM_StartTrace("specialDifferentLogTag", "vsmcdbg.log", 8, 4096) = 88
    trace JNI_KMSystem::ZELKMInitDebug 0020, rc=88
    free(block#1)
    malloc(191) = block#2
    vsmjdbg.log 20240229|23:59:58 || JNI_KMSystem::ZELKMInitDebug 0020, rc=88
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    free(block#2)
    malloc(197) = block#3
    vsmjdbg.log 20240229|23:59:58 || JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
    ZELKM_StartTrace("jnidump", "jnitrace", 0, 6144) = 88
    trace JNI_DEBUG......ZELKM_StartTrace returns = 88
    free(block#3)
    malloc(195) = block#4
    vsmjdbg.log 20240229|23:59:58 || JNI_DEBUG......ZELKM_StartTrace returns = 88
    ZELKM_Init() = 0
    return 0
    held file "vsmjdbg.log"
    held block#4
  )");
}

/** The log is on, so each line gets its format, but there is no stream to write it to. */
TEST_F(ZELKMInitDebug, LeavesTheLogSilentWhenItCannotBeOpened) {
  watchedLibc().letFilesFail();
  callBare(c_ZELKMInitDebug, JNI_FALSE, JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_KMSystem::ZELKMInitDebug 0000, entered ...
    fopen("vsmjdbg.log", "w+t") = null
    trace JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace
    malloc(209) = block#1
    ZELKM_StartTrace("specialDifferentLogTag", "vsmcdbg.log", 8, 4096) = 0
    trace JNI_KMSystem::ZELKMInitDebug 0020, rc=0
    free(block#1)
    malloc(191) = block#2
    ZELKM_Init() = 0
    return 0
    held block#2
  )");
}

TEST_F(ZELKMInitDebug, DoesNotCloseALogThatWasOpen) {
  bridge::debugMsgEnv = nullptr;
  callBare(c_ZELKMInitDebug, JNI_FALSE, JNI_TRUE);
  recorder().event("again");
  callBare(c_ZELKMInitDebug, JNI_FALSE, JNI_TRUE);
  const std::string transcript = recorder().transcript();
  const std::string second = transcript.substr(transcript.find("again"));
  EXPECT_EQ(second.find("fclose"), std::string::npos) << transcript;
  EXPECT_NE(second.find("held file \"vsmjdbg.log\"\nheld file \"vsmjdbg.log\"\n"),
            std::string::npos)
      << transcript;
}

class ZELKMCleanAll : public SystemNatives {};

TEST_F(ZELKMCleanAll, ClosesTheLogAfterItsOwnEntryLine) {
  bridge::debugMsgEnv = nullptr;
  callBare(c_ZELKMInitDebug, JNI_FALSE, JNI_TRUE);
  callBare(c_ZELKMCleanAll);
  callBare(c_ZELKMCleanAll);
  EXPECT_TRANSCRIPT(R"(
    fopen("vsmjdbg.log", "w+t")
    malloc(209) = block#1
    vsmjdbg.log 20240229|23:59:58 || JNI_KMSystem::ZELKMInitDebug 0010, before ZELKM_StartTrace
    ZELKM_StartTrace("specialDifferentLogTag", "vsmcdbg.log", 8, 4096) = 0
    free(block#1)
    malloc(191) = block#2
    vsmjdbg.log 20240229|23:59:58 || JNI_KMSystem::ZELKMInitDebug 0020, rc=0
    ZELKM_Init() = 0
    return 0
    held file "vsmjdbg.log"
    held block#2
    free(block#2)
    malloc(201) = block#3
    vsmjdbg.log 20240229|23:59:58 || JNI_DEBUG......Entered KMSystem_c_ZELKMCleanAll().
    free(block#3)
    fclose(file "vsmjdbg.log")
    ZELKM_CleanAll() = 0
    return 1
    held nothing
    ZELKM_CleanAll() = 0
    return 1
    held nothing
  )");
}

TEST_F(ZELKMCleanAll, IsOneEvenWhenTheLibraryFails) {
  library().answers["ZELKM_CleanAll"] = 77;
  callBare(c_ZELKMCleanAll);
  EXPECT_TRANSCRIPT(R"(
    trace JNI_DEBUG......Entered KMSystem_c_ZELKMCleanAll().
    ZELKM_CleanAll() = 77
    return 1
    held nothing
  )");
}

class ShowLibInfo : public SystemNatives {};

TEST_F(ShowLibInfo, PrintsTheVersionBlockAndCountsWhatItPrinted) {
  callBare(c_ShowLibInfo);
  const std::string printed = "KJNI\n============\n" + std::string(zelkjni_SCCSInfo) + "\n\n";
  std::string expected;
  size_t begin = 0;
  for (size_t end = printed.find('\n'); end != std::string::npos; end = printed.find('\n', begin)) {
    expected += "stdout " + printed.substr(begin, end - begin) + "\n";
    begin = end + 1;
  }
  expected += "return " + std::to_string(printed.size()) + "\nheld nothing\n";
  EXPECT_EQ(recorder().transcript(), expected);
}

}  // namespace
}  // namespace zel::test
