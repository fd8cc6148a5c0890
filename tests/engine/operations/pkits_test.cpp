#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

#include "engine/cms/pem.h"
#include "tests/engine/operations/database.h"

// NIST's Public Key Interoperability Test Suite (PKITS, the certificates of 2011): paths of RSA
// keys of 2048 bits with SHA-256; three end in DSA keys of 1024 bits with SHA-1. They are validated
// at the present time; most of the certificates end on the last day of 2030.
//
// Run are the cases whose outcome depends on the certificates alone. Left out are
//  - 4.4, 4.14 and 4.15, of 4.5 tests 2, 5 and 7, of 4.7 tests 4 and 5: revocation, which is not
//    looked at;
//  - 4.8 to 4.12: certificate policies, which are not looked at either.

namespace zel::km {
namespace {

constexpr int kSignature = ZELKM_ERR_VALIDATION_KEY_SIGNATURE;
constexpr int kNoIssuer = ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND;
constexpr int kValidity = ZELKM_ERR_VALIDATION_KEY_VALIDITY;
constexpr int kBasicConstraints = ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS;
constexpr int kNameConstraints = ZELKM_ERR_VALIDATION;
constexpr int kCriticalExtension = ZELKM_ERR_VALIDATION_KEY_UNKNOWN_CRITICAL_EXTENSION;

/** A test of the suite: its number, the file of its end entity, and what the engine answers. */
struct Case {
  const char* number;
  std::string_view endEntity;
  int code;
};

// The names of the end entities begin with the outcome that the suite asks for.
constexpr Case kCases[] = {
    // 4.1 Signature verification
    {"4.1.1", "ValidCertificatePathTest1EE", ZELKM_OK},
    {"4.1.2", "InvalidCASignatureTest2EE", kSignature},
    {"4.1.3", "InvalidEESignatureTest3EE", kSignature},
    {"4.1.4", "ValidDSASignaturesTest4EE", ZELKM_OK},
    {"4.1.5", "ValidDSAParameterInheritanceTest5EE", kNoIssuer},
    {"4.1.6", "InvalidDSASignatureTest6EE", kSignature},
    // 4.2 Validity periods
    {"4.2.1", "InvalidCAnotBeforeDateTest1EE", kValidity},
    {"4.2.2", "InvalidEEnotBeforeDateTest2EE", kValidity},
    {"4.2.3", "Validpre2000UTCnotBeforeDateTest3EE", ZELKM_OK},
    {"4.2.4", "ValidGeneralizedTimenotBeforeDateTest4EE", ZELKM_OK},
    {"4.2.5", "InvalidCAnotAfterDateTest5EE", kValidity},
    {"4.2.6", "InvalidEEnotAfterDateTest6EE", kValidity},
    {"4.2.7", "Invalidpre2000UTCEEnotAfterDateTest7EE", kValidity},
    {"4.2.8", "ValidGeneralizedTimenotAfterDateTest8EE", ZELKM_OK},
    // 4.3 Name chaining
    {"4.3.1", "InvalidNameChainingTest1EE", kNoIssuer},
    {"4.3.2", "InvalidNameChainingOrderTest2EE", kNoIssuer},
    {"4.3.3", "ValidNameChainingWhitespaceTest3EE", ZELKM_OK},
    {"4.3.4", "ValidNameChainingWhitespaceTest4EE", ZELKM_OK},
    {"4.3.5", "ValidNameChainingCapitalizationTest5EE", ZELKM_OK},
    {"4.3.6", "ValidNameUIDsTest6EE", ZELKM_OK},
    {"4.3.7", "ValidRFC3280MandatoryAttributeTypesTest7EE", ZELKM_OK},
    {"4.3.8", "ValidRFC3280OptionalAttributeTypesTest8EE", ZELKM_OK},
    {"4.3.9", "ValidUTF8StringEncodedNamesTest9EE", ZELKM_OK},
    {"4.3.10", "ValidRolloverfromPrintableStringtoUTF8StringTest10EE", ZELKM_OK},
    {"4.3.11", "ValidUTF8StringCaseInsensitiveMatchTest11EE", ZELKM_OK},
    // 4.5 Self-issued certificates
    {"4.5.1", "ValidBasicSelfIssuedOldWithNewTest1EE", ZELKM_OK},
    {"4.5.3", "ValidBasicSelfIssuedNewWithOldTest3EE", ZELKM_OK},
    {"4.5.4", "ValidBasicSelfIssuedNewWithOldTest4EE", ZELKM_OK},
    {"4.5.6", "ValidBasicSelfIssuedCRLSigningKeyTest6EE", ZELKM_OK},
    {"4.5.8", "InvalidBasicSelfIssuedCRLSigningKeyTest8EE", kBasicConstraints},
    // 4.6 Basic constraints
    {"4.6.1", "InvalidMissingbasicConstraintsTest1EE", kBasicConstraints},
    {"4.6.2", "InvalidcAFalseTest2EE", kBasicConstraints},
    {"4.6.3", "InvalidcAFalseTest3EE", kBasicConstraints},
    {"4.6.4", "ValidbasicConstraintsNotCriticalTest4EE", kBasicConstraints},
    {"4.6.5", "InvalidpathLenConstraintTest5EE", kBasicConstraints},
    {"4.6.6", "InvalidpathLenConstraintTest6EE", kBasicConstraints},
    {"4.6.7", "ValidpathLenConstraintTest7EE", ZELKM_OK},
    {"4.6.8", "ValidpathLenConstraintTest8EE", ZELKM_OK},
    {"4.6.9", "InvalidpathLenConstraintTest9EE", kBasicConstraints},
    {"4.6.10", "InvalidpathLenConstraintTest10EE", kBasicConstraints},
    {"4.6.11", "InvalidpathLenConstraintTest11EE", kBasicConstraints},
    {"4.6.12", "InvalidpathLenConstraintTest12EE", kBasicConstraints},
    {"4.6.13", "ValidpathLenConstraintTest13EE", ZELKM_OK},
    {"4.6.14", "ValidpathLenConstraintTest14EE", ZELKM_OK},
    {"4.6.15", "ValidSelfIssuedpathLenConstraintTest15EE", ZELKM_OK},
    {"4.6.16", "InvalidSelfIssuedpathLenConstraintTest16EE", kBasicConstraints},
    {"4.6.17", "ValidSelfIssuedpathLenConstraintTest17EE", ZELKM_OK},
    // 4.7 Key usage
    {"4.7.1", "InvalidkeyUsageCriticalkeyCertSignFalseTest1EE", kBasicConstraints},
    {"4.7.2", "InvalidkeyUsageNotCriticalkeyCertSignFalseTest2EE", kBasicConstraints},
    {"4.7.3", "ValidkeyUsageNotCriticalTest3EE", ZELKM_OK},
    // 4.13 Name constraints
    {"4.13.1", "ValidDNnameConstraintsTest1EE", ZELKM_OK},
    {"4.13.2", "InvalidDNnameConstraintsTest2EE", kNameConstraints},
    {"4.13.3", "InvalidDNnameConstraintsTest3EE", kNameConstraints},
    {"4.13.4", "ValidDNnameConstraintsTest4EE", ZELKM_OK},
    {"4.13.5", "ValidDNnameConstraintsTest5EE", ZELKM_OK},
    {"4.13.6", "ValidDNnameConstraintsTest6EE", ZELKM_OK},
    {"4.13.7", "InvalidDNnameConstraintsTest7EE", kNameConstraints},
    {"4.13.8", "InvalidDNnameConstraintsTest8EE", kNameConstraints},
    {"4.13.9", "InvalidDNnameConstraintsTest9EE", kNameConstraints},
    {"4.13.10", "InvalidDNnameConstraintsTest10EE", kNameConstraints},
    {"4.13.11", "ValidDNnameConstraintsTest11EE", ZELKM_OK},
    {"4.13.12", "InvalidDNnameConstraintsTest12EE", kNameConstraints},
    {"4.13.13", "InvalidDNnameConstraintsTest13EE", kNameConstraints},
    {"4.13.14", "ValidDNnameConstraintsTest14EE", ZELKM_OK},
    {"4.13.15", "InvalidDNnameConstraintsTest15EE", kNameConstraints},
    {"4.13.16", "InvalidDNnameConstraintsTest16EE", kNameConstraints},
    {"4.13.17", "InvalidDNnameConstraintsTest17EE", kNameConstraints},
    {"4.13.18", "ValidDNnameConstraintsTest18EE", ZELKM_OK},
    {"4.13.19", "ValidDNnameConstraintsTest19EE", ZELKM_OK},
    {"4.13.20", "InvalidDNnameConstraintsTest20EE", kNameConstraints},
    {"4.13.21", "ValidRFC822nameConstraintsTest21EE", ZELKM_OK},
    {"4.13.22", "InvalidRFC822nameConstraintsTest22EE", kNameConstraints},
    {"4.13.23", "ValidRFC822nameConstraintsTest23EE", ZELKM_OK},
    {"4.13.24", "InvalidRFC822nameConstraintsTest24EE", kNameConstraints},
    {"4.13.25", "ValidRFC822nameConstraintsTest25EE", ZELKM_OK},
    {"4.13.26", "InvalidRFC822nameConstraintsTest26EE", kNameConstraints},
    {"4.13.27", "ValidDNandRFC822nameConstraintsTest27EE", ZELKM_OK},
    {"4.13.28", "InvalidDNandRFC822nameConstraintsTest28EE", kNameConstraints},
    {"4.13.29", "InvalidDNandRFC822nameConstraintsTest29EE", kNameConstraints},
    {"4.13.30", "ValidDNSnameConstraintsTest30EE", ZELKM_OK},
    {"4.13.31", "InvalidDNSnameConstraintsTest31EE", kNameConstraints},
    {"4.13.32", "ValidDNSnameConstraintsTest32EE", ZELKM_OK},
    {"4.13.33", "InvalidDNSnameConstraintsTest33EE", kNameConstraints},
    {"4.13.34", "ValidURInameConstraintsTest34EE", ZELKM_OK},
    {"4.13.35", "InvalidURInameConstraintsTest35EE", kNameConstraints},
    {"4.13.36", "ValidURInameConstraintsTest36EE", ZELKM_OK},
    {"4.13.37", "InvalidURInameConstraintsTest37EE", kNameConstraints},
    {"4.13.38", "InvalidDNSnameConstraintsTest38EE", kNameConstraints},
    // 4.16 Private certificate extensions
    {"4.16.1", "ValidUnknownNotCriticalCertificateExtensionTest1EE", ZELKM_OK},
    {"4.16.2", "InvalidUnknownCriticalCertificateExtensionTest2EE", kCriticalExtension},
};

/** Where the engine answers otherwise than the suite, and why. */
const std::map<std::string_view, std::string_view> kDepartures = {
    {"4.1.5", "OpenSSL takes no DSA key that leaves its parameters to the issuer's"},
    {"4.6.4", "strict: an authority's basic constraints have to be critical (RFC 5280, 4.2.1.9)"},
};

const std::filesystem::path kCertificates = PKITS_CERTIFICATES;
constexpr std::string_view kTrustAnchor = "TrustAnchorRootCertificate";

sys::Bytes read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/** One PEM file of all authorities of the suite but the trust anchor. */
sys::Bytes authorities() {
  sys::Bytes bundle;
  for (const auto& file : std::filesystem::directory_iterator(kCertificates)) {
    const std::string name = file.path().stem().string();
    if (name.ends_with("EE") || name == kTrustAnchor) continue;
    const sys::Bytes pem = cms::encodePem(cms::kCertificateArmour, read(file.path())).value();
    bundle.insert(bundle.end(), pem.begin(), pem.end());
  }
  return bundle;
}

/**
 * A database with every authority of the suite, as a directory has them: the engine finds the path
 * among them by itself. They come in as one PFX, which is one change instead of 180.
 */
class Pkits : public testing::Test {
 protected:
  Pkits() {
    folder_.write("authorities.pem", authorities());
    const std::string pfx = folder_.path("authorities.p12");
    const cms::CommandResult made =
        cms::run("openssl pkcs12 -export -nokeys -passout pass:pkits -in " +
                 folder_.path("authorities.pem") + " -out " + pfx);
    EXPECT_EQ(made.exitCode, 0) << made.output;
    const sys::Bytes anchor = read(kCertificates / (std::string(kTrustAnchor) + ".crt"));

    const std::string path = folder_.path("pkits.kdb");
    EXPECT_EQ(ZELKM_CreateNewKeyDb(path.c_str(), "pkits password", 0, &handle_), ZELKM_OK);
    EXPECT_EQ(ZELKM_ImportKeysFromPFXFile(handle_, pfx.c_str(), "pkits"), ZELKM_OK);
    EXPECT_EQ(ZELKM_StoreCACert(handle_, anchor.data(), static_cast<std::uint32_t>(anchor.size()),
                                "anchor"),
              ZELKM_OK);
  }
  ~Pkits() override { ZELKM_CloseKeyDb(handle_); }

  int validate(std::string_view endEntity) const {
    const sys::Bytes certificate = read(kCertificates / (std::string(endEntity) + ".crt"));
    unsigned char isValid = 0;
    const int code = ZELKM_ValidateCertChain(
        handle_, certificate.data(), static_cast<std::uint32_t>(certificate.size()), &isValid);
    EXPECT_EQ(isValid, code == ZELKM_OK ? 1 : 0);
    return code;
  }

 private:
  cms::TemporaryFolder folder_;
  int handle_ = 0;
};

// docs/engine.md tells the number of cases and the departures.
TEST_F(Pkits, EndsAsTheSuiteAsks) {
  for (const Case& test : kCases) {
    SCOPED_TRACE(std::string(test.number) + " " + std::string(test.endEntity));
    EXPECT_EQ(validate(test.endEntity), test.code);
    const bool shouldBeValid = test.endEntity.starts_with("Valid");
    EXPECT_EQ(test.code == ZELKM_OK, shouldBeValid != kDepartures.contains(test.number));
  }
}

}  // namespace
}  // namespace zel::km
