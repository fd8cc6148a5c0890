#include <gmock/gmock.h>

#include "tests/interop/workshop.h"

namespace zel::km {
namespace {

using testing::HasSubstr;

/** Certificates as files of their own, in DER and in PEM armour. */
class Certificates : public InteropTest {
 protected:
  void exportOurs() {
    ASSERT_EQ(ZELKM_ExportCert(handle(), "leaf", path("ours.pem").c_str(), 1), ZELKM_OK);
    ASSERT_EQ(ZELKM_ExportCert(handle(), "leaf", path("ours.der").c_str(), 0), ZELKM_OK);
  }

  /** Stores theirs.pem and theirs.der. */
  void expectTheirs() {
    const sys::Bytes der = folder().read("theirs.der");
    EXPECT_EQ(derOf("theirs.pem"), der);
    ASSERT_EQ(
        ZELKM_StoreCACert(handle(), der.data(), static_cast<std::uint32_t>(der.size()), "theirs"),
        ZELKM_OK);
    EXPECT_STREQ(item("theirs")->certList->item->subjectDN->cn, "theirs");
  }
};

TEST_F(Certificates, IsReadByOpenSsl) {
  exportOurs();
  for (const char* file : {"ours.pem", "ours.der"}) {
    EXPECT_THAT(shown("openssl x509 -noout -subject -in " + std::string(file)),
                HasSubstr("C = DE, O = Sea, CN = leaf"));
  }
}

TEST_F(Certificates, OfOpenSslIsRead) {
  certifyWithOpenSsl();
  expectTheirs();
}

TEST_F(Certificates, IsReadByTheJdk) {
  exportOurs();
  for (const char* file : {"ours.pem", "ours.der"}) {
    EXPECT_THAT(shown("keytool -printcert -file " + std::string(file)),
                HasSubstr("Owner: CN=leaf, O=Sea, C=DE"));
  }
}

TEST_F(Certificates, OfTheJdkIsRead) {
  certifyWithKeytool();
  expectTheirs();
}

TEST_F(Certificates, IsReadByNss) {
  exportOurs();
  makeNssDatabase();
  run("certutil -A -d sql:nss -n pem -t ,, -a -i ours.pem");
  EXPECT_THAT(shown("certutil -L -d sql:nss -n pem"), HasSubstr("Subject: \"CN=leaf,O=Sea,C=DE\""));
  run("certutil -D -d sql:nss -n pem && certutil -A -d sql:nss -n der -t ,, -i ours.der");
  EXPECT_THAT(shown("certutil -L -d sql:nss -n der"), HasSubstr("Subject: \"CN=leaf,O=Sea,C=DE\""));
}

TEST_F(Certificates, OfNssIsRead) {
  certifyWithNss();
  expectTheirs();
}

TEST_F(Certificates, IsReadByGnuTls) {
  exportOurs();
  for (const char* input : {"--infile ours.pem", "--inder --infile ours.der"}) {
    EXPECT_THAT(shown("certtool --certificate-info " + std::string(input)),
                HasSubstr("Subject: CN=leaf,O=Sea,C=DE"));
  }
}

TEST_F(Certificates, OfGnuTlsIsRead) {
  certifyWithGnuTls();
  expectTheirs();
}

}  // namespace
}  // namespace zel::km
