#include "engine/cms/requests.h"

#include <gtest/gtest.h>

#include "engine/cms/der.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

sys::Bytes foreignRequest(const TemporaryFolder& folder, const std::string& arguments) {
  const CommandResult made =
      run("openssl req -new -nodes -newkey rsa:2048 -keyout /dev/null -outform DER -out " +
          folder.path("csr") + " " + arguments);
  EXPECT_EQ(made.exitCode, 0) << made.output;
  return folder.read("csr");
}

TEST(CertificationRequests, OfOthersAreTakenApart) {
  const TemporaryFolder folder;
  const sys::Bytes der =
      foreignRequest(folder, "-subj /CN=www/OU=Web -addext subjectAltName=DNS:www.example.net");
  const RequestFields fields = readRequest(der).value();
  EXPECT_EQ(fields.key, (KeyTraits{KeyAlgorithm::rsa, 2048}));
  EXPECT_EQ(fields.subject, (NameFields{.cn = "www", .ou = "Web"}));
  EXPECT_EQ(fields.signatureName, "sha256WithRSAEncryption");
  EXPECT_FALSE(fields.extensions.empty());
  EXPECT_EQ(fields.attributes.front(), 0x31);
  EXPECT_EQ(assembleSigned(fields.info, fields.signatureAlgorithm, fields.signature), der);
  EXPECT_TRUE(verifyRequest(der));
}

TEST(CertificationRequests, WithoutAttributesHaveNone) {
  const TemporaryFolder folder;
  const RequestFields fields = readRequest(foreignRequest(folder, "-subj /CN=www")).value();
  EXPECT_TRUE(fields.attributes.empty());
  EXPECT_TRUE(fields.extensions.empty());
}

TEST(CertificationRequests, WithAChangedByteAreNotVerified) {
  const TemporaryFolder folder;
  sys::Bytes der = foreignRequest(folder, "-subj /CN=www");
  der.back() ^= 1;
  EXPECT_EQ(verifyRequest(der).code(), ZELKM_ERR_CRYPTO_VERIFY);
}

TEST(CertificationRequests, RefuseBytesThatAreNone) {
  const sys::Bytes certificate = TestAuthority("Root").certificate();
  for (const sys::Bytes& bytes : {sys::Bytes(), sys::Bytes{0x30, 0x00}, certificate}) {
    EXPECT_EQ(readRequest(bytes).code(), ZELKM_ERR_ASN);
    EXPECT_EQ(verifyRequest(bytes).code(), ZELKM_ERR_ASN);
  }
}

}  // namespace
}  // namespace zel::cms
