#include <gmock/gmock.h>

#include <filesystem>

#include "engine/cms/certificates.h"
#include "tests/engine/certstore/test_stores.h"

namespace zel::km::certstore {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/** Another implementation of .NET on the same files. Disabled, for Mono is a large package. */
class MonoFiles : public StoreTest {
 protected:
  MonoFiles() {
    const cms::CommandResult compiled = cms::run("mcs -out:" + program() + " " ZEL_MONO_SOURCE);
    EXPECT_EQ(compiled.exitCode, 0) << compiled.output;
  }

  std::string mono(const std::string& arguments) const {
    const cms::CommandResult result = cms::run("mono " + program() + " " + arguments);
    EXPECT_EQ(result.exitCode, 0) << result.output;
    return result.output;
  }
  std::string program() const { return home_.path("mono_certificates.exe"); }

  cms::TestAuthority rsa_{"Owner", 2048};
  cms::TestAuthority ec_{"Other"};
};

TEST_F(MonoFiles, DISABLED_AreReadByMono) {
  const int my = open(kMy);
  ASSERT_EQ(insert(my, "rsa", rsa_), ZELKM_OK);
  ASSERT_EQ(insert(my, "ec", ec_), ZELKM_OK);
  ASSERT_EQ(insert(open(kRoot), "root", rsa_, false), ZELKM_OK);
  const std::string rsa = cms::thumbprint(rsa_.certificate());
  const std::string ec = cms::thumbprint(ec_.certificate());
  const std::string seen = mono("show " + path("my/" + rsa + ".pfx") + " " +
                                path("my/" + ec + ".pfx") + " " + path("root/" + rsa + ".pfx"));
  std::cout << seen;
  EXPECT_EQ(seen, rsa + " fitting key\n" + ec + " key\n" + rsa + " no key\n");
}

TEST_F(MonoFiles, DISABLED_AreReadFromMono) {
  opensslWrites("theirs.pfx", rsa_, "-certpbe PBE-SHA1-3DES -keypbe PBE-SHA1-3DES -macalg sha1");
  fs::create_directory(path("my"));
  mono("copy " + path("theirs.pfx") + " " + path("my"));
  EXPECT_THAT(files(), ElementsAre(cms::thumbprint(rsa_.certificate()) + ".pfx"));
  const int my = open(kMy);
  ASSERT_THAT(labels(my), testing::SizeIs(1));
  const std::string label = labels(my).front();
  std::cout << label << "\n";
  const KeyItem item = this->item(my, label.c_str());
  EXPECT_EQ(certificateOf(*item), rsa_.certificate());
  EXPECT_EQ(privateKeyOf(*item), privateKeyOf(rsa_));
}

}  // namespace
}  // namespace zel::km::certstore
