#include "engine/km/work/decoding.h"

#include <gmock/gmock.h>

#include "engine/cms/epki.h"
#include "engine/cms/pem.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/stores/test_entries.h"

namespace zel::km {
namespace {

class DecodingTest : public testing::Test {
 protected:
  const cms::TestAuthority web_{"Web"};
};

TEST_F(DecodingTest, ReadsFilesOfBase64) {
  const cms::TemporaryFolder folder;
  const std::string pem =
      folder.write("web.pem", cms::encodePem(cms::kCertificateArmour, web_.certificate()).value());
  EXPECT_EQ(decodeFile(fileName(pem)).value(), web_.certificate());
  EXPECT_EQ(decodeFile(fileName(folder.path("none.pem"))).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
}

TEST_F(DecodingTest, LabelsCertificatesByTheirSubjects) {
  const auto bundle = labelledBundle(web_.certificate());
  ASSERT_TRUE(bundle);
  ASSERT_EQ(bundle.value().size(), 1U);
  EXPECT_EQ(bundle.value().front().label, "Web");
  EXPECT_EQ(bundle.value().front().certificate, web_.certificate());
  EXPECT_EQ(labelledBundle(cms::text("none")).code(), ZELKM_ERR_ASN);
}

TEST_F(DecodingTest, EncryptsKeys) {
  const sys::SecretBytes key = entryOf("web", web_).privateKey.pkcs8;
  const sys::Password secret = password("secret");
  const auto encrypted = encryptKey(key, secret);
  ASSERT_TRUE(encrypted);
  EXPECT_EQ(cms::decryptPrivateKey(encrypted.value(), secret.bytes()).value(), key);
  EXPECT_EQ(encryptKey(web_.certificate(), secret).code(), ZELKM_ERR_ASN);
}

}  // namespace
}  // namespace zel::km
