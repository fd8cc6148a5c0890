#include <gmock/gmock.h>

#include "engine/cms/pem.h"
#include "engine/cms/requests.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Receiving : public DatabaseTest {
 protected:
  static std::uint32_t lengthOf(const sys::Bytes& bytes) {
    return static_cast<std::uint32_t>(bytes.size());
  }

  /** A request in the database and the certificate that "Middle" issues for it. */
  sys::Bytes requestAndIssue(const char* label) {
    EXPECT_EQ(ZELKM_CreateNewCertReq(handle(), label, 256, name(label).get(), nullptr, 0, 0),
              ZELKM_OK);
    ZELKMReqKeyItem* item = nullptr;
    EXPECT_EQ(ZELKM_GetReqKeyItemByLabel(handle(), label, &item), ZELKM_OK);
    const RequestItem owned(item);
    return middle_.issueFor(bytesOf(item->berData, item->berDataLength), label);
  }

  int receive(const sys::Bytes& bytes, bool makeDefault = false) {
    return ZELKM_ReceiveCert(handle(), bytes.data(), lengthOf(bytes), makeDefault ? 1 : 0);
  }

  sys::Bytes message(const std::vector<sys::Bytes>& certificates) {
    std::string pem;
    for (const sys::Bytes& certificate : certificates) {
      const sys::Bytes armoured = cms::encodePem(cms::kCertificateArmour, certificate).value();
      pem.append(armoured.begin(), armoured.end());
    }
    folder().write("chain.pem", cms::text(pem));
    EXPECT_EQ(cms::run("openssl crl2pkcs7 -nocrl -outform DER -certfile " + path("chain.pem") +
                       " -out " + path("p7"))
                  .exitCode,
              0);
    return folder().read("p7");
  }

  cms::TestAuthority root_{"Root"};
  cms::TestAuthority middle_{"Middle"};
};

TEST_F(Receiving, JoinsTheCertificateWithItsKey) {
  const sys::Bytes certificate = requestAndIssue("www");
  ASSERT_EQ(receive(certificate, true), ZELKM_OK);
  EXPECT_THAT(requestLabels(), IsEmpty());
  const KeyItem item = this->item("www");
  EXPECT_EQ(item->hasPrivateKey, 1);
  EXPECT_EQ(item->booleanValue1, 0);
  EXPECT_EQ(item->booleanValue2, 1);
  EXPECT_EQ(bytesOf(item->certList->item->certDer, item->certList->item->certDerLength),
            certificate);
}

TEST_F(Receiving, TakesTheIssuersOfABundleButDoesNotTrustThem) {
  const sys::Bytes leaf = requestAndIssue("www");
  const cms::TestAuthority unrelated("Unrelated");
  ASSERT_EQ(receive(message(
                {root_.certificate(), unrelated.certificate(), root_.issueFor(middle_), leaf})),
            ZELKM_OK);
  EXPECT_THAT(keyLabels(), UnorderedElementsAre("www", "Middle", "Root"));
  EXPECT_EQ(item("Root")->booleanValue1, 0);
  const KeyItem item = this->item("www");
  EXPECT_STREQ(item->certList->next->item->label, "Middle");
  EXPECT_STREQ(item->certList->next->next->item->label, "Root");
}

TEST_F(Receiving, KeepsAnIssuerThatIsThereAndNumbersALabelThatIsTaken) {
  ASSERT_EQ(ZELKM_StoreCACert(handle(), root_.certificate().data(), lengthOf(root_.certificate()),
                              "my root"),
            ZELKM_OK);
  ASSERT_EQ(selfSign("Middle"), ZELKM_OK);
  const sys::Bytes leaf = requestAndIssue("www");
  ASSERT_EQ(receive(message({leaf, root_.issueFor(middle_), root_.certificate()})), ZELKM_OK);
  EXPECT_THAT(keyLabels(), UnorderedElementsAre("my root", "Middle", "www", "Middle (2)"));
}

TEST_F(Receiving, WithoutAPendingRequestIs108) {
  EXPECT_EQ(receive(root_.certificate()), ZELKM_ERR_REQKEY_FOR_CERT_NULL);
  EXPECT_THAT(keyLabels(), IsEmpty());
}

TEST_F(Receiving, LeavesTheRequestWhenTheLabelIsTaken) {
  const sys::Bytes certificate = requestAndIssue("www");
  ASSERT_EQ(selfSign("www"), ZELKM_OK);
  EXPECT_EQ(receive(certificate), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(requestLabels(), ElementsAre("www"));
}

TEST_F(Receiving, RefusesWhatIsNoCertificate) {
  EXPECT_EQ(receive({}), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(receive({0x30, 0x00}), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_StoreCACert(handle(), nullptr, 0, "x"), ZELKM_ERR_NULL_PARAMETER);
  const unsigned char noCertificate[] = {0x30, 0x00};
  EXPECT_EQ(ZELKM_StoreCACert(handle(), noCertificate, 2, "x"), ZELKM_ERR_ASN);
}

TEST_F(Receiving, StoresAuthoritiesAsTrusted) {
  ASSERT_EQ(ZELKM_StoreCACert(handle(), root_.certificate().data(), lengthOf(root_.certificate()),
                              "root"),
            ZELKM_OK);
  EXPECT_EQ(item("root")->booleanValue1, 1);
  EXPECT_EQ(item("root")->hasPrivateKey, 0);
  EXPECT_EQ(ZELKM_StoreCACert(handle(), root_.certificate().data(), lengthOf(root_.certificate()),
                              "root"),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
}

}  // namespace
}  // namespace zel::km
