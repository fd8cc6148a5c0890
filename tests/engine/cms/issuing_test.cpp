#include "engine/cms/issuing.h"

#include <gtest/gtest.h>

#include <ctime>

#include "engine/cms/certificates.h"
#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

class Issuing : public testing::Test {
 protected:
  explicit Issuing(int keySize = 256) : key_(generateKey(keySize).value()) {
    plan_.subject = plan_.issuer = encodeName({.cn = "Root", .o = "Sea", .c = "DE"}).value();
    plan_.publicKeyInfo = publicKeyInfo(*key_).value();
    plan_.days = 30;
  }

  sys::Result<sys::Bytes> issue(SignatureSelector selector = kByKeyStrength) {
    return issueCertificate(plan_, describeKey(*key_), selector,
                            [&](SigningDigest digest, sys::ByteView message) {
                              return signMessage(*key_, digest, message);
                            });
  }

  std::string shown(const sys::Bytes& certificate) {
    folder_.write("certificate", certificate);
    return run("openssl x509 -inform DER -noout -text -in " + folder_.path("certificate")).output;
  }

  TemporaryFolder folder_;
  KeyPtr key_;
  CertificatePlan plan_;
};

struct AlgorithmCase {
  int keySize;
  SignatureSelector selector;
  const char* name;
};

class IssuingAlgorithms : public Issuing, public testing::WithParamInterface<AlgorithmCase> {
 protected:
  IssuingAlgorithms() : Issuing(GetParam().keySize) {}
};

TEST_P(IssuingAlgorithms, SignWhatOpenSslVerifies) {
  plan_.extensions = authorityExtensions(plan_.publicKeyInfo).value();
  const sys::Result<sys::Bytes> certificate = issue(GetParam().selector);
  ASSERT_TRUE(certificate);
  EXPECT_EQ(readCertificate(certificate.value()).value().signatureName, GetParam().name);

  folder_.write("certificate", certificate.value());
  const std::string pem = folder_.path("pem");
  ASSERT_EQ(
      run("openssl x509 -inform DER -in " + folder_.path("certificate") + " -out " + pem).exitCode,
      0);
  const CommandResult verified =
      run("openssl verify -x509_strict -check_ss_sig -CAfile " + pem + " " + pem);
  EXPECT_EQ(verified.exitCode, 0) << verified.output;
}

INSTANTIATE_TEST_SUITE_P(All, IssuingAlgorithms,
                         testing::Values(AlgorithmCase{2048, kByKeyStrength,
                                                       "sha256WithRSAEncryption"},
                                         AlgorithmCase{2048, kSha256, "sha256WithRSAEncryption"},
                                         AlgorithmCase{2048, kSha512, "sha512WithRSAEncryption"},
                                         AlgorithmCase{256, kByKeyStrength, "ecdsa-with-SHA256"},
                                         AlgorithmCase{384, kByKeyStrength, "ecdsa-with-SHA384"},
                                         AlgorithmCase{521, kByKeyStrength, "ecdsa-with-SHA512"},
                                         AlgorithmCase{256, kSha512, "ecdsa-with-SHA512"},
                                         AlgorithmCase{25519, kByKeyStrength, "ED25519"},
                                         AlgorithmCase{25519, kSha256, "ED25519"}));

TEST_F(Issuing, MakesAnAuthorityOfDefaultExtensions) {
  plan_.extensions = authorityExtensions(plan_.publicKeyInfo).value();
  const std::string text = shown(issue().value());
  for (const char* part : {"X509v3 Basic Constraints: critical\n                CA:TRUE",
                           "X509v3 Key Usage: critical\n                Digital Signature, "
                           "Certificate Sign, CRL Sign",
                           "X509v3 Subject Key Identifier", "X509v3 Authority Key Identifier"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
  }
}

TEST_F(Issuing, RunsFromNowForTheDaysGiven) {
  const std::int64_t now = std::time(nullptr);
  const CertificateFields fields = readCertificate(issue().value()).value();
  EXPECT_NEAR(static_cast<double>(fields.notBefore), static_cast<double>(now), 5);
  EXPECT_EQ(fields.notAfter - fields.notBefore, 30 * 24 * 60 * 60);
}

TEST_F(Issuing, DrawsPositiveSerialNumbersOf127Bits) {
  int longest = 0;
  for (int i = 0; i < 20; ++i) {
    const X509Ptr x509 = decodeDer<X509Ptr>(d2i_X509, issue().value());
    const BigNumberPtr number(ASN1_INTEGER_to_BN(X509_get0_serialNumber(x509.get()), nullptr));
    EXPECT_FALSE(BN_is_negative(number.get()));
    EXPECT_LE(BN_num_bits(number.get()), 127);
    longest = std::max(longest, BN_num_bits(number.get()));
  }
  EXPECT_GE(longest, 120);
}

TEST_F(Issuing, TakesTheSerialNumberGiven) {
  plan_.serialNumber = {0x01, 0xE2, 0x40};
  EXPECT_NE(shown(issue().value()).find("Serial Number: 123456"), std::string::npos);
}

TEST_F(Issuing, WritesEveryVersion) {
  for (const int version : {1, 2, 3}) {
    plan_.version = version;
    EXPECT_EQ(readCertificate(issue().value()).value().version, version);
  }
}

TEST_F(Issuing, RefusesOtherVersions) {
  for (const int version : {-1, 0, 4}) {
    plan_.version = version;
    EXPECT_EQ(issue().code(), ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION);
  }
  plan_.version = 1;
  plan_.extensions = authorityExtensions(plan_.publicKeyInfo).value();
  EXPECT_EQ(issue().code(), ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION);
}

TEST_F(Issuing, RefusesValiditiesThatCannotBe) {
  plan_.days = 0;
  EXPECT_EQ(issue().code(), ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD);
  plan_.days = -3;
  EXPECT_EQ(issue().code(), ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD);
  plan_.days = 8'000 * 366;
  EXPECT_EQ(issue().code(), ZELKM_ERR_EXPIRE_DAYS_TOO_LARGE);
}

TEST_F(Issuing, RefusesExtensionsThatAreNoneOrStandTwice) {
  plan_.extensions = {0x30, 0x03, 0x02, 0x01, 0x05};
  EXPECT_EQ(issue().code(), ZELKM_ERR_ASN);

  const ExtensionPtr usage(
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_key_usage, "digitalSignature"));
  const ExtensionsPtr twice(sk_X509_EXTENSION_new_null());
  for (int i = 0; i < 2; ++i) {
    sk_X509_EXTENSION_push(twice.get(), X509_EXTENSION_dup(usage.get()));
  }
  plan_.extensions = encodeDer(i2d_X509_EXTENSIONS, twice.get());
  EXPECT_EQ(issue().code(), ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS);
}

TEST_F(Issuing, RefusesOtherSelectors) {
  EXPECT_EQ(issue(SignatureSelector{3}).code(), ZELKM_ERR_SIGNATURE_ALGORITHM);
  EXPECT_EQ(issue(SignatureSelector{-1}).code(), ZELKM_ERR_SIGNATURE_ALGORITHM);
}

TEST_F(Issuing, PassesOnWhyTheSignerFailed) {
  const Signer failing = [](SigningDigest, sys::ByteView) -> sys::Result<sys::Bytes> {
    return sys::Failure{ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED};
  };
  EXPECT_EQ(issueCertificate(plan_, describeKey(*key_), kSha256, failing).code(),
            ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED);
}

TEST(SigningDigests, FollowTheStrengthOfTheKey) {
  const auto digest = [](int rsaSize) {
    return chooseDigest({KeyAlgorithm::rsa, rsaSize}, kByKeyStrength).value();
  };
  EXPECT_EQ(digest(2048), SigningDigest::sha256);
  EXPECT_EQ(digest(3072), SigningDigest::sha256);
  EXPECT_EQ(digest(4096), SigningDigest::sha384);
  EXPECT_EQ(digest(8192), SigningDigest::sha512);
  EXPECT_EQ(chooseDigest({KeyAlgorithm::unknown, 0}, kSha256).code(),
            ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
}

}  // namespace
}  // namespace zel::cms
