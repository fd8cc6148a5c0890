#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string>

#include "tests/engine/errors/faults.h"
#include "tests/engine/errors/provocation.h"

// What operations answer when something is wrong: every row of the table, brought about.

namespace zel::km::errors {
namespace {

using Files = std::map<std::string, sys::Bytes>;

const Operation* operationOf(const std::string& name) {
  for (const Operation& operation : operations()) {
    if (operation.name == name) return &operation;
  }
  return nullptr;
}

/** Arranges the trouble, calls the operation, and finds the code, and the files as they were. */
void bringAbout(const Trouble& trouble, const Operation& operation) {
  SCOPED_TRACE(std::string(operation.name) + ": " + std::to_string(trouble.code) + ", " +
               trouble.when);
  World world;
  trouble.arrange(world);
  Files before = world.files();
  const std::string entries = world.entries();
  faults::begin();
  const int code = operation.call(world);
  faults::end();
  EXPECT_EQ(code, trouble.code);
  Files after = world.files();
  if (after == before) return;
  // An entry that was put in and taken out again leaves other bytes behind.
  EXPECT_EQ(world.entries(), entries);
  before.erase("keys.kdb");
  after.erase("keys.kdb");
  EXPECT_EQ(after, before);
}

void bringAbout(const std::vector<Troubles>& table) {
  for (const Troubles& troubles : table) {
    for (const char* name : troubles.operations) {
      const Operation* operation = operationOf(name);
      ASSERT_NE(operation, nullptr) << name;
      ASSERT_NE(operation->call, nullptr) << name;
      for (const Trouble& trouble : troubles.troubles) bringAbout(trouble, *operation);
    }
  }
}

/** What succeeds with a token only. */
const std::set<std::string> kNotHere = {"ZELKM_SetSecondaryKeyDb", "ZELKM_UnsetSecondaryKeyDb",
                                        "ZELKM_GetCryptoTokenLabelList"};

// Else a trouble might not be what the operation complains of.
TEST(EngineErrors, AreNoneWhenNothingIsWrong) {
  for (const Operation& operation : operations()) {
    if (operation.call == nullptr || kNotHere.contains(operation.name)) continue;
    World world;
    EXPECT_EQ(operation.call(world), ZELKM_OK) << operation.name;
  }
}

TEST(EngineErrors, Stores) { bringAbout(troublesOfStores()); }
TEST(EngineErrors, Arguments) { bringAbout(troublesOfArguments()); }
TEST(EngineErrors, Databases) { bringAbout(troublesOfDatabases()); }
TEST(EngineErrors, Files) { bringAbout(troublesOfFiles()); }
TEST(EngineErrors, Entries) { bringAbout(troublesOfEntries()); }
TEST(EngineErrors, Certificates) { bringAbout(troublesOfCertificates()); }
TEST(EngineErrors, Chains) { bringAbout(troublesOfChains()); }
TEST(EngineErrors, Tokens) { bringAbout(troublesOfTokens()); }
TEST(EngineErrors, CertificateStores) { bringAbout(troublesOfCertificateStores()); }

}  // namespace
}  // namespace zel::km::errors
