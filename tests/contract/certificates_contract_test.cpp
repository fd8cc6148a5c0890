#include "tests/contract/contract.h"

// Certificates, requests and private keys: made, issued, received, and carried elsewhere.

namespace zel::contract {
namespace {

using Certificates = DatabaseContract;

/** `Extensions` with one: keyUsage, digitalSignature. */
const Bytes kExtensions = {0x30, 0x0D, 0x30, 0x0B, 0x06, 0x03, 0x55, 0x1D,
                           0x0F, 0x04, 0x04, 0x03, 0x02, 0x07, 0x80};

TEST_F(Certificates, AreSignedByThemselves) {
  EXPECT_EQ(ZELKM_CreateSelfSignedCert(handle_, Loan("new"), 1, 3, 256, Name("new"), 30,
                                       Loan(newFile("new.crt")), 1),
            ZELKM_OK);
  const Loan extensions(kExtensions);
  EXPECT_EQ(
      ZELKM_CreateSelfSignedCertSigExt(handle_, Loan("newer"), 0, 3, 256, Name("newer"), 30, 2,
                                       extensions.bytes(), extensions.length(), nullptr, 0),
      ZELKM_OK);
}

TEST_F(Certificates, AreAskedFor) {
  EXPECT_EQ(ZELKM_CreateNewCertReq(handle_, Loan("new"), 256, Name("new"), Loan(newFile("new.csr")),
                                   0, 0),
            ZELKM_OK);
  const Loan extensions(kExtensions);
  EXPECT_EQ(ZELKM_CreateNewCertReqSigExt(handle_, Loan("newer"), 256, Name("newer"), 1,
                                         extensions.bytes(), extensions.length(),
                                         Loan(newFile("newer.csr")), 0, 0),
            ZELKM_OK);
  EXPECT_EQ(ZELKM_ReCreateCertReq(handle_, Loan("new"), Loan(newFile("again.csr")), 0, 0),
            ZELKM_OK);
  EXPECT_EQ(ZELKM_ReCreateCertReqSig(handle_, Loan("new"), 2, Loan(newFile("again.csr")), 0, 0),
            ZELKM_OK);
}

TEST_F(Certificates, AreIssued) {
  const Loan request(given_.strangersRequest);
  EXPECT_EQ(ZELKM_IssueCert(handle_, request.bytes(), request.length(), Loan("ca"), 3, Loan("17"),
                            20, Loan(newFile("issued.crt")), 1, 0, 0),
            ZELKM_OK);
  EXPECT_EQ(ZELKM_IssueCertSig(handle_, request.bytes(), request.length(), Loan("ca"), 3, Loan(""),
                               20, 2, Loan(newFile("issued.crt")), 0, 0, 0),
            ZELKM_OK);
}

TEST_F(Certificates, AreReceivedStoredAndExported) {
  const Loan issued(given_.issued);
  EXPECT_EQ(ZELKM_ReceiveCert(handle_, issued.bytes(), issued.length(), 0), ZELKM_OK);
  {
    const Loan authority(given_.stranger);
    EXPECT_EQ(ZELKM_StoreCACert(handle_, authority.bytes(), authority.length(), Loan("authority")),
              ZELKM_OK);
  }
  EXPECT_EQ(ZELKM_ExportCert(handle_, Loan("authority"), Loan(newFile("authority.crt")), 1),
            ZELKM_OK);
}

TEST_F(Certificates, AreRenewed) {
  const Loan renewal(given_.renewal);
  unsigned char isRenewal = 0;
  EXPECT_EQ(ZELKM_CheckCertAsRenewal(handle_, renewal.bytes(), renewal.length(), &isRenewal),
            ZELKM_OK);
  EXPECT_EQ(isRenewal, 1);
  EXPECT_EQ(ZELKM_RenewCert(handle_, renewal.bytes(), renewal.length()), ZELKM_OK);
}

TEST_F(Certificates, AreValidated) {
  const Loan certificate(given_.certificate);
  unsigned char isValid = 0;
  EXPECT_EQ(ZELKM_ValidateCertChain(handle_, certificate.bytes(), certificate.length(), &isValid),
            ZELKM_OK);
  EXPECT_EQ(isValid, 1);
}

TEST_F(Certificates, OfAMessageAreListed) {
  const Loan message(given_.certificate);
  ZELKMCertItemList* list = nullptr;
  ASSERT_EQ(ZELKM_ExtractCertListFromPKCS7Data(message.bytes(), message.length(), &list), ZELKM_OK);
  ASSERT_NE(list, nullptr);
  ASSERT_NE(list->item, nullptr);
  EXPECT_NE(list->item->certDer, nullptr);
  ZELKM_FreeCertItemList(list);
}

TEST_F(Certificates, GoOutAndComeInWithTheirKeys) {
  auto* node = static_cast<ZELKMLabelList*>(allocateAsCaller(sizeof(ZELKMLabelList)));
  node->label = ZELKM_Strdup("server");
  node->next = nullptr;
  EXPECT_EQ(ZELKM_ExportKeys(handle_, 1, Loan(newFile("out.p12")), Loan(given_.pfxPassword), node),
            ZELKM_OK);
  ZELKM_FreeLabelList(node);
  EXPECT_EQ(ZELKM_ImportKeysFromPFXFile(handle_, Loan(given_.pfxFile), Loan(given_.pfxPassword)),
            ZELKM_OK);
}

TEST_F(Certificates, KeysAreEncryptedAndDecrypted) {
  ZELKMEPKIItem* epki = nullptr;
  {
    const Loan key(given_.strangersKey);
    ASSERT_EQ(ZELKM_GetEPKIItemFromPrivateKey(key.bytes(), key.length(), Loan("secret"), &epki),
              ZELKM_OK);
  }
  ASSERT_NE(epki, nullptr);
  ZELKMPrivKeyInfoItem* info = nullptr;
  ASSERT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki, Loan("secret"), &info), ZELKM_OK);
  ZELKM_FreeEPKIItem(epki);
  ASSERT_NE(info, nullptr);
  EXPECT_NE(info->berData, nullptr);
  EXPECT_GT(info->berDataLength, 0U);
  ZELKM_FreePrivKeyInfoItem(info);
}

}  // namespace
}  // namespace zel::contract
