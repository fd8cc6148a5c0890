#include <gtest/gtest.h>

#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

class Pkcs12Files : public testing::Test {
 protected:
  Pkcs12Entry leafEntry(const std::string& friendlyName) const {
    return {.friendlyName = friendlyName,
            .privateKeyInfo = privateKeyInfo(leaf_.key()).value(),
            .chain = {leafCertificate_, root_.certificate()}};
  }

  void write(const std::vector<Pkcs12Entry>& entries, std::string_view password = "secret",
             Pkcs12Encryption encryption = Pkcs12Encryption::strong) {
    const sys::Result<sys::Bytes> file = writePkcs12(entries, text(password), encryption);
    ASSERT_TRUE(file);
    folder_.write("file.p12", file.value());
  }

  CommandResult openssl(const std::string& arguments, const std::string& password = "secret") {
    return run("openssl pkcs12 -in " + folder_.path("file.p12") + " -passin 'pass:" + password +
               "' -nodes " + arguments);
  }
  CommandResult keytool() {
    return run("keytool -list -v -storetype PKCS12 -storepass secret -keystore " +
               folder_.path("file.p12"));
  }

  void expectTheKey(const std::string& password) {
    ASSERT_EQ(openssl("-nocerts -out " + folder_.path("key.pem"), password).exitCode, 0);
    ASSERT_EQ(run("openssl pkcs8 -topk8 -nocrypt -outform DER -in " + folder_.path("key.pem") +
                  " -out " + folder_.path("key"))
                  .exitCode,
              0);
    const sys::SecretBytes key = privateKeyInfo(leaf_.key()).value();
    EXPECT_EQ(folder_.read("key"), sys::Bytes(key.begin(), key.end()));
  }

  static int count(const std::string& text, const std::string& part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
      ++found;
    }
    return found;
  }

  TemporaryFolder folder_;
  TestAuthority root_{"Root"};
  TestAuthority leaf_{"Leaf"};
  sys::Bytes leafCertificate_ = root_.issueFor(leaf_);
};

TEST_F(Pkcs12Files, AreReadByOpenSsl) {
  write({leafEntry("server key")});
  const CommandResult shown = openssl("-info");
  EXPECT_EQ(shown.exitCode, 0) << shown.output;
  EXPECT_EQ(count(shown.output, "friendlyName: server key"), 2);
  EXPECT_EQ(count(shown.output, "localKeyID: 00 00 00 01"), 2);
  EXPECT_EQ(count(shown.output, "BEGIN CERTIFICATE"), 2);
  EXPECT_EQ(count(shown.output, "BEGIN PRIVATE KEY"), 1);
  EXPECT_EQ(count(shown.output, "MAC: sha256, Iteration 100000"), 1);
  EXPECT_EQ(count(shown.output, "PBES2, PBKDF2, AES-256-CBC, Iteration 100000, PRF hmacWithSHA256"),
            2);
}

TEST_F(Pkcs12Files, MayBeEncryptedAsEveryProgramReadsThem) {
  write({leafEntry("server key")}, "", Pkcs12Encryption::readable);
  const CommandResult shown = openssl("-info", "");
  EXPECT_EQ(shown.exitCode, 0) << shown.output;
  EXPECT_EQ(count(shown.output, "MAC: sha256, Iteration 2000"), 1) << shown.output;
  EXPECT_EQ(count(shown.output, "pbeWithSHA1And3-KeyTripleDES-CBC, Iteration 2000"), 2);
  EXPECT_EQ(count(shown.output, "friendlyName: server key"), 2);
  EXPECT_EQ(count(shown.output, "localKeyID: 00 00 00 01"), 2);
  expectTheKey("");
}

TEST_F(Pkcs12Files, HoldTheKeyThatWasGiven) {
  write({leafEntry("server")});
  expectTheKey("secret");
}

TEST_F(Pkcs12Files, OpenWithTheirPasswordOnly) {
  write({leafEntry("server")});
  EXPECT_NE(openssl("-noout", "Secret").exitCode, 0);
  EXPECT_NE(openssl("-noout", "").exitCode, 0);
}

TEST_F(Pkcs12Files, TakeEmptyAndNonAsciiPasswords) {
  for (const char* password : {"", "Päßwört", "schlüssel🔑"}) {
    write({leafEntry("server")}, password);
    const CommandResult shown = openssl("-noout", password);
    EXPECT_EQ(shown.exitCode, 0) << password << shown.output;
  }
}

TEST_F(Pkcs12Files, AreReadByTheJdkWithChainsAndTrust) {
  write({leafEntry("server"),
         {.friendlyName = "authority",
          .privateKeyInfo = {},
          .chain = {root_.certificate()},
          .trusted = true}});
  const CommandResult listed = keytool();
  ASSERT_EQ(listed.exitCode, 0) << listed.output;
  EXPECT_EQ(count(listed.output, "Your keystore contains 2 entries"), 1) << listed.output;
  EXPECT_EQ(count(listed.output, "Alias name: server"), 1);
  EXPECT_EQ(count(listed.output, "Entry type: PrivateKeyEntry"), 1);
  EXPECT_EQ(count(listed.output, "Certificate chain length: 2"), 1) << listed.output;
  EXPECT_EQ(count(listed.output, "Alias name: authority"), 1);
  EXPECT_EQ(count(listed.output, "Entry type: trustedCertEntry"), 1);
}

TEST_F(Pkcs12Files, HoldEachCertificateOnce) {
  write({leafEntry("server"),
         {.friendlyName = "root",
          .privateKeyInfo = privateKeyInfo(root_.key()).value(),
          .chain = {root_.certificate()}}});
  const CommandResult shown = openssl("");
  EXPECT_EQ(count(shown.output, "BEGIN CERTIFICATE"), 2);
  EXPECT_EQ(count(shown.output, "BEGIN PRIVATE KEY"), 2);
}

TEST_F(Pkcs12Files, CarryNamesBeyondAscii) {
  write({leafEntry("Schlüssel 🔑")});
  const CommandResult listed =
      run("LC_ALL=C.UTF-8 keytool -J-Dfile.encoding=UTF-8 "
          "-J-Dstdout.encoding=UTF-8 -J-Dsun.stdout.encoding=UTF-8 -list "
          "-storetype PKCS12 -storepass secret -keystore " +
          folder_.path("file.p12"));
  EXPECT_NE(listed.output.find("schlüssel 🔑"), std::string::npos) << listed.output;
}

TEST_F(Pkcs12Files, RefuseACertificateThatIsNone) {
  Pkcs12Entry entry = leafEntry("broken");
  entry.chain[0].pop_back();
  EXPECT_EQ(writePkcs12({entry}, text("secret")).code(), ZELKM_ERR_ASN);
  entry = leafEntry("broken");
  entry.chain[1].pop_back();
  EXPECT_EQ(writePkcs12({entry}, text("secret")).code(), ZELKM_ERR_ASN);
}

}  // namespace
}  // namespace zel::cms
