#include "engine/cms/pkcs12/key_rings.h"

#include <gtest/gtest.h>

#include <ctime>

#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/cms/tools.h"

namespace zel::cms {
namespace {

const sys::ByteView kPassword = text("secret");

KeyRingEntry entryOf(const std::string& label, const TestAuthority& authority) {
  return {.label = label,
          .certificate = authority.certificate(),
          .privateKeyInfo = privateKeyInfo(authority.key()).value()};
}

std::vector<std::string> labelsAfter(const KeyRing& ring) {
  const KeyRing read = readKeyRing(writeKeyRing(ring, kPassword).value(), kPassword).value();
  std::vector<std::string> labels;
  for (const KeyRingEntry& entry : read.entries) labels.push_back(entry.label);
  return labels;
}

/** The processor time that reading takes, the shorter of two. */
std::clock_t timeToRead(const KeyRing& ring) {
  const sys::Bytes file = writeKeyRing(ring, kPassword).value();
  std::clock_t least = 0;
  for (int attempt = 0; attempt < 2; ++attempt) {
    const std::clock_t start = std::clock();
    EXPECT_TRUE(readKeyRing(file, kPassword));
    const std::clock_t taken = std::clock() - start;
    if (attempt == 0 || taken < least) least = taken;
  }
  return least;
}

TEST(KeyRingFiles, KeepEveryCharacterOfALabel) {
  const TestAuthority root("Root");
  KeyRing ring;
  const std::vector<std::string> labels = {"plain", "schlüssel 🔑", std::string("a\0b", 3),
                                           std::string("end\0", 4), std::string("\0\0", 2)};
  for (const std::string& label : labels) ring.entries.push_back(entryOf(label, root));
  EXPECT_EQ(labelsAfter(ring), labels);
}

TEST(KeyRingFiles, GiveEachOfTwoKeysOfOneCertificateAnEntry) {
  const TestAuthority root("Root");
  const Pkcs12Entry entry{.friendlyName = "one",
                          .privateKeyInfo = privateKeyInfo(root.key()).value(),
                          .chain = {root.certificate()}};
  Pkcs12Entry second = entry;
  second.friendlyName = "two";
  const sys::Bytes file = writePkcs12({entry, second}, kPassword).value();
  const KeyRing ring = readKeyRing(file, kPassword).value();
  ASSERT_EQ(ring.entries.size(), 2U);
  EXPECT_EQ(ring.entries[0].label, "one");
  EXPECT_EQ(ring.entries[1].label, "two");
  EXPECT_EQ(ring.entries[0].privateKeyInfo, ring.entries[1].privateKeyInfo);
}

TEST(KeyRingFiles, CostOneDerivationHoweverManyKeys) {
  const TestAuthority root("Root");
  KeyRing one;
  one.entries.push_back(entryOf("one", root));
  KeyRing many;
  for (int i = 0; i < 40; ++i) many.entries.push_back(entryOf(std::to_string(i), root));
  // A derivation for each key would take more than ten times as long.
  EXPECT_LT(timeToRead(many), 5 * timeToRead(one));
}

}  // namespace
}  // namespace zel::cms
