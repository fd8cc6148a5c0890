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

  /** A key "theirs" with a certificate that "authority" issued, in theirs.p12 of OpenSSL. */
  void makeWithOpenSsl(const std::string& arguments = "") {
    run("new='openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 10' && "
        "$new -subj /CN=authority -keyout authority.key -out authority.pem && "
        "$new -subj /CN=theirs -CA authority.pem -CAkey authority.key -keyout theirs.key "
        "-out theirs.pem && "
        "openssl pkcs12 -export -name theirs -inkey theirs.key -in theirs.pem "
        "-certfile authority.pem -out theirs.p12 -passout 'pass:pfx secret' " +
        arguments);
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
  makeWithOpenSsl();
  expectTheirs();
}

TEST_F(Pkcs12, OfOpenSslWithItsLegacyEncryptionIsRead) {
  makeWithOpenSsl("-legacy");
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
  makeWithOpenSsl();
  run("keytool -importkeystore -noprompt -srckeystore theirs.p12 -srcstoretype PKCS12 "
      "-srcstorepass 'pfx secret' -destkeystore jdk.p12 -deststoretype PKCS12 "
      "-deststorepass 'pfx secret' && keytool -importcert -noprompt -alias authority "
      "-file authority.pem -keystore jdk.p12 -storepass 'pfx secret' && mv jdk.p12 theirs.p12");
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
  makeWithOpenSsl();
  makeNssDatabase();
  run("pk12util -i theirs.p12 -d sql:nss -W 'pfx secret' && "
      "pk12util -o theirs.p12 -n theirs -d sql:nss -W 'pfx secret'");
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
  makeWithOpenSsl();
  for (const char* cipher : {"aes-256", "3des-pkcs12", "arcfour"}) {
    run("certtool --to-p12 --load-privkey theirs.key --load-certificate theirs.pem "
        "--load-ca-certificate authority.pem --p12-name theirs --password 'pfx secret' "
        "--outder --outfile theirs.p12 --pkcs-cipher " +
        std::string(cipher));
    expectTheirs();
    ASSERT_EQ(ZELKM_DeleteKey(handle(), "theirs"), ZELKM_OK) << cipher;
  }
}

}  // namespace
}  // namespace zel::km
