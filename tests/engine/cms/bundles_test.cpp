#include "engine/cms/bundles.h"

#include <gtest/gtest.h>

#include "engine/cms/pem.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

class Bundles : public testing::Test {
 protected:
  std::string pem(const TestAuthority& authority) {
    const sys::Bytes armoured = encodePem(kCertificateArmour, authority.certificate()).value();
    return {armoured.begin(), armoured.end()};
  }

  /** A PKCS #7 message made by OpenSSL's command line. */
  sys::Bytes message(const std::string& form) {
    folder_.write("chain.pem", text(pem(b_) + pem(a_)));
    const CommandResult made =
        run("openssl crl2pkcs7 -nocrl -certfile " + folder_.path("chain.pem") + " -outform " +
            form + " -out " + folder_.path("p7"));
    EXPECT_EQ(made.exitCode, 0) << made.output;
    return folder_.read("p7");
  }

  TemporaryFolder folder_;
  TestAuthority a_{"A"};
  TestAuthority b_{"B"};
};

using Certificates = std::vector<sys::Bytes>;

TEST_F(Bundles, MayBeOneCertificate) {
  EXPECT_EQ(readBundle(a_.certificate()).value(), Certificates{a_.certificate()});
  EXPECT_EQ(readBundle(text(pem(a_))).value(), Certificates{a_.certificate()});
}

TEST_F(Bundles, KeepTheOrderOfAMessage) {
  EXPECT_EQ(readBundle(message("DER")).value(), (Certificates{b_.certificate(), a_.certificate()}));
  EXPECT_EQ(readBundle(message("PEM")).value(), (Certificates{b_.certificate(), a_.certificate()}));
}

TEST_F(Bundles, MayBeSeveralCertificatesInPem) {
  EXPECT_EQ(readBundle(text("root first\n" + pem(a_) + "\n" + pem(b_))).value(),
            (Certificates{a_.certificate(), b_.certificate()}));
}

TEST_F(Bundles, WithoutCertificatesAreToldFromNone) {
  ASSERT_EQ(run("openssl crl2pkcs7 -nocrl -outform DER -out " + folder_.path("p7")).exitCode, 0);
  EXPECT_EQ(readBundle(folder_.read("p7")).code(), ZELKM_ERR_KEYREC_CERTIFICATE_NULL);
  EXPECT_EQ(readBundle({}).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(readBundle(text("no certificate")).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(readBundle(text("-----BEGIN X-----\nYQ==\n-----END X-----")).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(readBundle(text("-----BEGIN X-----\nYQ==\n")).code(), ZELKM_ERR_BASE64_INVALID_MSGTYPE);
}

TEST_F(Bundles, WithoutContentAreRefused) {
  constexpr std::uint8_t kSigned = 2;
  constexpr std::uint8_t kSignedAndEnveloped = 4;
  constexpr std::uint8_t kEncrypted = 6;
  for (const std::uint8_t type : {kSigned, kSignedAndEnveloped, kEncrypted}) {
    const sys::Bytes typeAlone = {0x30, 0x0B, 0x06, 0x09, 0x2A, 0x86, 0x48,
                                  0x86, 0xF7, 0x0D, 0x01, 0x07, type};
    EXPECT_EQ(readBundle(typeAlone).code(), ZELKM_ERR_ASN) << int{type};
  }
}

}  // namespace
}  // namespace zel::cms
