#include "tests/interop/workshop.h"

namespace zel::km {

InteropTest::InteropTest() {
  EXPECT_EQ(selfSign("root"), ZELKM_OK);
  EXPECT_EQ(ZELKM_CreateNewCertReq(handle(), "leaf", 256, name("leaf", "Sea", "DE").get(),
                                   path("leaf.csr").c_str(), 0, 0),
            ZELKM_OK);
  const sys::Bytes request = derOf("leaf.csr");
  EXPECT_EQ(ZELKM_IssueCert(handle(), request.data(), static_cast<std::uint32_t>(request.size()),
                            "root", 3, "", 20, path("leaf.pem").c_str(), 1, 0, 0),
            ZELKM_OK);
  const sys::Bytes certificate = derOf("leaf.pem");
  EXPECT_EQ(ZELKM_ReceiveCert(handle(), certificate.data(),
                              static_cast<std::uint32_t>(certificate.size()), 0),
            ZELKM_OK);
}

std::string InteropTest::shown(const std::string& command) {
  const cms::CommandResult result = cms::run("cd " + path(".") + " && { " + command + "\n}");
  EXPECT_EQ(result.exitCode, 0) << command << "\n" << result.output;
  return result.output;
}

sys::Bytes InteropTest::derOf(const char* fileName) {
  unsigned char* buffer = nullptr;
  std::uint32_t length = 0;
  EXPECT_EQ(ZELKM_Base64DecodeFileToBuf(path(fileName).c_str(), &buffer, &length), ZELKM_OK);
  sys::Bytes der = bytesOf(buffer, length);
  ZELKM_Free(buffer);
  return der;
}

void InteropTest::certifyWithOpenSsl() {
  run("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=theirs "
      "-days 10 -keyout theirs.key -out theirs.pem && "
      "openssl x509 -in theirs.pem -outform DER -out theirs.der");
}

void InteropTest::certifyWithKeytool() {
  run("keytool -genkeypair -alias theirs -keyalg EC -groupname secp256r1 -dname CN=theirs "
      "-validity 10 -ext bc:c -storetype PKCS12 -keystore theirs.p12 -storepass 'pfx secret' && "
      "keytool -exportcert -rfc -alias theirs -keystore theirs.p12 -storepass 'pfx secret' "
      "-file theirs.pem && "
      "keytool -exportcert -alias theirs -keystore theirs.p12 -storepass 'pfx secret' "
      "-file theirs.der");
}

void InteropTest::makeNssDatabase() { run("mkdir nss && certutil -N -d sql:nss --empty-password"); }

void InteropTest::certifyWithNss() {
  makeNssDatabase();
  run("head -c 64 /dev/urandom > noise && certutil -S -d sql:nss -n theirs -s CN=theirs -x -m 1 "
      "-t CTu,CTu,CTu -k ec -q nistp256 -v 1 -z noise && "
      "certutil -L -d sql:nss -n theirs -a > theirs.pem && "
      "certutil -L -d sql:nss -n theirs -r > theirs.der");
}

void InteropTest::certifyWithGnuTls() {
  run("printf 'cn = theirs\\nexpiration_days = 10\\nca\\n' > template && "
      "certtool --generate-privkey --key-type ecdsa --curve secp256r1 --outfile theirs.key && "
      "certtool --generate-self-signed --load-privkey theirs.key --template template "
      "--outfile theirs.pem && "
      "certtool --certificate-info --infile theirs.pem --outder --outfile theirs.der");
}

void InteropTest::exportWithOpenSsl(const std::string& options) {
  run("new='openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 10' && "
      "$new -subj /CN=authority -keyout authority.key -out authority.pem && "
      "$new -subj /CN=theirs -CA authority.pem -CAkey authority.key -keyout theirs.key "
      "-out theirs.pem && "
      "openssl pkcs12 -export -name theirs -inkey theirs.key -in theirs.pem "
      "-certfile authority.pem -out theirs.p12 -passout 'pass:pfx secret' " +
      options);
}

void InteropTest::exportWithKeytool() {
  exportWithOpenSsl();
  run("keytool -importkeystore -noprompt -srckeystore theirs.p12 -srcstoretype PKCS12 "
      "-srcstorepass 'pfx secret' -destkeystore jdk.p12 -deststoretype PKCS12 "
      "-deststorepass 'pfx secret' && keytool -importcert -noprompt -alias authority "
      "-file authority.pem -keystore jdk.p12 -storepass 'pfx secret' && mv jdk.p12 theirs.p12");
}

void InteropTest::exportWithNss() {
  exportWithOpenSsl();
  makeNssDatabase();
  run("pk12util -i theirs.p12 -d sql:nss -W 'pfx secret' && "
      "pk12util -o theirs.p12 -n theirs -d sql:nss -W 'pfx secret'");
}

void InteropTest::exportWithGnuTls(const std::string& cipher) {
  exportWithOpenSsl();
  run("certtool --to-p12 --load-privkey theirs.key --load-certificate theirs.pem "
      "--load-ca-certificate authority.pem --p12-name theirs --password 'pfx secret' "
      "--outder --outfile theirs.p12 --pkcs-cipher " +
      cipher);
}

}  // namespace zel::km
