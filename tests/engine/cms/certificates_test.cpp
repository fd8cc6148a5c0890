#include "engine/cms/certificates.h"

#include <gtest/gtest.h>

#include "engine/cms/der.h"
#include "engine/cms/openssl_ptr.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

/** A certificate made by OpenSSL's command line, so that nothing of ours reads its own writing. */
sys::Bytes foreignCertificate(const TemporaryFolder& folder, const std::string& arguments) {
  const CommandResult made = run("openssl req -x509 -nodes -keyout /dev/null -outform DER -out " +
                                 folder.path("foreign") + " " + arguments);
  EXPECT_EQ(made.exitCode, 0) << made.output;
  return folder.read("foreign");
}

TEST(Certificates, AreTakenApart) {
  const TemporaryFolder folder;
  const sys::Bytes der = foreignCertificate(
      folder, "-newkey rsa:2048 -days 7 -subj '/C=DE/O=Sea/CN=www.example.net' -sha384");
  const CertificateFields fields = readCertificate(der).value();
  EXPECT_EQ(fields.version, 3);
  EXPECT_EQ(fields.key, (KeyTraits{KeyAlgorithm::rsa, 2048}));
  EXPECT_EQ(fields.subject, (NameFields{.cn = "www.example.net", .o = "Sea", .c = "DE"}));
  EXPECT_EQ(fields.issuer, fields.subject);
  EXPECT_EQ(fields.issuerDer, fields.subjectDer);
  EXPECT_EQ(fields.notAfter - fields.notBefore, 7 * 24 * 60 * 60);
  EXPECT_EQ(fields.signature.size(), 256U);
  EXPECT_EQ(fields.signatureOid, "1.2.840.113549.1.1.12");
  EXPECT_EQ(fields.signatureName, "sha384WithRSAEncryption");
  EXPECT_EQ(fields.signatureAlgorithm, (sys::Bytes{0x30, 0x0D, 0x06, 0x09, 0x2A, 0x86, 0x48, 0x86,
                                                   0xF7, 0x0D, 0x01, 0x01, 0x0C, 0x05, 0x00}));
  EXPECT_EQ(describePublicKey(fields.publicKeyInfo).value(), fields.key);
}

TEST(Certificates, PartsPutTogetherAreTheWhole) {
  const TestAuthority authority("Root");
  const sys::Bytes& der = authority.certificate();
  const CertificateFields fields = readCertificate(der).value();
  EXPECT_EQ(assembleSigned(unsignedPart(der).value(), fields.signatureAlgorithm, fields.signature),
            der);
}

TEST(Certificates, TimesBeyond2050AndBefore1970AreSeconds) {
  const TemporaryFolder folder;
  const sys::Bytes der =
      foreignCertificate(folder,
                         "-newkey ec -pkeyopt ec_paramgen_curve:P-256 -subj /CN=x "
                         "-days 30000");
  EXPECT_GT(readCertificate(der).value().notAfter, 2'524'608'000);
}

TEST(Certificates, WithKeysOfUnknownKindAreStillRead) {
  const TemporaryFolder folder;
  const sys::Bytes der = foreignCertificate(folder, "-newkey ed448 -subj /CN=x");
  const CertificateFields fields = readCertificate(der).value();
  EXPECT_EQ(fields.key.algorithm, KeyAlgorithm::unknown);
  EXPECT_EQ(fields.signatureName, "ED448");
}

TEST(Certificates, AreIndexedByCanonicalNamesAndKey) {
  const TestAuthority root("Root CA");
  const TestAuthority other("ROOT ca");
  const CertificateKeys keys = readCertificateKeys(root.issueFor(other)).value();
  EXPECT_EQ(keys.subject, keys.issuer);
  EXPECT_EQ(keys.publicKeyInfo, publicKeyInfo(other.key()).value());
  EXPECT_FALSE(keys.serialNumber.empty());
}

TEST(Certificates, RefuseBytesThatAreNone) {
  const sys::Bytes der = TestAuthority("Root").certificate();
  sys::Bytes longer = der;
  longer.push_back(0);
  const sys::Bytes notOne[] = {{}, {0x30, 0x00}, {der.begin(), der.end() - 1}, longer};
  for (const sys::Bytes& bytes : notOne) {
    EXPECT_EQ(readCertificate(bytes).code(), ZELKM_ERR_ASN);
    EXPECT_EQ(readCertificateKeys(bytes).code(), ZELKM_ERR_ASN);
    EXPECT_EQ(unsignedPart(bytes).code(), ZELKM_ERR_ASN);
  }
}

}  // namespace
}  // namespace zel::cms
