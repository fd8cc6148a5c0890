#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "engine/cms/certificates.h"
#include "engine/sys/files.h"
#include "tests/engine/certstore/test_stores.h"

namespace zel::km::certstore {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/** What other programs put into a store, or do to it. */
class ForeignFiles : public StoreTest {
 protected:
  void write(const std::string& file, sys::ByteView bytes) const {
    fs::create_directories(fs::path(path(file)).parent_path());
    home_.write(".dotnet/corefx/cryptography/x509stores/" + file, bytes);
  }
  /** Gives a file a place in the order: the n-th second of 1970. */
  void setOrder(const std::string& file, int second) const {
    ASSERT_TRUE(sys::setModificationTime(path(file), second * 1'000'000'000LL));
  }
  void expectEntry(const char* label, const cms::TestAuthority& owner) {
    const KeyItem item = this->item(open(kMy), label);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(certificateOf(*item), owner.certificate()) << label;
    EXPECT_EQ(privateKeyOf(*item), privateKeyOf(owner)) << label;
  }

  cms::TestAuthority owner_{"Owner"};
  cms::TestAuthority other_{"Other"};
};

TEST_F(ForeignFiles, InTheLayoutAreReadWithTheirKeys) {
  const std::string name = cms::thumbprint(owner_.certificate()) + ".pfx";
  opensslWrites("my/" + name, owner_, "-name web");
  EXPECT_THAT(labels(open(kMy)), ElementsAre("web"));
  expectEntry("web", owner_);
}

TEST_F(ForeignFiles, MayBeEncryptedInAnyWay) {
  const char* ways[] = {"-certpbe AES-128-CBC -keypbe AES-256-CBC -macalg sha512",
                        "-certpbe NONE -keypbe NONE", "-nomac",
                        "-legacy -certpbe PBE-SHA1-RC2-40 -keypbe PBE-SHA1-3DES -macalg sha1"};
  for (const char* way : ways) {
    opensslWrites("my/theirs.pfx", owner_, std::string("-name web ") + way);
    EXPECT_THAT(labels(open(kMy)), ElementsAre("web")) << way;
    expectEntry("web", owner_);
  }
}

TEST_F(ForeignFiles, WithoutANameAreCalledByTheirSubject) {
  opensslWrites("my/a.pfx", owner_);
  expectEntry("Owner", owner_);
}

TEST_F(ForeignFiles, WithoutEvenACommonNameAreCalledByTheirThumbprint) {
  ASSERT_EQ(cms::run("cd " + home_.path("") +
                     " && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes "
                     "-keyout k.pem -out c.pem -subj /O=Sea 2>/dev/null && openssl x509 -in c.pem "
                     "-outform DER -out c.der && openssl pkcs12 -export -in c.pem -inkey k.pem "
                     "-passout pass: -out c.pfx")
                .exitCode,
            0);
  write("my/c.pfx", home_.read("c.pfx"));
  EXPECT_THAT(labels(open(kMy)), ElementsAre(cms::thumbprint(home_.read("c.der"))));
}

TEST_F(ForeignFiles, OfOneNameAreNumberedAndNotConfused) {
  const cms::TestAuthority third("Third");
  opensslWrites("my/c.pfx", owner_, "-name web");
  opensslWrites("my/b.pfx", other_, "-name web");
  opensslWrites("my/a.pfx", third, "-name 'web (2)'");
  setOrder("my/c.pfx", 1);
  setOrder("my/b.pfx", 2);
  setOrder("my/a.pfx", 3);
  const int my = open(kMy);
  EXPECT_THAT(labels(my), ElementsAre("web", "web (3)", "web (2)"));
  expectEntry("web", owner_);
  expectEntry("web (3)", other_);
  expectEntry("web (2)", third);
  ASSERT_EQ(ZELKM_DeleteKey(my, "web (3)"), ZELKM_OK);
  EXPECT_THAT(files(), ElementsAre("a.pfx", "c.pfx"));
}

TEST_F(ForeignFiles, ThatComeLaterTakeNobodysLabel) {
  const int my = open(kMy);
  ASSERT_EQ(insert(my, "web", owner_), ZELKM_OK);
  opensslWrites("my/0.pfx", other_, "-name web");
  EXPECT_THAT(labels(my), ElementsAre("web", "web (2)"));
  expectEntry("web", owner_);
  EXPECT_EQ(insert(my, "web (2)", cms::TestAuthority("Third")),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
}

TEST_F(ForeignFiles, OfOneCertificateAreAllListed) {
  opensslWrites("my/a.pfx", owner_, "-name one");
  opensslWrites("my/b.pfx", owner_, "-name two");
  const int my = open(kMy);
  EXPECT_THAT(labels(my), UnorderedElementsAre("one", "two"));
  ASSERT_EQ(ZELKM_DeleteKey(my, "two"), ZELKM_OK);
  EXPECT_THAT(files(), ElementsAre("a.pfx"));
}

TEST_F(ForeignFiles, WithIssuersAreOneEntry) {
  const std::string root =
      home_.write("root.pem", cms::text(pemOf("CERTIFICATE", other_.certificate())));
  opensslWrites("my/a.pfx", owner_, "-name web -certfile " + root);
  EXPECT_THAT(labels(open(kMy)), ElementsAre("web"));
  expectEntry("web", owner_);
}

TEST_F(ForeignFiles, WithSeveralCertificatesAreSeveralEntriesThatStay) {
  const std::string both =
      home_.write("both.pem", cms::text(pemOf("CERTIFICATE", owner_.certificate()) +
                                        pemOf("CERTIFICATE", other_.certificate())));
  fs::create_directories(path("my"));
  ASSERT_EQ(cms::run("openssl pkcs12 -export -nokeys -passout pass: -in " + both + " -out " +
                     path("my/both.pfx"))
                .exitCode,
            0);
  const int my = open(kMy);
  EXPECT_THAT(labels(my), ElementsAre("Owner", "Other"));
  EXPECT_EQ(ZELKM_DeleteKey(my, "Owner"), ZELKM_ERR_UNSUPPORTED_OPTION);
  EXPECT_THAT(labels(my), ElementsAre("Owner", "Other"));
}

TEST_F(ForeignFiles, MayBePlainCertificates) {
  write("my/der.pfx", owner_.certificate());
  write("my/pem.pfx", cms::text(pemOf("CERTIFICATE", other_.certificate())));
  EXPECT_THAT(labels(open(kMy)), UnorderedElementsAre("Owner", "Other"));
}

TEST_F(ForeignFiles, ThatAreNotReadableAreLeftAlone) {
  const int my = open(kMy);
  ASSERT_EQ(insert(my, "web", owner_), ZELKM_OK);
  opensslWrites("my/locked.pfx", other_, "-passout pass:secret");
  opensslWrites("my/other-name.p12", other_);
  write("my/garbage.pfx", cms::text("no certificate"));
  write("my/empty.pfx", {});
  fs::create_directory(path("my/folder.pfx"));
  ASSERT_EQ(::mkfifo(path("my/pipe.pfx").c_str(), 0600), 0);
  fs::create_symlink("nowhere", path("my/dangling.pfx"));
  EXPECT_THAT(labels(my), ElementsAre("web"));
  ASSERT_EQ(ZELKM_DeleteKey(my, "web"), ZELKM_OK);
  EXPECT_THAT(files(), ElementsAre("dangling.pfx", "empty.pfx", "folder.pfx", "garbage.pfx",
                                   "locked.pfx", "other-name.p12", "pipe.pfx"));
}

TEST_F(ForeignFiles, ThatOthersMayHaveWrittenAreNotTaken) {
  opensslWrites("my/a.pfx", owner_);
  opensslWrites("elsewhere.pfx", other_);
  fs::create_symlink(path("elsewhere.pfx"), path("my/link.pfx"));
  EXPECT_THAT(labels(open(kMy)), ElementsAre("Owner"));
  ASSERT_EQ(::chmod(path("my/a.pfx").c_str(), 0606), 0);
  EXPECT_THAT(labels(open(kMy)), IsEmpty());
}

TEST_F(ForeignFiles, AreNoticedWhileAStoreIsOpen) {
  const int my = open(kMy);
  EXPECT_THAT(labels(my), IsEmpty());
  opensslWrites("my/a.pfx", owner_, "-name web");
  EXPECT_THAT(labels(my), ElementsAre("web"));
  opensslWrites("my/a.pfx", other_, "-name mail");
  EXPECT_THAT(labels(my), ElementsAre("mail"));
  expectEntry("mail", other_);
  fs::remove(path("my/a.pfx"));
  EXPECT_EQ(codeOfItem(my, "mail"), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(ForeignFiles, AreNoticedWithoutReadingTheOthersAgain) {
  opensslWrites("my/a.pfx", owner_, "-name web");
  setOrder("my/a.pfx", 1);
  usleep(50'000);  // until the file counts as settled
  const int my = open(kMy);
  EXPECT_THAT(labels(my), ElementsAre("web"));
  // The same size, time of writing and inode: only the time of change tells.
  opensslWrites("my/a.pfx", other_, "-name pop");
  setOrder("my/a.pfx", 1);
  EXPECT_THAT(labels(my), ElementsAre("pop"));
}

}  // namespace
}  // namespace zel::km::certstore
