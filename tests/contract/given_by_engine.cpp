#include <cstdlib>
#include <memory>

#include "tests/contract/contract.h"
#include "tests/engine/errors/world.h"
#include "tests/engine/token/test_token.h"

// The engine works on real files and a token of SoftHSM. What it leaves unreleased, the address
// sanitizer finds.

namespace zel::contract {

namespace {

constexpr const char* kTokenLabel = "token";

std::unique_ptr<km::errors::World>& world() {
  static std::unique_ptr<km::errors::World> current;
  return current;
}

void makeToken() {
  static const cms::TemporaryFolder folder;
  [[maybe_unused]] static const bool made = [] {
    km::token::SoftHsm(folder).addToken(kTokenLabel);
    return true;
  }();
}

}  // namespace

Given given() {
  makeToken();
  world() = std::make_unique<km::errors::World>();
  const km::errors::Materials& materials = km::errors::materials();
  return {.file = world()->file,
          .password = km::errors::kPassword,
          .otherPassword = km::errors::kOtherPassword,
          .textFile = world()->textFile,
          .pfxFile = world()->pfxFile,
          .pfxPassword = km::errors::kPfxPassword,
          .folder = km::errors::World::path(""),
          .moduleName = km::token::kSoftHsmModule,
          .tokenLabel = kTokenLabel,
          .pin = km::token::kPin,
          .certificate = materials.server,
          .publicKey = materials.publicKey,
          .renewal = materials.renewal,
          .issued = materials.issued,
          .stranger = materials.stranger.certificate(),
          .strangersKey = materials.key,
          .strangersRequest = materials.request};
}

std::vector<std::string> complaints() { return {}; }
void forget() { world().reset(); }
void refuse(const char*) {}
void* allocateAsCaller(std::size_t size) { return std::malloc(size); }
void releaseAsCaller(void* block) { std::free(block); }

}  // namespace zel::contract
