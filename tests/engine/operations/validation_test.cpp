#include <gmock/gmock.h>

#include "engine/cms/keys.h"
#include "tests/engine/operations/database.h"

namespace zel::km {
namespace {

/** Chains made by the engine itself, because strict validation wants every identifier in place. */
class ChainValidation : public DatabaseTest {
 protected:
  ChainValidation() {
    EXPECT_EQ(selfSign("root"), ZELKM_OK);
    leaf_ = issue("root", "-subj /CN=leaf", 10);
  }

  sys::Bytes issue(const char* issuer, const std::string& request, int days) {
    EXPECT_EQ(cms::run("openssl req -new -nodes -newkey ec -pkeyopt ec_paramgen_curve:P-256 "
                       "-keyout /dev/null -outform DER -out " +
                       path("csr") + " " + request)
                  .exitCode,
              0);
    const sys::Bytes csr = folder().read("csr");
    EXPECT_EQ(ZELKM_IssueCert(handle(), csr.data(), static_cast<std::uint32_t>(csr.size()), issuer,
                              3, "", days, path("issued").c_str(), 0, 0, 0),
              ZELKM_OK);
    return folder().read("issued");
  }

  int validate(const sys::Bytes& certificate) {
    unsigned char isValid = 0;
    const int code = ZELKM_ValidateCertChain(
        handle(), certificate.data(), static_cast<std::uint32_t>(certificate.size()), &isValid);
    EXPECT_EQ(isValid, code == ZELKM_OK ? 1 : 0);
    return code;
  }

  sys::Bytes leaf_;
};

TEST_F(ChainValidation, EndsAtATrustedEntry) { EXPECT_EQ(validate(leaf_), ZELKM_OK); }

TEST_F(ChainValidation, EndsNowhereElse) {
  ASSERT_EQ(ZELKM_SetTrustStatus(handle(), "root", 0), ZELKM_OK);
  EXPECT_EQ(validate(leaf_), ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED);
  ASSERT_EQ(ZELKM_DeleteKey(handle(), "root"), ZELKM_OK);
  EXPECT_EQ(validate(leaf_), ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND);
}

TEST_F(ChainValidation, GoesThroughIssuersThatAreNotTrusted) {
  ASSERT_EQ(ZELKM_CreateNewCertReqSigExt(
                handle(), "middle", 256, name("middle").get(), 1, cms::kAuthorityRights.data(),
                static_cast<std::uint32_t>(cms::kAuthorityRights.size()), nullptr, 0, 0),
            ZELKM_OK);
  ZELKMReqKeyItem* request = nullptr;
  ASSERT_EQ(ZELKM_GetReqKeyItemByLabel(handle(), "middle", &request), ZELKM_OK);
  const RequestItem owned(request);
  ASSERT_EQ(ZELKM_IssueCert(handle(), request->certReq->berData, request->certReq->berDataLength,
                            "root", 3, "", 20, path("middle").c_str(), 0, 0, 0),
            ZELKM_OK);
  const sys::Bytes middle = folder().read("middle");
  ASSERT_EQ(
      ZELKM_ReceiveCert(handle(), middle.data(), static_cast<std::uint32_t>(middle.size()), 0),
      ZELKM_OK);
  EXPECT_EQ(validate(issue("middle", "-subj /CN=below", 5)), ZELKM_OK);
}

TEST_F(ChainValidation, FindsAChangedCertificateOut) {
  sys::Bytes changed = leaf_;
  changed.back() ^= 1;
  EXPECT_EQ(validate(changed), ZELKM_ERR_VALIDATION_KEY_SIGNATURE);
}

TEST_F(ChainValidation, TakesTheTrustedEntryItself) {
  const KeyItem root = item("root");
  const ZELKMCertItem& certificate = *root->certList->item;
  const sys::Bytes der = bytesOf(certificate.certDer, certificate.certDerLength);
  EXPECT_EQ(validate(der), ZELKM_OK);
  ASSERT_EQ(ZELKM_SetTrustStatus(handle(), "root", 0), ZELKM_OK);
  EXPECT_EQ(validate(der), ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED);
}

TEST_F(ChainValidation, RefusesWhatIsNoCertificate) {
  unsigned char isValid = 0;
  EXPECT_EQ(validate({0x30, 0x00}), ZELKM_ERR_ASN);
  EXPECT_EQ(ZELKM_ValidateCertChain(handle(), nullptr, 0, &isValid), ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(ZELKM_ValidateCertChain(handle(), leaf_.data(), 1, nullptr), ZELKM_ERR_NULL_PARAMETER);
}

}  // namespace
}  // namespace zel::km
