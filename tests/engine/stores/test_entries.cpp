#include "tests/engine/stores/test_entries.h"

#include <gtest/gtest.h>

#include <memory>

#include "engine/cms/certificates.h"
#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/requests.h"

namespace zel::km {

namespace {

const EVP_MD* messageDigest(SigningDigest digest) {
  switch (digest) {
    case SigningDigest::none:
      return nullptr;
    case SigningDigest::sha256:
      return EVP_sha256();
    case SigningDigest::sha384:
      return EVP_sha384();
    case SigningDigest::sha512:
      break;
  }
  return EVP_sha512();
}

}  // namespace

KeyEntry entryOf(const std::string& label, const cms::TestAuthority& authority) {
  KeyEntry entry = signerEntryOf(label, authority);
  entry.privateKey.pkcs8 = cms::privateKeyInfo(authority.key()).value();
  return entry;
}

KeyEntry signerEntryOf(const std::string& label, const cms::TestAuthority& authority) {
  KeyEntry entry;
  entry.label = Label::ofName(label);
  entry.certificate = authority.certificate();
  return entry;
}

RequestEntry requestOf(const std::string& label, const cms::TestAuthority& authority) {
  auto& key = const_cast<EVP_PKEY&>(authority.key());
  const cms::RequestPtr request(X509_REQ_new());
  X509_REQ_set_subject_name(request.get(),
                            cms::decodeDer<cms::NamePtr>(d2i_X509_NAME, authority.name()).get());
  X509_REQ_set_pubkey(request.get(), &key);
  X509_REQ_sign(request.get(), &key, EVP_sha256());
  RequestEntry entry;
  entry.label = Label::ofName(label);
  entry.request = cms::encodeDer(i2d_X509_REQ, request.get());
  entry.privateKey.pkcs8 = cms::privateKeyInfo(key).value();
  return entry;
}

sys::Bytes requestBy(Store& store, const GeneratedKey& key, const std::string& commonName) {
  const cms::RequestPlan plan{.subject = cms::encodeName({.cn = commonName}).value(),
                              .publicKeyInfo = key.publicKey};
  sys::Result<sys::Bytes> request =
      cms::buildRequest(plan, cms::describePublicKey(key.publicKey).value(), cms::kByKeyStrength,
                        [&](SigningDigest digest, sys::ByteView message) {
                          return store.sign(key.privateKey, digest, message);
                        });
  EXPECT_EQ(request.code(), ZELKM_OK);
  return std::move(request).value();
}

sys::Bytes publicKeyOf(const sys::Bytes& certificate) {
  return cms::readCertificateKeys(certificate).value().publicKeyInfo;
}

bool isSignature(sys::ByteView signature, sys::ByteView message, SigningDigest digest,
                 const sys::Bytes& publicKey) {
  const unsigned char* at = publicKey.data();
  const cms::KeyPtr verifier(d2i_PUBKEY(nullptr, &at, static_cast<long>(publicKey.size())));
  const std::unique_ptr<EVP_MD_CTX, cms::Releaser<EVP_MD_CTX_free>> context(EVP_MD_CTX_new());
  return EVP_DigestVerifyInit(context.get(), nullptr, messageDigest(digest), nullptr,
                              verifier.get()) == 1 &&
         EVP_DigestVerify(context.get(), signature.data(), signature.size(), message.data(),
                          message.size()) == 1;
}

}  // namespace zel::km
