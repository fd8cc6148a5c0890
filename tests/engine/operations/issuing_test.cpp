#include <gmock/gmock.h>

#include "engine/cms/certificates.h"
#include "engine/cms/requests.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::HasSubstr;
using testing::Not;

class Issuing : public DatabaseTest {
 protected:
  Issuing() { EXPECT_EQ(selfSign("ca"), ZELKM_OK); }

  /** A request of OpenSSL's making, DER. */
  sys::Bytes request(const std::string& arguments = "") {
    const cms::CommandResult made = cms::run(
        "openssl req -new -nodes -newkey ec -pkeyopt ec_paramgen_curve:P-256 -subj /CN=www -keyout "
        "/dev/null -outform DER -out " +
        path("csr") + " " + arguments);
    EXPECT_EQ(made.exitCode, 0) << made.output;
    return folder().read("csr");
  }

  int issue(const sys::Bytes& request, const char* serialNumber = "", int version = 3,
            int days = 20, const char* issuer = "ca") {
    return ZELKM_IssueCert(handle(), request.data(), static_cast<std::uint32_t>(request.size()),
                           issuer, version, serialNumber, days, path("issued.pem").c_str(), 1, 0,
                           0);
  }

  /** The text of the issued certificate, once the issuer's is found to verify it. */
  std::string verified() {
    EXPECT_EQ(ZELKM_ExportCert(handle(), "ca", path("ca.pem").c_str(), 1), ZELKM_OK);
    const cms::CommandResult result = cms::run("openssl verify -x509_strict -CAfile " +
                                               path("ca.pem") + " " + path("issued.pem"));
    EXPECT_EQ(result.exitCode, 0) << result.output;
    return cms::run("openssl x509 -noout -text -in " + path("issued.pem")).output;
  }
};

TEST_F(Issuing, GrantsNamesAndUsages) {
  ASSERT_EQ(issue(request("-addext subjectAltName=DNS:www.example.net,IP:127.0.0.1 "
                          "-addext keyUsage=digitalSignature,keyCertSign "
                          "-addext extendedKeyUsage=serverAuth "
                          "-addext certificatePolicies=1.2.3.4")),
            ZELKM_OK);
  const std::string text = verified();
  EXPECT_THAT(text, HasSubstr("Issuer: C = DE, O = Sea, CN = ca"));
  EXPECT_THAT(text, HasSubstr("Subject: CN = www"));
  EXPECT_THAT(text, HasSubstr("DNS:www.example.net, IP Address:127.0.0.1"));
  EXPECT_THAT(text, HasSubstr("TLS Web Server Authentication"));
  EXPECT_THAT(text, HasSubstr("Digital Signature\n"));
  EXPECT_THAT(text, HasSubstr("CA:FALSE"));
  EXPECT_THAT(text, Not(HasSubstr("Policies")));
}

TEST_F(Issuing, GrantsAuthorityWhereItIsAskedFor) {
  ASSERT_EQ(issue(request("-addext basicConstraints=critical,CA:TRUE,pathlen:0")), ZELKM_OK);
  EXPECT_THAT(verified(), HasSubstr("CA:TRUE, pathlen:0"));
}

TEST_F(Issuing, GrantsNoPathLengthThatIsNone) {
  // basicConstraints: CA true and a pathLen of -1, and of 2^64.
  for (const char* constraints :
       {"DER:30:06:01:01:FF:02:01:FF", "DER:30:0E:01:01:FF:02:09:01:00:00:00:00:00:00:00:00"}) {
    ASSERT_EQ(issue(request(std::string("-addext basicConstraints=") + constraints)), ZELKM_OK);
    EXPECT_THAT(verified(), HasSubstr("CA:TRUE, pathlen:0")) << constraints;
  }
}

TEST_F(Issuing, GrantsNoAuthorityBeyondTheIssuersPathLength) {
  // Extensions: basicConstraints, critical, CA true, pathLen 0; keyUsage keyCertSign.
  const sys::Bytes extensions = {0x30, 0x21, 0x30, 0x12, 0x06, 0x03, 0x55, 0x1D, 0x13,
                                 0x01, 0x01, 0xFF, 0x04, 0x08, 0x30, 0x06, 0x01, 0x01,
                                 0xFF, 0x02, 0x01, 0x00, 0x30, 0x0B, 0x06, 0x03, 0x55,
                                 0x1D, 0x0F, 0x04, 0x04, 0x03, 0x02, 0x02, 0x04};
  ASSERT_EQ(ZELKM_CreateSelfSignedCertSigExt(
                handle(), "last", 0, 3, 256, name("last").get(), 30, 1, extensions.data(),
                static_cast<std::uint32_t>(extensions.size()), nullptr, 0),
            ZELKM_OK);
  ASSERT_EQ(issue(request("-addext basicConstraints=CA:TRUE"), "", 3, 20, "last"), ZELKM_OK);
  EXPECT_THAT(cms::run("openssl x509 -noout -text -in " + path("issued.pem")).output,
              HasSubstr("CA:FALSE"));
}

TEST_F(Issuing, TakesSerialNumbersInBothNotations) {
  ASSERT_EQ(issue(request(), "123456"), ZELKM_OK);
  EXPECT_THAT(verified(), HasSubstr("Serial Number: 123456 (0x1e240)"));
  ASSERT_EQ(issue(request(), "0xAbCdEf"), ZELKM_OK);
  EXPECT_THAT(verified(), HasSubstr("Serial Number: 11259375 (0xabcdef)"));
}

TEST_F(Issuing, RefusesSerialNumbersThatAreNone) {
  const sys::Bytes csr = request();
  for (const char* text : {"x", "12a", "0x", "0xfg", "-1", "0", "0x00", " 1"}) {
    EXPECT_EQ(issue(csr, text), ZELKM_ERR_PARAMETER) << text;
  }
  EXPECT_EQ(issue(csr, ("0x" + std::string(40, 'f')).c_str()), ZELKM_ERR_NUMBER_SIZE);
  EXPECT_EQ(issue(csr, std::string(100'000, '9').c_str()), ZELKM_ERR_NUMBER_SIZE);
  EXPECT_EQ(issue(csr, ("0x7" + std::string(39, 'f')).c_str()), ZELKM_OK);
}

TEST_F(Issuing, SignsWithTheAlgorithmChosen) {
  const sys::Bytes csr = request();
  ASSERT_EQ(ZELKM_IssueCertSig(handle(), csr.data(), static_cast<std::uint32_t>(csr.size()), "ca",
                               3, "", 20, 2, path("issued.pem").c_str(), 1, 0, 0),
            ZELKM_OK);
  EXPECT_THAT(verified(), HasSubstr("ecdsa-with-SHA512"));
  EXPECT_EQ(ZELKM_IssueCertSig(handle(), csr.data(), static_cast<std::uint32_t>(csr.size()), "ca",
                               3, "", 20, 3, path("issued.pem").c_str(), 1, 0, 0),
            ZELKM_ERR_SIGNATURE_ALGORITHM);
}

TEST_F(Issuing, OfVersionOneHasNoExtensions) {
  ASSERT_EQ(issue(request("-addext subjectAltName=DNS:a"), "", 1), ZELKM_OK);
  EXPECT_THAT(cms::run("openssl x509 -noout -text -in " + path("issued.pem")).output,
              Not(HasSubstr("extensions")));
}

TEST_F(Issuing, RefusesARequestThatIsNotGenuine) {
  sys::Bytes csr = request();
  csr.back() ^= 1;
  EXPECT_EQ(issue(csr), ZELKM_ERR_CRYPTO_VERIFY);
  EXPECT_EQ(issue({0x30, 0x00}), ZELKM_ERR_ASN);
  EXPECT_EQ(issue({}), ZELKM_ERR_NULL_PARAMETER);
}

TEST_F(Issuing, FromAnApprovedDatabaseIsForApprovedKeysOnly) {
  int approved = 0;
  ASSERT_EQ(ZELKM_CreateNewKeyDbFIPS(path("approved.kdb").c_str(), "fourteen-char1", 0, &approved),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_CreateSelfSignedCert(approved, "ca", 0, 3, 256, name("ca").get(), 30, nullptr, 0),
            ZELKM_OK);
  const auto issueApproved = [&](const sys::Bytes& csr) {
    return ZELKM_IssueCert(approved, csr.data(), static_cast<std::uint32_t>(csr.size()), "ca", 3,
                           "", 20, path("issued.pem").c_str(), 1, 0, 0);
  };
  EXPECT_EQ(issueApproved(request()), ZELKM_OK);
  EXPECT_EQ(issueApproved(request("-pkeyopt ec_paramgen_curve:secp256k1")),
            ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
  EXPECT_EQ(ZELKM_CloseKeyDb(approved), ZELKM_OK);
}

TEST_F(Issuing, RefusesWhoMayNotIssue) {
  const sys::Bytes csr = request();
  EXPECT_EQ(issue(csr, "", 3, 20, "nobody"), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(issue(csr, "", 4), ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION);
  EXPECT_EQ(issue(csr, "", 3, 0), ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD);

  const cms::TestAuthority stranger("Stranger");
  const sys::Bytes& certificate = stranger.certificate();
  ASSERT_EQ(ZELKM_StoreCACert(handle(), certificate.data(),
                              static_cast<std::uint32_t>(certificate.size()), "no key"),
            ZELKM_OK);
  EXPECT_EQ(issue(csr, "", 3, 20, "no key"), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);

  const sys::Bytes usage = {0x30, 0x0D, 0x30, 0x0B, 0x06, 0x03, 0x55, 0x1D,
                            0x0F, 0x04, 0x04, 0x03, 0x02, 0x07, 0x80};
  const sys::Bytes noAuthority = {0x30, 0x0B, 0x30, 0x09, 0x06, 0x03, 0x55,
                                  0x1D, 0x13, 0x04, 0x02, 0x30, 0x00};
  const auto selfSignWith = [&](const char* label, const sys::Bytes& extensions) {
    return ZELKM_CreateSelfSignedCertSigExt(
        handle(), label, 0, 3, 256, name(label).get(), 30, 1, extensions.data(),
        static_cast<std::uint32_t>(extensions.size()), nullptr, 0);
  };
  ASSERT_EQ(selfSignWith("usage", usage), ZELKM_OK);
  ASSERT_EQ(selfSignWith("leaf", noAuthority), ZELKM_OK);
  EXPECT_EQ(issue(csr, "", 3, 20, "usage"), ZELKM_ERR_VALIDATION_KEY_USAGE);
  EXPECT_EQ(issue(csr, "", 3, 20, "leaf"), ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS);
}

}  // namespace
}  // namespace zel::km
