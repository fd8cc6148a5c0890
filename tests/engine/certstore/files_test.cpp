#include <gmock/gmock.h>
#include <sys/stat.h>

#include "engine/cms/certificates.h"
#include "engine/km/store/crypto_mode.h"
#include "tests/engine/certstore/test_stores.h"

namespace zel::km::certstore {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class StoreFiles : public StoreTest {
 protected:
  std::string onlyFile() const {
    const std::vector<std::string> all = files();
    EXPECT_EQ(all.size(), 1U);
    return "my/" + (all.empty() ? std::string("none") : all.front());
  }
  /** What openssl says of the certificate: "sha1 Fingerprint=AB:CD…". */
  std::string opensslFingerprint() const {
    return cms::run("openssl pkcs12 -nokeys -passin pass: -in " + path(onlyFile()) +
                    " | openssl x509 -noout -fingerprint -sha1 | tr -d :")
        .output;
  }
  static mode_t modeOf(const std::string& name) {
    struct stat status {};
    return ::stat(name.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
  }

  cms::TestAuthority owner_{"Owner"};
};

TEST_F(StoreFiles, AreNamedByTheThumbprintThatOpensslKnows) {
  ASSERT_EQ(insert(open(kMy), "web", owner_), ZELKM_OK);
  const std::string thumbprint = cms::thumbprint(owner_.certificate());
  EXPECT_THAT(files(), ElementsAre(thumbprint + ".pfx"));
  EXPECT_THAT(opensslFingerprint(), HasSubstr("Fingerprint=" + thumbprint));
}

TEST_F(StoreFiles, HoldWhatWasInsertedForOpenssl) {
  ASSERT_EQ(insert(open(kMy), "web server", owner_), ZELKM_OK);
  const std::string read = opensslReads(onlyFile());
  EXPECT_THAT(read, HasSubstr("friendlyName: web server"));
  EXPECT_THAT(read, HasSubstr(pemOf("CERTIFICATE", owner_.certificate())));
  EXPECT_THAT(read, HasSubstr(pemOf("PRIVATE KEY", privateKeyOf(owner_))));
}

TEST_F(StoreFiles, HoldNoKeyWithoutOne) {
  ASSERT_EQ(insert(open(kMy), "ca", owner_, false), ZELKM_OK);
  const std::string read = opensslReads(onlyFile());
  EXPECT_THAT(read, HasSubstr(pemOf("CERTIFICATE", owner_.certificate())));
  EXPECT_THAT(read, Not(HasSubstr("PRIVATE KEY")));
}

TEST_F(StoreFiles, AreTheUsersAlone) {
  ASSERT_EQ(insert(open(kMy), "web", owner_), ZELKM_OK);
  EXPECT_EQ(modeOf(path(onlyFile())), 0600U);
  for (const char* folder :
       {".dotnet", ".dotnet/corefx", ".dotnet/corefx/cryptography",
        ".dotnet/corefx/cryptography/x509stores", ".dotnet/corefx/cryptography/x509stores/my"}) {
    EXPECT_EQ(modeOf(home_.path(folder)), 0700U) << folder;
  }
}

TEST_F(StoreFiles, OfTheStoresLieInFoldersOfTheirOwn) {
  ASSERT_EQ(insert(open(kRoot), "root", owner_, false), ZELKM_OK);
  ASSERT_EQ(insert(open(kAuthorities), "ca", owner_, false), ZELKM_OK);
  EXPECT_EQ(files("root").size(), 1U);
  EXPECT_EQ(files("ca").size(), 1U);
  EXPECT_THAT(files("my"), IsEmpty());
}

TEST_F(StoreFiles, AreEncryptedAsEveryProgramReadsThem) {
  ASSERT_EQ(insert(open(kMy), "web", owner_), ZELKM_OK);
  EXPECT_THAT(opensslReads(onlyFile(), "-info"), HasSubstr("pbeWithSHA1And3-KeyTripleDES-CBC"));
}

TEST_F(StoreFiles, KeepToApprovedAlgorithmsInThatMode) {
  const int my = open(kMy);
  ASSERT_TRUE(setCryptoMode(true, false));
  EXPECT_EQ(insert(my, "edwards", cms::TestAuthority("Edwards", 25519)),
            ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
  EXPECT_EQ(insert(my, "web", owner_), ZELKM_OK);
  EXPECT_THAT(labels(my), ElementsAre("web"));
  ASSERT_TRUE(setCryptoMode(false, false));
  const std::string read = opensslReads(onlyFile(), "-info");
  EXPECT_THAT(read, HasSubstr("AES-256-CBC"));
  EXPECT_THAT(read, Not(HasSubstr("3-KeyTripleDES")));
}

TEST_F(StoreFiles, TakeAnotherNameWhenTheirsIsTaken) {
  ASSERT_EQ(insert(open(kMy), "web", owner_), ZELKM_OK);
  const std::string theirs = onlyFile();
  home_.write(".dotnet/corefx/cryptography/x509stores/" + theirs, cms::text("something else"));
  const int my = open(kMy);
  EXPECT_THAT(labels(my), IsEmpty());
  ASSERT_EQ(insert(my, "web", owner_), ZELKM_OK);
  EXPECT_THAT(labels(my), ElementsAre("web"));
  const std::string thumbprint = cms::thumbprint(owner_.certificate());
  EXPECT_THAT(files(), ElementsAre(thumbprint + ".00.pfx", thumbprint + ".pfx"));
  EXPECT_EQ(cms::run("cat " + path(theirs)).output, "something else");
  ASSERT_EQ(ZELKM_DeleteKey(my, "web"), ZELKM_OK);
  EXPECT_THAT(files(), ElementsAre(thumbprint + ".pfx"));
}

}  // namespace
}  // namespace zel::km::certstore
