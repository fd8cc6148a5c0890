#include "engine/cms/requests.h"

#include <gmock/gmock.h>

#include "tests/engine/stores/store_test.h"

// Key pairs that wait for their certificates.

namespace zel::km {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Label> labelsOf(const sys::Result<std::vector<RequestEntry>>& found) {
  EXPECT_EQ(found.code(), ZELKM_OK);
  std::vector<Label> labels;
  for (const RequestEntry& entry : found.value()) labels.push_back(entry.label);
  return labels;
}

/** What a request says, whoever signed it last: some tokens sign it anew when it is asked for. */
sys::Bytes contentOf(const sys::Bytes& request) {
  EXPECT_EQ(cms::verifyRequest(request).code(), ZELKM_OK);
  return cms::readRequest(request).value().info;
}

class Requests : public StoreTest {
 protected:
  void insert(const RequestEntry& entry) {
    ASSERT_EQ(store().insertRequest(entry).code(), ZELKM_OK);
  }
  RequestEntry found(const Label& label) {
    sys::Result<RequestEntry> entry = store().findRequest(label);
    EXPECT_EQ(entry.code(), ZELKM_OK);
    return entry ? std::move(entry).value() : RequestEntry{};
  }
};

TEST_P(Requests, AreListedInTheOrderOfTheStore) {
  insert(newRequest("web"));
  insert(newRequest("mail"));
  insert(newRequest("backup"));
  const std::vector<Label> order = listed({"web"_label, "mail"_label, "backup"_label});
  EXPECT_EQ(requests(), order);
  reopen();
  EXPECT_EQ(requests(), order);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_P(Requests, AreFoundAsTheyCame) {
  const RequestEntry made = newRequest("web");
  insert(made);
  reopen();
  const RequestEntry entry = found("web"_label);
  EXPECT_EQ(entry.label, "web"_label);
  EXPECT_EQ(contentOf(entry.request), contentOf(made.request));
  EXPECT_EQ(entry.privateKey.pkcs8, made.privateKey.pkcs8);
  EXPECT_TRUE(signs(entry.privateKey, publicKeyOfRequest(made)));
}

TEST_P(Requests, TakeKeysThatAreBroughtIn) {
  const RequestEntry made = requestOf("authority", authority_);
  insert(made);
  reopen();
  const RequestEntry entry = found("authority"_label);
  EXPECT_EQ(contentOf(entry.request), contentOf(made.request));
  EXPECT_TRUE(signs(entry.privateKey, publicKeyOfRequest(made)));
}

TEST_P(Requests, MayHaveTheLabelOfAnEntry) {
  const KeyEntry entry = newEntry("web");
  const RequestEntry request = newRequest("web");
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  insert(request);
  EXPECT_THAT(keys(), ElementsAre("web"_label));
  EXPECT_THAT(requests(), ElementsAre("web"_label));
  EXPECT_EQ(contentOf(found("web"_label).request), contentOf(request.request));
  ASSERT_EQ(store().removeKey("web"_label).code(), ZELKM_OK);
  EXPECT_THAT(requests(), ElementsAre("web"_label));
}

TEST_P(Requests, HaveLabelsOfTheirOwn) {
  const RequestEntry made = newRequest("web");
  insert(made);
  EXPECT_EQ(store().insertRequest(newRequest("web")).code(),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(requests(), ElementsAre("web"_label));
  EXPECT_EQ(contentOf(found("web"_label).request), contentOf(made.request));
}

TEST_P(Requests, AreFoundByTheirPublicKey) {
  const RequestEntry made = newRequest("web");
  insert(made);
  insert(newRequest("mail"));
  EXPECT_THAT(labelsOf(store().findRequestsByPublicKey(publicKeyOfRequest(made))),
              ElementsAre("web"_label));
  EXPECT_THAT(labelsOf(store().findRequestsByPublicKey(publicKeyOf(authority_.certificate()))),
              IsEmpty());
  EXPECT_THAT(labelsOf(store().findRequestsByPublicKey({})), IsEmpty());
}

TEST_P(Requests, ThatAreNotThereAreToldSo) {
  insert(newRequest("web"));
  ASSERT_EQ(store().insertKey(newEntry("mail")).code(), ZELKM_OK);
  EXPECT_EQ(store().findRequest("mail"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store().removeRequest("mail"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store().replaceRequest(newRequest("mail")).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store().findKey("web"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_THAT(requests(), ElementsAre("web"_label));
}

TEST_P(Requests, AreReplacedInTheirPlace) {
  insert(newRequest("web"));
  insert(newRequest("mail"));
  RequestEntry entry = found("web"_label);
  const sys::Bytes publicKey = publicKeyOfRequest(entry);
  entry.request = cms::signRequestAgain(entry.request, cms::kSha512,
                                        [&](SigningDigest digest, sys::ByteView message) {
                                          return store().sign(entry.privateKey, digest, message);
                                        })
                      .value();
  ASSERT_EQ(store().replaceRequest(entry).code(), ZELKM_OK);
  reopen();
  EXPECT_EQ(requests(), listed({"web"_label, "mail"_label}));
  EXPECT_EQ(contentOf(found("web"_label).request), contentOf(entry.request));
  EXPECT_TRUE(signs(found("web"_label).privateKey, publicKey));
}

TEST_P(Requests, AreRemoved) {
  insert(newRequest("web"));
  insert(newRequest("mail"));
  ASSERT_EQ(store().removeRequest("web"_label).code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(requests(), ElementsAre("mail"_label));
  EXPECT_EQ(store().findRequest("web"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_P(Requests, AreRequestsInDer) {
  RequestEntry entry = newRequest("web");
  entry.request = {1, 2, 3};
  EXPECT_EQ(store().insertRequest(entry).code(), ZELKM_ERR_ASN);
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(Requests, BecomeEntriesWithTheirKeys) {
  insert(newRequest("web"));
  const RequestEntry pending = found("web"_label);
  const sys::Bytes publicKey = publicKeyOfRequest(pending);
  const KeyEntry received{.label = "web"_label,
                          .certificate = authority_.issueFor(publicKey, "www.example.com"),
                          .privateKey = pending.privateKey};
  const sys::Status done = asOne([&]() -> sys::Status {
    sys::Status removed = store().removeRequest("web"_label);
    return removed ? store().insertKey(received) : removed;
  });
  ASSERT_EQ(done.code(), ZELKM_OK);
  reopen();
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(keys(), ElementsAre("web"_label));
  EXPECT_TRUE(signs(store().findKey("web"_label).value().privateKey, publicKey));
}

INSTANTIATE_TEST_SUITE_P(, Requests, testing::ValuesIn(storesThatDo(Operation::insertRequest)),
                         storeName);

class KeptRequests : public Requests {};

TEST_P(KeptRequests, AreFoundToTheByte) {
  const RequestEntry made = newRequest("web");
  insert(made);
  reopen();
  EXPECT_EQ(found("web"_label).request, made.request);
}

TEST_P(KeptRequests, AreReplacedByThoseOfAnotherKey) {
  const RequestEntry made = newRequest("web");
  insert(made);
  insert(newRequest("mail"));
  const RequestEntry replacement = newRequest("web");
  ASSERT_EQ(store().replaceRequest(replacement).code(), ZELKM_OK);
  reopen();
  EXPECT_EQ(requests(), listed({"web"_label, "mail"_label}));
  const RequestEntry entry = found("web"_label);
  EXPECT_EQ(contentOf(entry.request), contentOf(replacement.request));
  EXPECT_TRUE(signs(entry.privateKey, publicKeyOfRequest(replacement)));
  EXPECT_THAT(labelsOf(store().findRequestsByPublicKey(publicKeyOfRequest(made))), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, KeptRequests, testing::ValuesIn(storesThatKeepRequests()), storeName);

}  // namespace

}  // namespace zel::km
