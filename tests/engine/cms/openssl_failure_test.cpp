#include <gtest/gtest.h>
#include <openssl/err.h>

#include "engine/cms/openssl_ptr.h"

namespace zel::cms {
namespace {

TEST(OpenSslFailures, AreToldWithTheCodeOfTheAttempt) {
  ERR_raise(ERR_LIB_ASN1, ASN1_R_WRONG_TAG);
  EXPECT_EQ(cryptoFailure(ZELKM_ERR_ASN, "read a certificate").code, ZELKM_ERR_ASN);
  EXPECT_EQ(ERR_peek_error(), 0U);
}

TEST(OpenSslFailures, ForWantOfMemoryAreNeverTakenForAnythingElse) {
  ERR_raise(ERR_LIB_ASN1, ERR_R_MALLOC_FAILURE);
  ERR_raise(ERR_LIB_ASN1, ERR_R_NESTED_ASN1_ERROR);
  EXPECT_EQ(cryptoFailure(ZELKM_ERR_ASN, "read a certificate").code, ZELKM_ERR_MEMORY_ALLOCATE);
  EXPECT_EQ(ERR_peek_error(), 0U);
}

}  // namespace
}  // namespace zel::cms
