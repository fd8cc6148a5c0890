#include <gtest/gtest.h>

#include <memory>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/keys.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

std::uint32_t lengthOf(sys::ByteView bytes) { return static_cast<std::uint32_t>(bytes.size()); }

class Base64Files : public testing::Test {
 protected:
  int decode(std::string_view content) {
    unsigned char* buffer = nullptr;
    std::uint32_t length = 0;
    const int code = ZELKM_Base64DecodeFileToBuf(folder_.write("file", cms::text(content)).c_str(),
                                                 &buffer, &length);
    decoded_.assign(buffer, buffer + length);
    ZELKM_Free(buffer);
    return code;
  }

  cms::TemporaryFolder folder_;
  sys::Bytes decoded_;
};

TEST_F(Base64Files, AreDecoded) {
  ASSERT_EQ(decode("dirt\r\n-----BEGIN CERTIFICATE-----\r\nYWJj\r\n-----END CERTIFICATE-----"),
            ZELKM_OK);
  EXPECT_EQ(decoded_, (sys::Bytes{'a', 'b', 'c'}));
}

TEST_F(Base64Files, SayWhyTheyAreNot) {
  EXPECT_EQ(decode(""), ZELKM_ERR_BASE64_INVALID_DATA);
  EXPECT_EQ(decode("-----BEGIN X-----\nYWJj\n"), ZELKM_ERR_BASE64_INVALID_MSGTYPE);
  EXPECT_EQ(decode("YWJ"), ZELKM_ERR_BASE64_DECODING);
  unsigned char* buffer = nullptr;
  std::uint32_t length = 0;
  EXPECT_EQ(ZELKM_Base64DecodeFileToBuf(folder_.path("nothing").c_str(), &buffer, &length),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(ZELKM_Base64DecodeFileToBuf(nullptr, &buffer, &length), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_Base64DecodeFileToBuf("x", nullptr, &length), ZELKM_ERR_NULL_PARAMETER);
}

TEST(Pkcs7Lists, TellAllOfTheirCertificates) {
  const cms::TestAuthority root("Root");
  ZELKMCertItemList* list = nullptr;
  ASSERT_EQ(ZELKM_ExtractCertListFromPKCS7Data(root.certificate().data(),
                                               lengthOf(root.certificate()), &list),
            ZELKM_OK);
  EXPECT_STREQ(list->item->label, "Root");
  EXPECT_STREQ(list->item->subjectDN->cn, "Root");
  EXPECT_EQ(list->next, nullptr);
  ZELKM_FreeCertItemList(list);

  EXPECT_EQ(ZELKM_ExtractCertListFromPKCS7Data(nullptr, 0, &list), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_ExtractCertListFromPKCS7Data(root.certificate().data(), 9, &list), ZELKM_ERR_ASN);
}

class EncryptedKeyItems : public testing::Test {
 protected:
  sys::SecretBytes pkcs8_ = cms::privateKeyInfo(*cms::generateKey(256).value()).value();
};

TEST_F(EncryptedKeyItems, ComeBackWithTheirPassword) {
  ZELKMEPKIItem* epki = nullptr;
  ASSERT_EQ(ZELKM_GetEPKIItemFromPrivateKey(pkcs8_.data(), lengthOf(pkcs8_), "secret", &epki),
            ZELKM_OK);
  ZELKMPrivKeyInfoItem* info = nullptr;
  ASSERT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki, "secret", &info), ZELKM_OK);
  EXPECT_EQ(sys::SecretBytes(info->berData, info->berData + info->berDataLength), pkcs8_);
  ZELKM_FreePrivKeyInfoItem(info);
  EXPECT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki, "wrong", &info),
            ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  epki->berDataLength -= 1;
  EXPECT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki, "secret", &info),
            ZELKM_ERR_DATABASE_KEY_INTEGRITY);
  ZELKM_FreeEPKIItem(epki);
}

TEST_F(EncryptedKeyItems, RefuseWhatIsMissingOrNoKey) {
  ZELKMEPKIItem* epki = nullptr;
  ZELKMPrivKeyInfoItem* info = nullptr;
  const ZELKMEPKIItem empty{};
  EXPECT_EQ(ZELKM_GetEPKIItemFromPrivateKey(nullptr, 0, "secret", &epki), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetEPKIItemFromPrivateKey(pkcs8_.data(), lengthOf(pkcs8_), nullptr, &epki),
            ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetEPKIItemFromPrivateKey(pkcs8_.data(), 5, "secret", &epki), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(nullptr, "secret", &info),
            ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(&empty, "secret", &info),
            ZELKM_ERR_NULL_PARAMETER);
}

}  // namespace
}  // namespace zel::km
