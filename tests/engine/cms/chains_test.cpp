#include "engine/cms/chains.h"

#include <gtest/gtest.h>

#include "engine/cms/certificates.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

/** A store of certificates and nothing else. */
class Chains : public testing::Test {
 protected:
  void know(const sys::Bytes& certificate) { known_.push_back(certificate); }

  sys::Result<std::vector<sys::Bytes>> chainOf(const sys::Bytes& certificate) {
    return buildChain(certificate, [&](sys::ByteView subject) {
      std::vector<sys::Bytes> found;
      for (const sys::Bytes& candidate : known_) {
        const sys::Bytes name = readCertificateKeys(candidate).value().subject;
        if (std::equal(name.begin(), name.end(), subject.begin(), subject.end())) {
          found.push_back(candidate);
        }
      }
      return sys::Result<std::vector<sys::Bytes>>(std::move(found));
    });
  }

  std::vector<sys::Bytes> known_;
  TestAuthority root_{"Root"};
  TestAuthority middle_{"Middle"};
  TestAuthority leaf_{"Leaf"};
};

using Chain = std::vector<sys::Bytes>;

TEST_F(Chains, GoFromTheLeafToTheRoot) {
  const sys::Bytes middle = root_.issueFor(middle_);
  const sys::Bytes leaf = middle_.issueFor(leaf_);
  know(root_.certificate());
  know(middle);
  EXPECT_EQ(chainOf(leaf).value(), (Chain{leaf, middle, root_.certificate()}));
}

TEST_F(Chains, EndWhereTheIssuerIsNotKnown) {
  const sys::Bytes middle = root_.issueFor(middle_);
  const sys::Bytes leaf = middle_.issueFor(leaf_);
  know(middle);
  EXPECT_EQ(chainOf(leaf).value(), (Chain{leaf, middle}));
}

TEST_F(Chains, OfASelfSignedCertificateAreThatOne) {
  know(root_.certificate());
  EXPECT_EQ(chainOf(root_.certificate()).value(), Chain{root_.certificate()});
}

TEST_F(Chains, PassOverAnIssuerWhoseKeyDidNotSign) {
  const TestAuthority impostor("Root");
  know(impostor.certificate());
  const sys::Bytes leaf = root_.issueFor(leaf_);
  EXPECT_EQ(chainOf(leaf).value(), Chain{leaf});
  know(root_.certificate());
  EXPECT_EQ(chainOf(leaf).value(), (Chain{leaf, root_.certificate()}));
}

TEST_F(Chains, PassOverAnIssuerOnlyItsNameIsKnownOf) {
  // Self-issued but not self-signed: the name alone does not end a chain.
  const TestAuthority newRoot("Root");
  const sys::Bytes linking = root_.issueFor(newRoot);
  know(root_.certificate());
  EXPECT_EQ(chainOf(linking).value(), (Chain{linking, root_.certificate()}));
}

TEST_F(Chains, EndBetweenAuthoritiesThatSignedEachOther) {
  const TestAuthority a("A");
  const TestAuthority b("B");
  const sys::Bytes aByB = b.issueFor(a);
  const sys::Bytes bByA = a.issueFor(b);
  know(aByB);
  know(bByA);
  const sys::Bytes leaf = a.issueFor(leaf_);
  EXPECT_EQ(chainOf(leaf).value(), (Chain{leaf, aByB, bByA}));
}

TEST_F(Chains, MatchNamesWhateverTheirLetterCase) {
  const TestAuthority shouting("MIDDLE");
  const sys::Bytes leaf = middle_.issueFor(leaf_);
  ASSERT_NE(middle_.name(), shouting.name());
  know(middle_.certificate());
  EXPECT_EQ(chainOf(leaf).value(), (Chain{leaf, middle_.certificate()}));
}

TEST_F(Chains, PassOnWhyTheLookUpFailed) {
  const auto failing = [](sys::ByteView) -> sys::Result<std::vector<sys::Bytes>> {
    return sys::Failure{ZELKM_ERR_DATABASE_CORRUPTION};
  };
  EXPECT_EQ(buildChain(root_.issueFor(leaf_), failing).code(), ZELKM_ERR_DATABASE_CORRUPTION);
  EXPECT_EQ(buildChain({}, failing).code(), ZELKM_ERR_ASN);
}

}  // namespace
}  // namespace zel::cms
