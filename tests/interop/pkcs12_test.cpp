#include <gmock/gmock.h>

#include "tests/interop/workshop.h"

namespace zel::km {
namespace {

using testing::HasSubstr;

class Pkcs12 : public InteropTest {
 protected:
  void exportOurs() {
    ASSERT_EQ(ZELKM_ExportKeys(handle(), 1, path("ours.p12").c_str(), kFilePassword,
                               Labels{"leaf"}.head()),
              ZELKM_OK);
  }

  /** Imports theirs.p12 and looks for the key and its chain. */
  void expectTheirs() {
    ASSERT_EQ(ZELKM_ImportKeysFromPFXFile(handle(), path("theirs.p12").c_str(), kFilePassword),
              ZELKM_OK);
    const KeyItem theirs = item("theirs");
    ASSERT_NE(theirs, nullptr);
    EXPECT_EQ(theirs->hasPrivateKey, 1);
    const ZELKMCertItem& certificate = *theirs->certList->item;
    EXPECT_EQ(bytesOf(certificate.certDer, certificate.certDerLength), derOf("theirs.pem"));
    ASSERT_NE(theirs->certList->next, nullptr);
    EXPECT_STREQ(theirs->certList->next->item->subjectDN->cn, "authority");
  }
};

TEST_F(Pkcs12, IsReadByOpenSsl) {
  exportOurs();
  const std::string text = shown("openssl pkcs12 -nodes -in ours.p12 -passin 'pass:pfx secret'");
  EXPECT_THAT(text, HasSubstr("friendlyName: leaf"));
  EXPECT_THAT(text, HasSubstr("subject=C = DE, O = Sea, CN = leaf"));
  EXPECT_THAT(text, HasSubstr("subject=C = DE, O = Sea, CN = root"));
  EXPECT_THAT(text, HasSubstr("BEGIN PRIVATE KEY"));
}

TEST_F(Pkcs12, OfOpenSslIsRead) {
  exportWithOpenSsl();
  expectTheirs();
}

TEST_F(Pkcs12, OfOpenSslWithItsLegacyEncryptionIsRead) {
  exportWithOpenSsl("-legacy");
  ASSERT_THAT(shown("openssl pkcs12 -legacy -info -noout -passin 'pass:pfx secret' -in theirs.p12"),
              HasSubstr("pbeWithSHA1And40BitRC2-CBC"));
  expectTheirs();
}

TEST_F(Pkcs12, IsReadByTheJdk) {
  exportOurs();
  const std::string text = shown("keytool -list -v -keystore ours.p12 -storepass 'pfx secret'");
  EXPECT_THAT(text, HasSubstr("Alias name: leaf"));
  EXPECT_THAT(text, HasSubstr("Entry type: PrivateKeyEntry"));
  EXPECT_THAT(text, HasSubstr("Certificate chain length: 2"));
}

TEST_F(Pkcs12, OfTheJdkIsRead) {
  exportWithKeytool();
  expectTheirs();
  EXPECT_EQ(item("authority")->booleanValue1, 1) << "the JDK's mark of trust";
}

TEST_F(Pkcs12, IsReadByNss) {
  exportOurs();
  makeNssDatabase();
  run("pk12util -i ours.p12 -d sql:nss -W 'pfx secret'");
  EXPECT_THAT(shown("certutil -K -d sql:nss"), HasSubstr("leaf"));
  EXPECT_THAT(shown("certutil -O -n leaf -d sql:nss"), HasSubstr("CN=root,O=Sea,C=DE"));
}

TEST_F(Pkcs12, OfNssIsRead) {
  exportWithNss();
  expectTheirs();
}

TEST_F(Pkcs12, IsReadByGnuTls) {
  exportOurs();
  run("certtool --p12-info --inder --infile ours.p12 --password 'pfx secret' --outfile ours.pem");
  EXPECT_THAT(shown("cat ours.pem"), HasSubstr("Friendly name: leaf"));
  EXPECT_THAT(shown("certtool --certificate-info --infile ours.pem"),
              HasSubstr("Subject: CN=leaf,O=Sea,C=DE"));
  EXPECT_THAT(shown("certtool --key-info --pkcs8 --infile ours.pem --password 'pfx secret'"),
              HasSubstr("curve:	SECP256R1"));
}

TEST_F(Pkcs12, OfGnuTlsIsRead) {
  for (const char* cipher : {"aes-256", "3des-pkcs12", "arcfour"}) {
    exportWithGnuTls(cipher);
    expectTheirs();
    ASSERT_EQ(ZELKM_DeleteKey(handle(), "theirs"), ZELKM_OK) << cipher;
  }
}

}  // namespace
}  // namespace zel::km
