#include "bridge/keydb/certificate_file.h"

#include <algorithm>

#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

/** Reading a certificate file, in binary form piece by piece. */
class ReadCertFileToBuf : public NativeTest {
 protected:
  ReadCertFileToBuf() : NativeTest("CMSKeyDatabase") {}

  void read(const char* fileName, jboolean isBase64) {
    convert([&] {
      code = bridge::readCertFileToBuf(fileName, isBase64, &buffer, &length);
      return nullptr;
    });
  }

  /** A file whose bytes tell their places. */
  static Bytes ofSize(size_t size) {
    Bytes contents(size);
    std::generate(contents.begin(), contents.end(),
                  [n = 0]() mutable { return static_cast<uint8_t>(n++ / 7); });
    return contents;
  }

  unsigned char notNull = 0;
  unsigned char* buffer = &notNull;
  uint32_t length = 99;
  int code = -1;
};

TEST_F(ReadCertFileToBuf, LeavesBase64ToTheLibrary) {
  read("a.arm", JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    ZELKM_Base64DecodeFileToBuf("a.arm") = 0, buffer#1 [30 df]
    return null
    held buffer#1
  )");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(Bytes(buffer, buffer + length), (Bytes{0x30, 0xdf}));
}

TEST_F(ReadCertFileToBuf, AnswersTheLibrarysCodeForBadBase64) {
  library().answers["ZELKM_Base64DecodeFileToBuf"] = 90;
  read("a.arm", JNI_TRUE);
  EXPECT_TRANSCRIPT(R"(
    ZELKM_Base64DecodeFileToBuf("a.arm") = 90
    return null
    held nothing
  )");
  EXPECT_EQ(code, 90);
}

TEST_F(ReadCertFileToBuf, ReadsASmallFileInOnePiece) {
  watchedLibc().addFile("a.der", {0x30, 0x01, 0x0c});
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 3
    ZELKM_Malloc(3) = block#1
    fread(1, 1024) = 0
    fclose(file "a.der")
    return null
    held block#1
  )");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(Bytes(buffer, buffer + length), (Bytes{0x30, 0x01, 0x0c}));
}

TEST_F(ReadCertFileToBuf, ReadsAFileOfOneWholePieceWithoutGrowing) {
  watchedLibc().addFile("a.der", ofSize(1024));
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 0
    fclose(file "a.der")
    return null
    held block#1
  )");
  EXPECT_EQ(Bytes(buffer, buffer + length), ofSize(1024));
}

TEST_F(ReadCertFileToBuf, GrowsToTheExactSizeForOneByteMore) {
  watchedLibc().addFile("a.der", ofSize(1025));
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1
    ZELKM_Realloc(block#1, 1025) = block#2
    fread(1, 1024) = 0
    fclose(file "a.der")
    return null
    held block#2
  )");
  EXPECT_EQ(Bytes(buffer, buffer + length), ofSize(1025));
}

TEST_F(ReadCertFileToBuf, GrowsOnceForEachFurtherPiece) {
  watchedLibc().addFile("a.der", ofSize(2500));
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1024
    ZELKM_Realloc(block#1, 2048) = block#2
    fread(1, 1024) = 452
    ZELKM_Realloc(block#2, 2500) = block#3
    fread(1, 1024) = 0
    fclose(file "a.der")
    return null
    held block#3
  )");
  EXPECT_EQ(Bytes(buffer, buffer + length), ofSize(2500));
}

TEST_F(ReadCertFileToBuf, MakesNoBufferOfAnEmptyFile) {
  watchedLibc().addFile("a.der", {});
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 0
    fclose(file "a.der")
    return null
    held nothing
  )");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(length, 0U);
}

/** What was read up to the error is the file. */
TEST_F(ReadCertFileToBuf, TakesAReadErrorForTheEndOfTheFile) {
  watchedLibc().addFile("a.der", ofSize(2500));
  recorder().faults.failCall("fread", 2);
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 0, error
    fclose(file "a.der")
    return null
    held block#1
  )");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(Bytes(buffer, buffer + length), ofSize(1024));
}

TEST_F(ReadCertFileToBuf, Answers87ForAFileThatCannotBeOpened) {
  read("none.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("none.der", "rb") = null
    return null
    held nothing
  )");
  EXPECT_EQ(code, 87);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(length, 0U);
}

TEST_F(ReadCertFileToBuf, Answers79WithoutMemory) {
  watchedLibc().addFile("a.der", {0x30});
  recorder().faults.failCall("ZELKM_Malloc", 1);
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 1
    ZELKM_Malloc(1) = null
    fclose(file "a.der")
    return null
    held nothing
  )");
  EXPECT_EQ(code, 79);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(length, 0U);
}

/** The first piece is freed by the reader, because the caller is left with no buffer. */
TEST_F(ReadCertFileToBuf, Answers79WhenTheBufferCannotGrow) {
  watchedLibc().addFile("a.der", ofSize(1025));
  recorder().faults.failCall("ZELKM_Realloc", 1);
  read("a.der", JNI_FALSE);
  EXPECT_TRANSCRIPT(R"(
    fopen("a.der", "rb")
    fread(1, 1024) = 1024
    ZELKM_Malloc(1024) = block#1
    fread(1, 1024) = 1
    ZELKM_Realloc(block#1, 1025) = null
    ZELKM_Free(block#1)
    fclose(file "a.der")
    return null
    held nothing
  )");
  EXPECT_EQ(code, 79);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(length, 0U);
}

}  // namespace
}  // namespace zel::test
