#include "tests/engine/stores/store_test.h"

#include <algorithm>

#include "engine/cms/requests.h"

namespace zel::km {

StoreTest::StoreTest() : place_(GetParam()->newPlace()), store_(openBeside()) {}

void StoreTest::reopen() {
  store_.reset();
  store_ = openBeside();
}

std::unique_ptr<Store> StoreTest::openBeside() const {
  sys::Result<std::unique_ptr<Store>> opened = place_->open();
  EXPECT_EQ(opened.code(), ZELKM_OK);
  return std::move(opened).value();
}

std::vector<Label> StoreTest::keys() {
  sys::Result<std::vector<Label>> labels = store().keyLabels();
  EXPECT_EQ(labels.code(), ZELKM_OK);
  return std::move(labels).value();
}

std::vector<Label> StoreTest::requests() {
  sys::Result<std::vector<Label>> labels = store().requestLabels();
  EXPECT_EQ(labels.code(), ZELKM_OK);
  return std::move(labels).value();
}

std::vector<Label> StoreTest::listed(std::vector<Label> arrivals) const {
  if (kind().order == Order::ofLabels) std::ranges::sort(arrivals, {}, &Label::text);
  return arrivals;
}

GeneratedKey StoreTest::newKey() {
  sys::Result<GeneratedKey> key = store().generateKey(256);
  EXPECT_EQ(key.code(), ZELKM_OK);
  return std::move(key).value();
}

KeyEntry StoreTest::newEntry(const std::string& label, const std::string& commonName) {
  GeneratedKey key = newKey();
  return {.label = Label::ofName(label),
          .certificate = authority_.issueFor(key.publicKey, commonName),
          .privateKey = std::move(key.privateKey)};
}

RequestEntry StoreTest::newRequest(const std::string& label) {
  GeneratedKey key = newKey();
  sys::Bytes request = requestBy(store(), key, "www.example.com");
  return {.label = Label::ofName(label),
          .request = std::move(request),
          .privateKey = std::move(key.privateKey)};
}

bool StoreTest::signs(const PrivateKey& key, const sys::Bytes& publicKey, SigningDigest digest) {
  const sys::ByteView message = cms::text("what is to be signed");
  const sys::Result<sys::Bytes> signature = store().sign(key, digest, message);
  EXPECT_EQ(signature.code(), ZELKM_OK);
  return signature && isSignature(signature.value(), message, digest, publicKey);
}

sys::Bytes publicKeyOfRequest(const RequestEntry& entry) {
  return cms::readRequest(entry.request).value().publicKeyInfo;
}

}  // namespace zel::km
