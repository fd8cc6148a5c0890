#include "engine/cms/serial_numbers.h"

#include <gmock/gmock.h>

#include <string>

namespace zel::cms {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

TEST(SerialNumbers, AreReadInBothNotations) {
  EXPECT_THAT(parseSerialNumber("123456").value(), ElementsAre(0x01, 0xE2, 0x40));
  EXPECT_THAT(parseSerialNumber("0xAbCdEf").value(), ElementsAre(0xAB, 0xCD, 0xEF));
  EXPECT_THAT(parseSerialNumber("0XF").value(), ElementsAre(0x0F));
  EXPECT_THAT(parseSerialNumber("0001").value(), ElementsAre(0x01));
}

TEST(SerialNumbers, HaveUpTo159Bits) {
  EXPECT_THAT(parseSerialNumber("0x7" + std::string(39, 'f')).value(), SizeIs(20));
  EXPECT_EQ(parseSerialNumber("0x8" + std::string(39, '0')).code(), ZELKM_ERR_NUMBER_SIZE);
  EXPECT_EQ(parseSerialNumber(std::string(65, '0') + "1").code(), ZELKM_ERR_NUMBER_SIZE);
  EXPECT_EQ(parseSerialNumber(std::string(100'000, '9')).code(), ZELKM_ERR_NUMBER_SIZE);
}

TEST(SerialNumbers, AreNeitherZeroNorOtherText) {
  for (const char* text : {"", "x", "12a", "0x", "0xfg", "-1", "0", "0x00", " 1", "1 "}) {
    EXPECT_EQ(parseSerialNumber(text).code(), ZELKM_ERR_PARAMETER) << '"' << text << '"';
  }
}

}  // namespace
}  // namespace zel::cms
