#include "engine/km/work/validating.h"

#include <gtest/gtest.h>

#include "engine/cms/names.h"
#include "engine/km/work/issuing.h"
#include "engine/km/work/receiving.h"
#include "engine/km/work/requesting.h"
#include "engine/km/work/self_signing.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

/** A root, an authority below it, and a certificate of that one which no entry has. */
class ValidatingTest : public WorkTest {
 protected:
  ValidatingTest() {
    EXPECT_TRUE(selfSign(store(), {.label = "root"_label,
                                   .subject = cms::encodeName({.cn = "Root"}).value(),
                                   .keySize = 256,
                                   .days = 30}));
    EXPECT_TRUE(
        receive(store(), issued("root"_label, "middle"_label, cms::kAuthorityRights), false));
    certificate_ = issued("middle"_label, "web"_label, {});
  }

  /** A certificate from one entry for a new request. */
  sys::Bytes issued(const Label& issuer, const Label& label, sys::ByteView extensions) {
    EXPECT_TRUE(
        requestCertificate(store(), {.label = label,
                                     .subject = cms::encodeName({.cn = label.name()}).value(),
                                     .keySize = 256,
                                     .extensions = extensions}));
    const RequestEntry request = store().findRequest(label).value();
    EXPECT_TRUE(issue(
        store(),
        {.request = request.request, .issuer = issuer, .days = 10, .file = {file("issued.der")}}));
    return folder().read("issued.der");
  }

  int codeOf(const sys::Bytes& certificate) { return validate(store(), certificate).code(); }

  sys::Bytes certificate_;
};

TEST_F(ValidatingTest, FollowsTheIssuersToOneThatIsTrusted) {
  EXPECT_EQ(codeOf(certificate_), ZELKM_OK);
  ASSERT_TRUE(store().setTrusted("root"_label, false));
  EXPECT_EQ(codeOf(certificate_), ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED);
}

TEST_F(ValidatingTest, NeedsEveryIssuerOnTheWay) {
  ASSERT_TRUE(store().removeKey("middle"_label));
  EXPECT_EQ(codeOf(certificate_), ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND);
}

TEST_F(ValidatingTest, TrustsACertificateThatIsTrustedItself) {
  ASSERT_TRUE(store().removeKey("root"_label));
  ASSERT_TRUE(store().removeKey("middle"_label));
  ASSERT_TRUE(storeAuthority(store(), "web"_label, certificate_));
  EXPECT_EQ(codeOf(certificate_), ZELKM_OK);
}

TEST_F(ValidatingTest, SaysWhatFailedInTheStore) {
  expectAllOrNothing([&](Store& failing) { return validate(failing, certificate_); });
}

}  // namespace
}  // namespace zel::km
