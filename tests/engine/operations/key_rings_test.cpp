#include "engine/cms/pkcs12/key_rings.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "engine/cms/pem.h"
#include "tests/engine/operations/database.h"
#include "tests/engine/operations/database_content.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kRingPassword[] = "Ring söcret 1";
constexpr char kNewPassword[] = "another secret";

std::uint32_t lengthOf(sys::ByteView bytes) { return static_cast<std::uint32_t>(bytes.size()); }

class KeyRings : public DatabaseTest {
 protected:
  int toKeyRing(const char* password = kRingPassword, const char* databasePassword = kPassword) {
    return ZELKM_Kdb2Kyr(databasePath().c_str(), databasePassword, ring_.c_str(), password);
  }
  int toDatabase(const char* password = kRingPassword, const char* newPassword = kNewPassword) {
    return ZELKM_Kyr2Kdb(ring_.c_str(), password, back_.c_str(), newPassword);
  }

  std::vector<EntryView> content() { return contentOf(handle(), kPassword); }
  /** The content of the database that came back. */
  std::vector<EntryView> contentThatCameBack() {
    int handle = 0;
    EXPECT_EQ(ZELKM_OpenKeyDb(back_.c_str(), kNewPassword, &handle), ZELKM_OK);
    std::vector<EntryView> content = contentOf(handle, kNewPassword);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    return content;
  }

  int insert(const char* label, const sys::Bytes& certificate, const EVP_PKEY* key, bool trusted) {
    const sys::SecretBytes pkcs8 =
        key == nullptr ? sys::SecretBytes() : cms::privateKeyInfo(*key).value();
    return ZELKM_InsertKey(handle(), label, lengthOf(certificate), certificate.data(),
                           lengthOf(pkcs8), pkcs8.empty() ? nullptr : pkcs8.data(), trusted ? 1 : 0,
                           0);
  }

  int request(const char* label) {
    // `Extensions` with one: subjectAltName, DNS:sea.
    const sys::Bytes extensions = {0x30, 0x10, 0x30, 0x0E, 0x06, 0x03, 0x55, 0x1D, 0x11,
                                   0x04, 0x07, 0x30, 0x05, 0x82, 0x03, 's',  'e',  'a'};
    return ZELKM_CreateNewCertReqSigExt(handle(), label, 256, name(label, "Sea", "DE").get(), 1,
                                        extensions.data(), lengthOf(extensions),
                                        path("request.csr").c_str(), 0, 0);
  }

  void expectNothingBesides(const std::vector<std::string>& files) {
    EXPECT_EQ(cms::run("ls " + path(".")).output, [&] {
      std::string listed;
      for (const std::string& file : files) listed += file + "\n";
      return listed;
    }());
  }

  std::string ring_ = path("keys.kyr");
  std::string back_ = path("back.kdb");
};

TEST_F(KeyRings, LoseNothing) {
  const cms::TestAuthority root("Root");
  const cms::TestAuthority middle("Middle", 2048);
  const cms::TestAuthority leaf("Leaf", 25519);
  const std::string longest(511, 'x');
  const char* beyondAscii = "schl\xC3\xBCssel \xED\xA0\xBD\xED\xB4\x91";
  ASSERT_EQ(insert("Leaf", middle.issueFor(leaf), &leaf.key(), false), ZELKM_OK);
  ASSERT_EQ(insert("alone", root.certificate(), nullptr, true), ZELKM_OK);
  ASSERT_EQ(insert("leaf", middle.issueFor(leaf), nullptr, false), ZELKM_OK);
  ASSERT_EQ(insert(beyondAscii, root.issueFor(middle), &middle.key(), true), ZELKM_OK);
  ASSERT_EQ(insert(longest.c_str(), root.certificate(), &root.key(), false), ZELKM_OK);
  ASSERT_EQ(insert("zero \xC0\x80 and last \xC0\x80", root.certificate(), nullptr, false),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_SetDefaultKeyByLabel(handle(), beyondAscii), ZELKM_OK);
  ASSERT_EQ(request("Leaf"), ZELKM_OK);
  ASSERT_EQ(request(beyondAscii), ZELKM_OK);

  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  ASSERT_EQ(toDatabase(), ZELKM_OK);
  EXPECT_EQ(contentThatCameBack(), content());
  EXPECT_EQ(content().size(), 8U);
}

TEST_F(KeyRings, HoldAnEmptyDatabaseToo) {
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  EXPECT_EQ(toDatabase("wrong"), ZELKM_ERR_PKCS12_PWD_CORRUPTION);
  ASSERT_EQ(toDatabase(), ZELKM_OK);
  EXPECT_THAT(contentThatCameBack(), IsEmpty());
}

TEST_F(KeyRings, CarryTheDefaultKeyAmongKeysOfOneCertificate) {
  const cms::TestAuthority root("Root");
  for (const char* label : {"first", "second"}) {
    ASSERT_EQ(insert(label, root.certificate(), &root.key(), false), ZELKM_OK);
  }
  ASSERT_EQ(ZELKM_SetDefaultKeyByLabel(handle(), "second"), ZELKM_OK);
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  ASSERT_EQ(toDatabase(), ZELKM_OK);
  EXPECT_EQ(contentThatCameBack(), content());
}

TEST_F(KeyRings, AreImportedAsPfxWithoutTheirRequests) {
  ASSERT_EQ(selfSign("server"), ZELKM_OK);
  ASSERT_EQ(request("pending"), ZELKM_OK);
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  ASSERT_EQ(ZELKM_ImportKeysFromPFXFile(handle(), ring_.c_str(), kRingPassword), ZELKM_OK);
  EXPECT_THAT(keyLabels(), ElementsAre("server", "server (2)"));
  EXPECT_THAT(requestLabels(), ElementsAre("pending"));
}

TEST_F(KeyRings, OfOtherMakersAreReadToo) {
  const cms::TestAuthority root("Root");
  const cms::TestAuthority leaf("Leaf");
  folder().write("root.pem", cms::encodePem(cms::kCertificateArmour, root.certificate()).value());
  folder().write("leaf.pem", cms::encodePem(cms::kCertificateArmour, root.issueFor(leaf)).value());
  folder().write("leaf.key",
                 cms::encodePem("PRIVATE KEY", cms::privateKeyInfo(leaf.key()).value()).value());
  const cms::CommandResult made =
      cms::run("cd " + path(".") +
               " && openssl pkcs12 -export -inkey leaf.key -in leaf.pem "
               "-certfile root.pem -name Root -out keys.kyr -passout pass:x");
  ASSERT_EQ(made.exitCode, 0) << made.output;
  ASSERT_EQ(toDatabase("x"), ZELKM_OK);
  const std::vector<EntryView> content = contentThatCameBack();
  ASSERT_EQ(content.size(), 2U);
  EXPECT_EQ(content[0].label, "Root");
  EXPECT_EQ(content[0].chain.size(), 2U);
  EXPECT_FALSE(content[0].privateKey.empty());
  EXPECT_EQ(content[1].label, "Root (2)") << "by its subject, which the key's label has";
  EXPECT_FALSE(content[1].trusted) << "whoever sent it may have invented it";
}

TEST_F(KeyRings, AreTheirOwnersAlone) {
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  struct stat status {};
  ASSERT_EQ(::stat(ring_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  ASSERT_EQ(toDatabase(), ZELKM_OK);
  ASSERT_EQ(::stat(back_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(KeyRings, NeverTakeThePlaceOfAnotherFile) {
  folder().write("keys.kyr", cms::text("mine"));
  EXPECT_EQ(toKeyRing(), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(folder().read("keys.kyr"), sys::Bytes({'m', 'i', 'n', 'e'}));
  ring_ = path("other.kyr");
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  folder().write("back.kdb", cms::text("mine"));
  EXPECT_EQ(toDatabase(), ZELKM_ERR_DATABASE_ALREADY_EXISTS);
  EXPECT_EQ(folder().read("back.kdb"), sys::Bytes({'m', 'i', 'n', 'e'}));
  expectNothingBesides({"back.kdb", "keys.kyr", "other.kyr"});
}

TEST_F(KeyRings, TellAWrongPasswordFromDamageAndFromTheUnknown) {
  ASSERT_EQ(selfSign("server"), ZELKM_OK);
  ASSERT_EQ(request("pending"), ZELKM_OK);
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  EXPECT_EQ(toDatabase("wrong"), ZELKM_ERR_PKCS12_PWD_CORRUPTION);
  EXPECT_EQ(toDatabase(""), ZELKM_ERR_PKCS12_PWD_CORRUPTION);
  EXPECT_EQ(toDatabase(nullptr), ZELKM_ERR_PKCS12_PWD_CORRUPTION);

  const sys::Bytes whole = folder().read("keys.kyr");
  sys::Bytes file = whole;
  file.back() ^= 1;  // the iterations of the integrity check
  folder().write("keys.kyr", file);
  EXPECT_EQ(toDatabase(), ZELKM_ERR_INVALID_PKCS12_DATA);
  file.resize(file.size() / 2);
  folder().write("keys.kyr", file);
  EXPECT_EQ(toDatabase(), ZELKM_ERR_INVALID_PKCS12_DATA);

  const sys::Bytes pbes2 = {0x06, 0x09, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0D};
  file = whole;
  const auto at = std::search(file.begin(), file.end(), pbes2.begin(), pbes2.end());
  ASSERT_NE(at, file.end());
  *(at + 10) = 0x7D;
  folder().write("keys.kyr", file);
  EXPECT_EQ(toDatabase(), ZELKM_ERR_PBE_ALG_UNSUPPORT);
  expectNothingBesides({"keys.kyr", "request.csr"});
}

TEST_F(KeyRings, RefuseARequestOfAnotherKey) {
  const cms::TestAuthority owner("Owner");
  const cms::TestAuthority other("Other");
  ASSERT_EQ(request("pending"), ZELKM_OK);
  const std::vector<EntryView> content = this->content();
  cms::KeyRing ring;
  ring.entries.push_back({.label = "owner", .certificate = owner.certificate()});
  ring.requests.push_back({.label = "pending",
                           .request = content.front().request,
                           .privateKeyInfo = cms::privateKeyInfo(other.key()).value()});
  folder().write("keys.kyr", cms::writeKeyRing(ring, cms::text("ring secret")).value());
  EXPECT_EQ(toDatabase("ring secret"), ZELKM_ERR_INVALID_PKCS12_DATA);
  expectNothingBesides({"keys.kyr", "request.csr"});
}

TEST_F(KeyRings, LeaveNoFileWhenAnEntryCannotBeInserted) {
  const cms::TestAuthority owner("Owner");
  ASSERT_EQ(request("pending"), ZELKM_OK);
  const EntryView pending = content().front();
  cms::KeyRing ring;
  ring.entries.push_back({.label = "owner", .certificate = owner.certificate()});
  for (int twice = 0; twice < 2; ++twice) {
    ring.requests.push_back(
        {.label = "pending",
         .request = pending.request,
         .privateKeyInfo = {pending.privateKey.begin(), pending.privateKey.end()}});
  }
  folder().write("keys.kyr", cms::writeKeyRing(ring, cms::text("ring secret")).value());
  EXPECT_EQ(toDatabase("ring secret"), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  expectNothingBesides({"keys.kyr", "request.csr"});
}

TEST_F(KeyRings, KeepTheRulesOfPasswords) {
  EXPECT_EQ(toKeyRing("short"), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(toKeyRing(""), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(toKeyRing(nullptr), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(toKeyRing(kRingPassword, "wrong password"), ZELKM_ERR_DATABASE_INVALID_PASSWORD);
  EXPECT_EQ(toKeyRing(kRingPassword, nullptr), ZELKM_ERR_PWDFILE_NOT_EXIST);
  expectNothingBesides({});
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  EXPECT_EQ(toDatabase(kRingPassword, "short"), ZELKM_ERR_PWD_TOO_SHORT);
  EXPECT_EQ(toDatabase(kRingPassword, nullptr), ZELKM_ERR_NULL_PARAMETER);
  expectNothingBesides({"keys.kyr"});
}

TEST_F(KeyRings, OpenTheDatabaseWithItsStashFile) {
  ASSERT_EQ(ZELKM_StashKeyDbPwd(databasePath().c_str(), kPassword), ZELKM_OK);
  EXPECT_EQ(toKeyRing(kRingPassword, nullptr), ZELKM_OK);
  ring_ = path("second.kyr");
  EXPECT_EQ(toKeyRing(kRingPassword, ""), ZELKM_OK);
  ASSERT_EQ(std::remove((databasePath().substr(0, databasePath().rfind('.')) + ".sth").c_str()), 0);
}

TEST_F(KeyRings, AreNotKeyDatabases) {
  EXPECT_EQ(ZELKM_Kyr2Kdb(databasePath().c_str(), kPassword, back_.c_str(), kNewPassword),
            ZELKM_ERR_INVALID_PKCS12_DATA);
  EXPECT_EQ(ZELKM_Kdb2Kyr(databasePath().c_str(), kPassword, databasePath().c_str(), kRingPassword),
            ZELKM_ERR_DATABASE_ALREADY_EXISTS);
}

TEST_F(KeyRings, SayWhatElseIsWrong) {
  EXPECT_EQ(toDatabase(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  ASSERT_EQ(toKeyRing(), ZELKM_OK);
  back_ = path("no such folder/back.kdb");
  EXPECT_EQ(toDatabase(), ZELKM_ERR_DATABASE_CREATE);
  ring_ = path("no such folder/keys.kyr");
  EXPECT_EQ(toKeyRing(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(ZELKM_Kdb2Kyr(nullptr, kPassword, ring_.c_str(), kRingPassword),
            ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_Kdb2Kyr(path("none.kdb").c_str(), kPassword, ring_.c_str(), kRingPassword),
            ZELKM_ERR_KEYDB_NOT_EXIST);
  EXPECT_EQ(ZELKM_Kdb2Kyr(databasePath().c_str(), kPassword, "", kRingPassword),
            ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_Kyr2Kdb(nullptr, kRingPassword, back_.c_str(), kNewPassword),
            ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_Kyr2Kdb(ring_.c_str(), kRingPassword, nullptr, kNewPassword),
            ZELKM_ERR_FILENAME_NULL);
}

}  // namespace
}  // namespace zel::km
