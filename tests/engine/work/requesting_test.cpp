#include "engine/km/work/requesting.h"

#include <gmock/gmock.h>

#include "engine/cms/names.h"
#include "engine/cms/pem.h"
#include "engine/cms/requests.h"
#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class RequestingTest : public WorkTest {
 protected:
  NewRequest wanted() const {
    return {.label = "web"_label,
            .subject = cms::encodeName({.cn = "web"}).value(),
            .keySize = 256,
            .file = file("web.csr")};
  }
  sys::Bytes written() { return cms::decodePem(folder().read("web.csr")).value(); }
  sys::Bytes kept() { return store().findRequest("web"_label).value().request; }
};

TEST_F(RequestingTest, KeepsTheRequestThatItWrites) {
  ASSERT_TRUE(requestCertificate(store(), wanted()));
  EXPECT_EQ(written(), kept());
  EXPECT_TRUE(cms::verifyRequest(kept()));
  EXPECT_EQ(cms::readRequest(kept()).value().subject.cn, "web");
}

TEST_F(RequestingTest, NeedsNoFile) {
  NewRequest wanted = this->wanted();
  wanted.file.reset();
  ASSERT_TRUE(requestCertificate(store(), wanted));
  EXPECT_THAT(content(), SizeIs(1));
  EXPECT_FALSE(exists("web.csr"));
}

TEST_F(RequestingTest, TakesALabelThatOnlyAKeyHas) {
  insert(entryOf("web", cms::TestAuthority("Web")));
  EXPECT_TRUE(requestCertificate(store(), wanted()));
  EXPECT_EQ(requestCertificate(store(), wanted()).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
}

TEST_F(RequestingTest, ChangesNothingWhenTheStoreFails) {
  expectAllOrNothing([&](Store& failing) {
    const sys::Status done = requestCertificate(failing, wanted());
    EXPECT_EQ(exists("web.csr"), static_cast<bool>(done));
    return done;
  });
  EXPECT_THAT(content(), SizeIs(1));
}

TEST_F(RequestingTest, LeavesNoRequestWhoseFileCannotBeWritten) {
  NewRequest wanted = this->wanted();
  wanted.file = unwritableFile();
  EXPECT_EQ(requestCertificate(store(), wanted).code(), ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_THAT(content(), IsEmpty());
}

TEST_F(RequestingTest, WritesARequestAgainAsItIs) {
  const RequestEntry entry = requestOf("web", cms::TestAuthority("Web"));
  insert(entry);
  ASSERT_TRUE(rewriteRequest(store(), "web"_label, file("web.csr")));
  EXPECT_EQ(written(), entry.request);
  EXPECT_EQ(rewriteRequest(store(), "mail"_label, file("web.csr")).code(),
            ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(RequestingTest, SignsARequestAnew) {
  insert(requestOf("web", cms::TestAuthority("Web")));
  const cms::RequestFields before = cms::readRequest(kept()).value();
  ASSERT_TRUE(signRequestAnew(store(), "web"_label, cms::kSha512, file("web.csr")));
  EXPECT_EQ(written(), kept());
  EXPECT_TRUE(cms::verifyRequest(kept()));
  const cms::RequestFields after = cms::readRequest(kept()).value();
  EXPECT_EQ(after.signatureName, "ecdsa-with-SHA512");
  EXPECT_EQ(after.info, before.info);
}

TEST_F(RequestingTest, KeepsTheOldSignatureWhenTheNewOneCannotBeWritten) {
  const RequestEntry entry = requestOf("web", cms::TestAuthority("Web"));
  insert(entry);
  EXPECT_EQ(signRequestAnew(store(), "web"_label, cms::kSha512, unwritableFile()).code(),
            ZELKM_ERR_FILE_OPEN_NOT_EXIST);
  EXPECT_THAT(content(), ElementsAre(lineOf(entry)));
  expectAllOrNothing([&](Store& failing) {
    return signRequestAnew(failing, "web"_label, cms::kSha512, file("web.csr"));
  });
}

}  // namespace
}  // namespace zel::km
