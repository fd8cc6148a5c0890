#include <gmock/gmock.h>

#include "tests/engine/operations/database.h"
#include "tests/engine/token/test_token.h"

// A token's whole story, through the C interface alone.

namespace zel::km::token {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDatabasePassword = "Correct horse 1!";

/** A token, and an authority in a key database that is lent to it. */
class TokenFlow : public TokenTest {
 protected:
  TokenFlow() {
    token_ = open(kPin);
    EXPECT_EQ(ZELKM_CreateNewKeyDb(path("ca.kdb").c_str(), kDatabasePassword, 0, &authority_),
              ZELKM_OK);
    EXPECT_EQ(ZELKM_CreateSelfSignedCert(authority_, "Root", 0, 3, 256, name("Root").get(), 100,
                                         path("root.pem").c_str(), 1),
              ZELKM_OK);
  }
  ~TokenFlow() override { ZELKM_CloseKeyDb(authority_); }

  void request(const char* entryLabel, int keySize) {
    ASSERT_EQ(
        ZELKM_CreateNewCertReqSigExt(token_, entryLabel, keySize, name("www.example.com").get(), 1,
                                     nullptr, 0, path("request.pem").c_str(), 0, 0),
        ZELKM_OK);
    issue(entryLabel);
  }

  /** Issues a certificate for the pending request into "cert.der". */
  void issue(const char* entryLabel) {
    ZELKMReqKeyItem* item = nullptr;
    ASSERT_EQ(ZELKM_GetReqKeyItemByLabel(token_, entryLabel, &item), ZELKM_OK);
    const RequestItem owned(item);
    EXPECT_EQ(item->epki, nullptr);
    request_ = bytesOf(item->certReq->berData, item->certReq->berDataLength);
    issueAgain();
  }

  void issueAgain() {
    ASSERT_EQ(ZELKM_IssueCert(authority_, request_.data(), std::uint32_t(request_.size()), "Root",
                              3, "", 30, path("cert.der").c_str(), 0, 0, 0),
              ZELKM_OK);
    certificate_ = folder_.read("cert.der");
  }

  std::uint32_t length() const { return static_cast<std::uint32_t>(certificate_.size()); }

  int token_ = 0;
  int authority_ = 0;
  sys::Bytes request_;
  sys::Bytes certificate_;
};

TEST_P(TokenFlow, aRequestIsIssuedReceivedValidatedExportedAndRenewed) {
  ASSERT_NO_FATAL_FAILURE(request("web", 2048));
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, token_), ElementsAre("web"));
  EXPECT_EQ(cms::run("openssl req -noout -verify -in " + path("request.pem")).exitCode, 0);

  ASSERT_EQ(ZELKM_SetSecondaryKeyDb(token_, authority_), ZELKM_OK);
  ASSERT_EQ(ZELKM_ReceiveCert(token_, certificate_.data(), length(), 0), ZELKM_OK);
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, token_), IsEmpty());
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, token_), ElementsAre("web"));
  unsigned char present = 0;
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(token_, "web", &present), ZELKM_OK);
  EXPECT_EQ(present, 1);

  ZELKMKeyItem* found = nullptr;
  ASSERT_EQ(ZELKM_GetKeyItemByLabel(token_, "web", &found), ZELKM_OK);
  const KeyItem item(found);
  EXPECT_EQ(item->hasPrivateKey, 1);
  EXPECT_EQ(item->epki, nullptr);
  EXPECT_EQ(item->keySize, 2048);
  ASSERT_NE(item->certList->next, nullptr) << "the issuer is in the secondary";

  unsigned char isValid = 0;
  EXPECT_EQ(ZELKM_ValidateCertChain(token_, certificate_.data(), length(), &isValid), ZELKM_OK);
  EXPECT_EQ(isValid, 1);

  EXPECT_EQ(ZELKM_ExportCert(token_, "web", path("web.pem").c_str(), 1), ZELKM_OK);
  const cms::CommandResult verified =
      cms::run("openssl verify -CAfile " + path("root.pem") + " " + path("web.pem"));
  EXPECT_EQ(verified.exitCode, 0) << verified.output;

  ASSERT_NO_FATAL_FAILURE(issueAgain());
  unsigned char isRenewal = 0;
  EXPECT_EQ(ZELKM_CheckCertAsRenewal(token_, certificate_.data(), length(), &isRenewal), ZELKM_OK);
  EXPECT_EQ(isRenewal, 1);
  EXPECT_EQ(ZELKM_RenewCert(token_, certificate_.data(), length()), ZELKM_OK);
  EXPECT_EQ(ZELKM_CheckCertAsRenewal(token_, certificate_.data(), length(), &isRenewal), ZELKM_OK);
  EXPECT_EQ(isRenewal, 0);
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(token_, "web", &present), ZELKM_OK);
  EXPECT_EQ(present, 1);

  EXPECT_EQ(ZELKM_DeleteKey(token_, "web"), ZELKM_OK);
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, token_), IsEmpty());
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, token_), IsEmpty());
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(token_), ZELKM_OK);
}

TEST_P(TokenFlow, aBundlesIssuersGoIntoTheSecondary) {
  ASSERT_NO_FATAL_FAILURE(request("web", 256));
  folder_.write("cert.der", certificate_);
  const cms::CommandResult bundled =
      cms::run("openssl x509 -inform DER -in " + path("cert.der") + " -out " + path("cert.pem") +
               " && openssl crl2pkcs7 -nocrl -outform DER -certfile " + path("cert.pem") +
               " -certfile " + path("root.pem") + " -out " + path("bundle.p7b"));
  ASSERT_EQ(bundled.exitCode, 0) << bundled.output;
  const sys::Bytes bundle = folder_.read("bundle.p7b");
  int secondary = 0;
  ASSERT_EQ(ZELKM_CreateNewKeyDb(path("second.kdb").c_str(), kDatabasePassword, 0, &secondary),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_SetSecondaryKeyDb(token_, secondary), ZELKM_OK);
  EXPECT_EQ(ZELKM_ReceiveCert(token_, bundle.data(), std::uint32_t(bundle.size()), 0), ZELKM_OK);
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, token_), ElementsAre("web"));
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, secondary), ElementsAre("Root"));
  EXPECT_EQ(ZELKM_UnsetSecondaryKeyDb(token_), ZELKM_OK);
  ZELKM_CloseKeyDb(secondary);
}

TEST_P(TokenFlow, aRequestIsWrittenAgain) {
  ASSERT_NO_FATAL_FAILURE(request("web", 384));
  EXPECT_EQ(ZELKM_ReCreateCertReq(token_, "web", path("again.pem").c_str(), 0, 0), ZELKM_OK);
  EXPECT_EQ(ZELKM_ReCreateCertReqSig(token_, "web", 2, path("sha512.pem").c_str(), 0, 0), ZELKM_OK);
  EXPECT_EQ(cms::run("openssl req -noout -verify -in " + path("again.pem")).exitCode, 0);
  const cms::CommandResult strong =
      cms::run("openssl req -noout -verify -text -in " + path("sha512.pem"));
  EXPECT_EQ(strong.exitCode, 0);
  EXPECT_THAT(strong.output, testing::HasSubstr("ecdsa-with-SHA512"));
}

TEST_P(TokenFlow, aRequestWhoseFileCannotBeWrittenIsNotMade) {
  EXPECT_NE(ZELKM_CreateNewCertReqSigExt(token_, "web", 256, name("www").get(), 1, nullptr, 0,
                                         path("no/such/folder").c_str(), 0, 0),
            ZELKM_OK);
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, token_), IsEmpty());
  close(token_);
  token_ = open(kPin);
  EXPECT_THAT(labels(&ZELKM_GetReqKeyDbLabelList, token_), IsEmpty());
}

TEST_P(TokenFlow, aSelfSignedCertificateIsMadeWithItsKey) {
  ASSERT_EQ(ZELKM_CreateSelfSignedCertSigExt(token_, "self", 0, 3, 521, name("Self").get(), 10, 1,
                                             nullptr, 0, nullptr, 0),
            ZELKM_OK);
  EXPECT_THAT(labels(&ZELKM_GetKeyDbLabelList, token_), ElementsAre("self"));
  EXPECT_EQ(ZELKM_ExportCert(token_, "self", path("self.pem").c_str(), 1), ZELKM_OK);
  const cms::CommandResult verified =
      cms::run("openssl verify -CAfile " + path("self.pem") + " " + path("self.pem"));
  EXPECT_EQ(verified.exitCode, 0) << verified.output;
}

TEST_P(TokenFlow, aSignerCertificateIsStoredTrusted) {
  const sys::Bytes root = [&] {
    EXPECT_EQ(ZELKM_ExportCert(authority_, "Root", path("root.der").c_str(), 0), ZELKM_OK);
    return folder_.read("root.der");
  }();
  ASSERT_EQ(ZELKM_StoreCACert(token_, root.data(), std::uint32_t(root.size()), "authority"),
            ZELKM_OK);
  unsigned char present = 1;
  EXPECT_EQ(ZELKM_IsPrivateKeyPresent(token_, "authority", &present), ZELKM_OK);
  EXPECT_EQ(present, 0);
  unsigned char isValid = 0;
  EXPECT_EQ(ZELKM_ValidateCertChain(token_, root.data(), std::uint32_t(root.size()), &isValid),
            ZELKM_OK);
  EXPECT_EQ(isValid, 1);
}

INSTANTIATE_TEST_SUITE_P(, TokenFlow, testing::ValuesIn(kVendors), vendorName);

}  // namespace

}  // namespace zel::km::token
