#include <gmock/gmock.h>

#include "tests/interop/workshop.h"

namespace zel::km {
namespace {

using testing::HasSubstr;

/** Certification requests: theirs are issued by our authority, ours are leaf.csr. */
class Requests : public InteropTest {
 protected:
  /** Issues a certificate for theirs.csr. */
  void expectTheirs() {
    const sys::Bytes request = derOf("theirs.csr");
    ASSERT_EQ(ZELKM_IssueCert(handle(), request.data(), static_cast<std::uint32_t>(request.size()),
                              "root", 3, "", 20, path("issued.pem").c_str(), 1, 0, 0),
              ZELKM_OK);
    EXPECT_THAT(shown("openssl x509 -noout -subject -in issued.pem"), HasSubstr("CN = theirs"));
  }
};

TEST_F(Requests, IsReadByOpenSsl) {
  EXPECT_THAT(shown("openssl req -noout -verify -subject -in leaf.csr"),
              HasSubstr("C = DE, O = Sea, CN = leaf"));
}

TEST_F(Requests, OfOpenSslIsRead) {
  run("openssl req -new -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=theirs "
      "-keyout theirs.key -out theirs.csr");
  expectTheirs();
}

TEST_F(Requests, IsReadByTheJdk) {
  EXPECT_THAT(shown("keytool -printcertreq -file leaf.csr"),
              HasSubstr("Subject: CN=leaf, O=Sea, C=DE"));
}

TEST_F(Requests, OfTheJdkIsRead) {
  certifyWithKeytool();
  run("keytool -certreq -alias theirs -keystore theirs.p12 -storepass 'pfx secret' "
      "-file theirs.csr");
  expectTheirs();
}

TEST_F(Requests, IsReadByNss) {
  certifyWithNss();
  run("certutil -C -d sql:nss -c theirs -m 2 -a -i leaf.csr -o issued.pem");
  EXPECT_THAT(shown("openssl x509 -noout -subject -in issued.pem"),
              HasSubstr("C = DE, O = Sea, CN = leaf"));
}

TEST_F(Requests, OfNssIsRead) {
  makeNssDatabase();
  run("head -c 64 /dev/urandom > noise && certutil -R -d sql:nss -s CN=theirs -k ec -q nistp256 "
      "-z noise -a -o theirs.csr");
  expectTheirs();
}

TEST_F(Requests, IsReadByGnuTls) {
  const std::string text = shown("certtool --crq-info --infile leaf.csr");
  EXPECT_THAT(text, HasSubstr("Subject: CN=leaf,O=Sea,C=DE"));
  EXPECT_THAT(text, HasSubstr("Self signature: verified"));
}

TEST_F(Requests, OfGnuTlsIsRead) {
  certifyWithGnuTls();
  run("certtool --generate-request --load-privkey theirs.key --template template "
      "--outfile theirs.csr");
  expectTheirs();
}

}  // namespace
}  // namespace zel::km
