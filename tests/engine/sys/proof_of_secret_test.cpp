#include "engine/sys/proof_of_secret.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace zel::sys {
namespace {

ProofOfSecret proofOf(ByteView secret) { return std::move(ProofOfSecret::of(secret).value()); }

TEST(ProofOfSecretTest, KnowsItsSecretAgain) {
  const ProofOfSecret proof = proofOf(bytesOf("correct horse"));
  EXPECT_TRUE(proof.isOf(bytesOf("correct horse")));
  EXPECT_TRUE(proof.isOf(bytesOf("correct horse"))) << "as often as it is asked";
}

TEST(ProofOfSecretTest, KnowsNoOtherSecret) {
  const ProofOfSecret proof = proofOf(bytesOf("correct horse"));
  for (const char* other :
       {"", "correct hors", "correct horsf", "Correct horse", "correct horse "}) {
    EXPECT_FALSE(proof.isOf(bytesOf(other))) << other;
  }
}

TEST(ProofOfSecretTest, IsOfNoBytesToo) {
  const ProofOfSecret proof = proofOf({});
  EXPECT_TRUE(proof.isOf({}));
  EXPECT_FALSE(proof.isOf(bytesOf("x")));
}

TEST(ProofOfSecretTest, TellsSecretsApartThatEndAtAZero) {
  const Bytes shorter{'p', 'i', 'n'};
  const Bytes longer{'p', 'i', 'n', 0};
  EXPECT_FALSE(proofOf(shorter).isOf(longer));
  EXPECT_FALSE(proofOf(longer).isOf(shorter));
}

TEST(ProofOfSecretTest, StaysAProofWhenItIsMoved) {
  ProofOfSecret first = proofOf(bytesOf("first"));
  ProofOfSecret second = proofOf(bytesOf("second"));
  second = std::move(first);
  EXPECT_TRUE(second.isOf(bytesOf("first")));
  EXPECT_FALSE(second.isOf(bytesOf("second")));
}

TEST(ProofOfSecretTest, SaysWhetherItCouldBeLocked) {
  if (!SecretBlock(32).locked()) GTEST_SKIP() << "this process may not lock memory";
  EXPECT_TRUE(proofOf(bytesOf("secret")).locked());
  std::vector<SecretBlock> all;
  while (all.empty() || all.back().locked()) all.emplace_back(32);
  const ProofOfSecret proof = proofOf(bytesOf("secret"));
  EXPECT_FALSE(proof.locked());
  EXPECT_TRUE(proof.isOf(bytesOf("secret")));
}

}  // namespace
}  // namespace zel::sys
