#include "engine/cms/pem.h"

#include <gtest/gtest.h>

#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

const sys::Bytes kContent = {'h', 'e', 'l', 'l', 'o'};  // aGVsbG8=

TEST(Pem, IsDecodedThroughTheUsualDirt) {
  for (const char* dirty : {
           "-----BEGIN X-----\naGVsbG8=\n-----END X-----\n",
           "-----BEGIN X-----\naGVsbG8=\n-----END X-----",
           "-----BEGIN X-----\r\naGVs\r\nbG8=\r\n-----END X-----\r\n",
           "-----BEGIN X-----\n  aGVs bG8=\t\n\n-----END X-----\n",
           "-----BEGIN X-----\nName: value\nOther: value\n\naGVsbG8=\n-----END X-----\n",
           "Certificate:\n    Version: 3\n-----BEGIN X-----\naGVsbG8=\n-----END X-----\ntrailing",
           "\xEF\xBB\xBF-----BEGIN X-----\naGVsbG8=\n-----END X-----\n",
           "-----BEGIN X-----\naGVsbG8=\n-----END X-----\n-----BEGIN Y-----\nYQ==\n-----END Y-----",
           "aGVsbG8=",
           "aGVs\nbG8=\n",
       }) {
    const sys::Result<sys::Bytes> decoded = decodePem(text(dirty));
    ASSERT_TRUE(decoded) << dirty;
    EXPECT_EQ(decoded.value(), kContent) << dirty;
  }
}

TEST(Pem, TellsApartWhatIsWrongWithIt) {
  const auto code = [](const char* broken) { return decodePem(text(broken)).code(); };
  EXPECT_EQ(code(""), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code(" \n"), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code("===="), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code("\x30\x82\x01"), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code("aGVs*G8="), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code("aG=sbG8="), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code("-----BEGIN X-----\n-----END X-----"), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(code("-----BEGIN X-----\naGVsbG8=\n"), ZELKM_ERR_BASE64_INVALID_MSGTYPE);
  EXPECT_EQ(code("-----BEGIN X-----\naGVsbG8=\n-----END Y-----"), ZELKM_ERR_BASE64_INVALID_MSGTYPE);
  EXPECT_EQ(code("-----BEGIN X\naGVsbG8=\n"), ZELKM_ERR_BASE64_INVALID_MSGTYPE);
  EXPECT_EQ(code("aGVsbG8"), ZELKM_ERR_BASE64_DECODING);
  EXPECT_EQ(code("aGVsb==="), ZELKM_ERR_BASE64_DECODING);
}

TEST(Pem, OfManyArmoursGivesAllBlocks) {
  const sys::Result<std::vector<sys::Bytes>> blocks = decodePemBlocks(
      text("a\n-----BEGIN X-----\naGVsbG8=\n-----END X-----\nb\n-----BEGIN Y-----\nYQ==\n"
           "-----END Y-----\n"));
  ASSERT_TRUE(blocks);
  EXPECT_EQ(blocks.value(), (std::vector<sys::Bytes>{kContent, {'a'}}));
}

TEST(Pem, ComesBack) {
  const sys::Bytes content(1000, 0xA5);
  EXPECT_EQ(decodePem(encodePem(kCertificateArmour, content).value()).value(), content);
}

}  // namespace
}  // namespace zel::cms
