#include <gmock/gmock.h>

#include <algorithm>

#include "engine/cms/keys.h"
#include "engine/cms/pem.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/** Files of other tools, each with the key of "Leaf" and the certificate that "Root" issued it. */
class PfxImport : public DatabaseTest {
 protected:
  PfxImport() {
    const sys::SecretBytes pkcs8 = cms::privateKeyInfo(leaf_.key()).value();
    folder().write("leaf.key", cms::encodePem("PRIVATE KEY", pkcs8).value());
    folder().write("leaf.pem", pem(leafCertificate_));
    folder().write("root.pem", pem(root_.certificate()));
  }

  static sys::Bytes pem(const sys::Bytes& certificate) {
    return cms::encodePem(cms::kCertificateArmour, certificate).value();
  }

  void run(const std::string& command) {
    const cms::CommandResult result = cms::run("cd " + path(".") + " && " + command);
    ASSERT_EQ(result.exitCode, 0) << command << "\n" << result.output;
  }

  void makeWithOpenSsl(const std::string& arguments, const std::string& password = "pfx secret") {
    run("openssl pkcs12 -export -out file.p12 -inkey leaf.key -in leaf.pem -passout 'pass:" +
        password + "' " + arguments);
  }

  int import(const char* password = "pfx secret") {
    return ZELKM_ImportKeysFromPFXFile(handle(), path("file.p12").c_str(), password);
  }

  /** The key with its chain of two is there under the label. */
  void expectLeaf(const char* label) {
    const KeyItem item = this->item(label);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->hasPrivateKey, 1);
    const ZELKMCertItem& certificate = *item->certList->item;
    EXPECT_EQ(bytesOf(certificate.certDer, certificate.certDerLength), leafCertificate_);
    ASSERT_NE(item->certList->next, nullptr);
    EXPECT_STREQ(item->certList->next->item->subjectDN->cn, "Root");
  }

  cms::TestAuthority root_{"Root", 2048};
  cms::TestAuthority leaf_{"Leaf", 2048};
  sys::Bytes leafCertificate_ = root_.issueFor(leaf_);
};

TEST_F(PfxImport, TakesWhatItExported) {
  const char* label = "schl\xC3\xBCssel \xED\xA0\xBD\xED\xB4\x91";
  const sys::SecretBytes key = cms::privateKeyInfo(leaf_.key()).value();
  const auto lengthOf = [](sys::ByteView bytes) {
    return static_cast<std::uint32_t>(bytes.size());
  };
  ASSERT_EQ(ZELKM_InsertKey(handle(), label, lengthOf(leafCertificate_), leafCertificate_.data(),
                            lengthOf(key), key.data(), 0, 0),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_StoreCACert(handle(), root_.certificate().data(), lengthOf(root_.certificate()),
                              "Root"),
            ZELKM_OK);
  ASSERT_EQ(
      ZELKM_ExportKeys(handle(), 1, path("file.p12").c_str(), "x", Labels{label, "Root"}.head()),
      ZELKM_OK);
  ASSERT_EQ(ZELKM_DeleteKey(handle(), label), ZELKM_OK);
  ASSERT_EQ(ZELKM_DeleteKey(handle(), "Root"), ZELKM_OK);
  ASSERT_EQ(import("x"), ZELKM_OK);
  expectLeaf(label);
  EXPECT_EQ(item("Root")->booleanValue1, 1);
}

TEST_F(PfxImport, TakesSeveralKeysAndNumbersLabelsThatCollide) {
  ASSERT_EQ(selfSign("server"), ZELKM_OK);
  makeWithOpenSsl("-name server");
  ASSERT_EQ(import(), ZELKM_OK);
  ASSERT_EQ(import(), ZELKM_OK);
  EXPECT_THAT(keyLabels(), ElementsAre("server", "server (2)", "server (3)"));
  ASSERT_EQ(ZELKM_ExportKeys(handle(), 1, path("file.p12").c_str(), "pfx secret",
                             Labels{"server", "server (2)"}.head()),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_DeleteKey(handle(), "server"), ZELKM_OK);
  ASSERT_EQ(import(), ZELKM_OK);
  EXPECT_THAT(keyLabels(), ElementsAre("server (2)", "server (3)", "server", "server (2) (2)"));
}

TEST_F(PfxImport, NamesKeysWithoutANameByTheirSubject) {
  makeWithOpenSsl("-certfile root.pem");
  ASSERT_EQ(import(), ZELKM_OK);
  expectLeaf("Leaf");
}

TEST_F(PfxImport, TakesCertificatesWithoutKeys) {
  run("openssl pkcs12 -export -nokeys -in root.pem -out file.p12 -passout 'pass:pfx secret'");
  ASSERT_EQ(import(), ZELKM_OK);
  ASSERT_EQ(import(), ZELKM_OK);
  EXPECT_THAT(keyLabels(), ElementsAre("Root"));
  EXPECT_EQ(item("Root")->hasPrivateKey, 0);
  EXPECT_EQ(item("Root")->booleanValue1, 0) << "whoever sent it may have invented it";
}

TEST_F(PfxImport, TakesEmptyAndMissingPasswords) {
  makeWithOpenSsl("-name empty", "");
  EXPECT_EQ(import(""), ZELKM_OK);
  EXPECT_EQ(import(nullptr), ZELKM_OK);
  makeWithOpenSsl("-name unprotected -nomac -keypbe NONE -certpbe NONE");
  EXPECT_EQ(import(""), ZELKM_OK);
  EXPECT_THAT(keyLabels(), ElementsAre("empty", "empty (2)", "unprotected"));
}

TEST_F(PfxImport, TellsAWrongPasswordFromDamageAndFromTheUnknown) {
  for (const char* form : {"", "-legacy", "-nomac", "-certpbe NONE"}) {
    makeWithOpenSsl(std::string("-name server ") + form);
    EXPECT_EQ(import("wrong"), ZELKM_ERR_PKCS12_PWD_CORRUPTION) << form;
    EXPECT_EQ(import(""), ZELKM_ERR_PKCS12_PWD_CORRUPTION) << form;
  }
  makeWithOpenSsl("-name server");
  sys::Bytes file = folder().read("file.p12");
  file.back() ^= 1;  // the iterations of the integrity check
  folder().write("file.p12", file);
  EXPECT_EQ(import(), ZELKM_ERR_INVALID_PKCS12_DATA);
  file.pop_back();
  folder().write("file.p12", file);
  EXPECT_EQ(import(), ZELKM_ERR_INVALID_PKCS12_DATA);
  folder().write("file.p12", cms::text("no PFX"));
  EXPECT_EQ(import(), ZELKM_ERR_INVALID_PKCS12_DATA);

  makeWithOpenSsl("-name server");
  file = folder().read("file.p12");
  const sys::Bytes pbes2 = {0x06, 0x09, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0D};
  const auto at = std::search(file.begin(), file.end(), pbes2.begin(), pbes2.end());
  ASSERT_NE(at, file.end());
  *(at + 10) = 0x7D;
  folder().write("file.p12", file);
  EXPECT_EQ(import(), ZELKM_ERR_PBE_ALG_UNSUPPORT);
  EXPECT_THAT(keyLabels(), IsEmpty());
}

TEST_F(PfxImport, RefusesASafeWithoutContent) {
  constexpr std::uint8_t kData = 1;
  constexpr std::uint8_t kEncrypted = 6;
  for (const std::uint8_t type : {kData, kEncrypted}) {
    const sys::Bytes file = {0x30, 0x23, 0x02, 0x01, 0x03,                          // version 3
                             0x30, 0x1E, 0x06, 0x09, 0x2A, 0x86, 0x48, 0x86, 0xF7,  // of type data
                             0x0D, 0x01, 0x07, 0x01, 0xA0, 0x11, 0x04, 0x0F, 0x30,  //
                             0x0D, 0x30, 0x0B, 0x06, 0x09, 0x2A, 0x86, 0x48, 0x86,  // one safe
                             0xF7, 0x0D, 0x01, 0x07, type};
    folder().write("file.p12", file);
    EXPECT_EQ(import(), ZELKM_ERR_INVALID_PKCS12_DATA) << int{type};
  }
}

TEST_F(PfxImport, SaysWhatElseIsWrong) {
  EXPECT_EQ(import(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(ZELKM_ImportKeysFromPFXFile(handle(), nullptr, "x"), ZELKM_ERR_FILENAME_NULL);
}

}  // namespace
}  // namespace zel::km
