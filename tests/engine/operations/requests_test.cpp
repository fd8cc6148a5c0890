#include "engine/cms/requests.h"

#include <gmock/gmock.h>

#include "engine/cms/epki.h"
#include "engine/cms/issuing.h"
#include "engine/cms/keys.h"
#include "engine/sys/modified_utf8.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/** `Extensions` with one: subjectAltName, DNS:www.example.net. */
sys::Bytes alternativeName() {
  return {0x30, 0x1C, 0x30, 0x1A, 0x06, 0x03, 0x55, 0x1D, 0x11, 0x04, 0x13, 0x30, 0x11, 0x82, 0x0F,
          'w',  'w',  'w',  '.',  'e',  'x',  'a',  'm',  'p',  'l',  'e',  '.',  'n',  'e',  't'};
}

class Requests : public DatabaseTest {
 protected:
  int create(const char* label, int keySize = 256, const char* fileName = "request.csr") {
    return ZELKM_CreateNewCertReq(handle(), label, keySize, name(label, "Sea", "DE").get(),
                                  path(fileName).c_str(), 0, 0);
  }

  RequestItem request(const char* label) {
    ZELKMReqKeyItem* item = nullptr;
    EXPECT_EQ(ZELKM_GetReqKeyItemByLabel(handle(), label, &item), ZELKM_OK);
    return RequestItem(item);
  }

  std::string shown(const char* fileName) {
    return cms::run("openssl req -noout -text -verify -in " + path(fileName)).output;
  }
};

TEST_F(Requests, AreWrittenAsOthersReadThem) {
  ASSERT_EQ(create("www", 2048), ZELKM_OK);
  const std::string text = shown("request.csr");
  EXPECT_THAT(text, HasSubstr("verify OK"));
  EXPECT_THAT(text, HasSubstr("Subject: C = DE, O = Sea, CN = www"));
  EXPECT_THAT(text, HasSubstr("Public-Key: (2048 bit)"));
  EXPECT_THAT(text, HasSubstr("sha256WithRSAEncryption"));
}

TEST_F(Requests, TellAllOfThemselves) {
  const sys::Bytes extensions = alternativeName();
  ASSERT_EQ(ZELKM_CreateNewCertReqSigExt(
                handle(), "www", 384, name("www").get(), 2, extensions.data(),
                static_cast<std::uint32_t>(extensions.size()), path("request.csr").c_str(), 0, 0),
            ZELKM_OK);
  const RequestItem item = request("www");
  EXPECT_EQ(item->shortValue1, 2);
  EXPECT_STREQ(item->label, "www");
  EXPECT_EQ(item->keySize, 384);
  EXPECT_EQ(item->hasBerData, 1);
  const ZELKMCertReqItem& whole = *item->certReq;
  const ZELKMCertReqInfoItem& info = *whole.certReqInfoItem;
  EXPECT_STREQ(whole.sigAlgIdOID, "1.2.840.10045.4.3.4");
  EXPECT_STREQ(whole.sigAlgIdOIDName, "ecdsa-with-SHA512");
  EXPECT_EQ(info.keySize, 384);
  EXPECT_STREQ(info.subjectName->cn, "www");
  EXPECT_EQ(bytesOf(info.spki, info.spkiLength), bytesOf(item->berData, item->berDataLength));
  EXPECT_EQ(info.optionalBer[0], 0x31) << "a SET OF Attribute";
  EXPECT_EQ(cms::readRequest(viewOf(whole.berData, whole.berDataLength)).value().extensions,
            extensions);
  EXPECT_THAT(shown("request.csr"), HasSubstr("DNS:www.example.net"));
}

TEST_F(Requests, WithoutExtensionsHaveNoAttributes) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  const RequestItem item = request("www");
  EXPECT_EQ(item->certReq->certReqInfoItem->optionalBer, nullptr);
  EXPECT_EQ(item->certReq->certReqInfoItem->optionalBerLength, 0U);
}

TEST_F(Requests, HoldTheirKey) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  const RequestItem item = request("www");
  const sys::SecretBytes password = sys::secretToUtf8(kPassword).value();
  const sys::SecretBytes pkcs8 =
      cms::decryptPrivateKey(viewOf(item->epki->berData, item->epki->berDataLength), password)
          .value();
  EXPECT_TRUE(
      cms::isPair(*cms::readPrivateKey(pkcs8).value(), viewOf(item->berData, item->berDataLength)));
}

TEST_F(Requests, AreWrittenAgainAsTheyAre) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  ASSERT_EQ(ZELKM_ReCreateCertReq(handle(), "www", path("again.csr").c_str(), 0, 0), ZELKM_OK);
  EXPECT_EQ(folder().read("again.csr"), folder().read("request.csr"));
}

TEST_F(Requests, AreSignedAgainWithAnotherAlgorithm) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  const RequestItem before = request("www");
  ASSERT_EQ(ZELKM_ReCreateCertReqSig(handle(), "www", 2, path("again.csr").c_str(), 0, 0),
            ZELKM_OK);
  EXPECT_THAT(shown("again.csr"), HasSubstr("verify OK"));
  EXPECT_THAT(shown("again.csr"), HasSubstr("ecdsa-with-SHA512"));
  const RequestItem after = request("www");
  EXPECT_STREQ(after->certReq->sigAlgIdOIDName, "ecdsa-with-SHA512");
  EXPECT_EQ(bytesOf(after->berData, after->berDataLength),
            bytesOf(before->berData, before->berDataLength));
}

TEST_F(Requests, LeaveTheFileWhenTheDatabaseCannotBeWritten) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  const sys::Bytes before = folder().read("request.csr");
  const Reader reader(databasePath());
  EXPECT_EQ(create("other"), ZELKM_ERR_DATABASE_WRITE);
  EXPECT_EQ(ZELKM_ReCreateCertReqSig(handle(), "www", 2, path("request.csr").c_str(), 0, 0),
            ZELKM_ERR_DATABASE_WRITE);
  EXPECT_EQ(folder().read("request.csr"), before);
}

TEST_F(Requests, StayAsTheyAreWhenTheFileCannotBeWritten) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  EXPECT_EQ(create("other", 256, "no folder/request.csr"), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_THAT(requestLabels(), ElementsAre("www"));
  EXPECT_EQ(
      ZELKM_ReCreateCertReqSig(handle(), "www", 2, path("no folder/request.csr").c_str(), 0, 0),
      ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_STREQ(request("www")->certReq->sigAlgIdOIDName, "ecdsa-with-SHA256");
}

TEST_F(Requests, AndKeysHaveTablesOfTheirOwn) {
  ASSERT_EQ(create("www"), ZELKM_OK);
  ASSERT_EQ(selfSign("www"), ZELKM_OK);
  EXPECT_THAT(requestLabels(), ElementsAre("www"));
  EXPECT_EQ(ZELKM_DeleteRequestKeyPair(handle(), "www"), ZELKM_OK);
  EXPECT_THAT(requestLabels(), IsEmpty());
  EXPECT_THAT(keyLabels(), ElementsAre("www"));
  EXPECT_EQ(ZELKM_DeleteRequestKeyPair(handle(), "www"), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(Requests, MadeElsewhereAreTakenWithTheirKey) {
  ASSERT_EQ(cms::run("openssl req -new -newkey rsa:2048 -nodes -subj /CN=elsewhere -outform DER "
                     "-out " +
                     path("csr") + " -keyout " + path("key.pem") + " && openssl pkcs8 -topk8 " +
                     "-nocrypt -outform DER -in " + path("key.pem") + " -out " + path("key"))
                .exitCode,
            0);
  const sys::Bytes csr = folder().read("csr");
  const sys::Bytes key = folder().read("key");
  const auto insert = [&](const sys::Bytes& request, sys::ByteView privateKey) {
    return ZELKM_InsertReqKey(handle(), "elsewhere", static_cast<std::uint32_t>(request.size()),
                              request.data(), static_cast<std::uint32_t>(privateKey.size()),
                              privateKey.data());
  };
  const sys::SecretBytes other = cms::privateKeyInfo(*cms::generateKey(256).value()).value();
  EXPECT_EQ(insert(csr, other), ZELKM_ERR_VALIDATION_KEY_PAIR);
  EXPECT_EQ(insert(csr, {}), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
  EXPECT_EQ(insert({}, key), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(insert({0x30, 0x00}, key), ZELKM_ERR_ASN);
  EXPECT_EQ(insert(csr, key), ZELKM_OK);
  EXPECT_EQ(insert(csr, key), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_EQ(request("elsewhere")->keySize, 2048);
}

TEST_F(Requests, SayWhatCannotBeMade) {
  const sys::Bytes noExtensions = {0x05, 0x00};
  EXPECT_EQ(create("www", 1024), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE);
  EXPECT_EQ(create("www", 256, "no folder/request.csr"), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_EQ(ZELKM_CreateNewCertReq(handle(), "www", 256, nullptr, nullptr, 0, 0),
            ZELKM_ERR_INVALID_DN_INPUT);
  EXPECT_EQ(ZELKM_CreateNewCertReqSigExt(handle(), "www", 256, name("www").get(), 3, nullptr, 0,
                                         nullptr, 0, 0),
            ZELKM_ERR_SIGNATURE_ALGORITHM);
  EXPECT_EQ(ZELKM_CreateNewCertReqSigExt(handle(), "www", 256, name("www").get(), 1,
                                         noExtensions.data(), 2, nullptr, 0, 0),
            ZELKM_ERR_ASN);
  EXPECT_THAT(requestLabels(), IsEmpty());

  ASSERT_EQ(create("www"), ZELKM_OK);
  EXPECT_EQ(create("www"), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_EQ(ZELKM_ReCreateCertReq(handle(), "nobody", path("x").c_str(), 0, 0),
            ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_ReCreateCertReq(handle(), "www", nullptr, 0, 0), ZELKM_ERR_FILENAME_NULL);
  EXPECT_EQ(ZELKM_ReCreateCertReqSig(handle(), "www", 0, path("x").c_str(), 0, 0),
            ZELKM_ERR_SIGNATURE_ALGORITHM);
  ZELKMReqKeyItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetReqKeyItemByLabel(handle(), "nobody", &item), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_GetReqKeyItemByLabel(handle(), "www", nullptr), ZELKM_ERR_NULL_PARAMETER);
}

}  // namespace
}  // namespace zel::km
