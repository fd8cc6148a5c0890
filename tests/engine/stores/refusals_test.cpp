#include "tests/engine/stores/refusals.h"

#include <array>

#include "engine/cms/epki.h"
#include "engine/cms/names.h"
#include "engine/km/store/crypto_mode.h"
#include "tests/engine/stores/store_test.h"

namespace zel::km {

namespace {

constexpr std::uint32_t kIterations = 2'000;

/** The process keeps to approved algorithms for as long as this lives. */
class ApprovedMode {
 public:
  ApprovedMode() { EXPECT_TRUE(setCryptoMode(true, false)); }
  ~ApprovedMode() { EXPECT_TRUE(setCryptoMode(false, false)); }
  ApprovedMode(const ApprovedMode&) = delete;
  ApprovedMode& operator=(const ApprovedMode&) = delete;
};

cms::TestAuthority newOwner(int keySize = 256) { return cms::TestAuthority("Owner", keySize); }

PrivateKey keyAtHand() {
  return {.pkcs8 = cms::privateKeyInfo(newOwner().key()).value(), .reference = {}};
}

sys::Bytes encryptedKey(std::string_view password) {
  return cms::encryptPrivateKey(keyAtHand().pkcs8, cms::text(password), kIterations).value();
}

class Refusals : public StoreTest {
 public:
  // What the attempts work with: the store, and what is to be in it beforehand.
  using StoreTest::asOne;
  using StoreTest::atOneMoment;
  using StoreTest::kind;
  using StoreTest::newEntry;
  using StoreTest::newRequest;
  using StoreTest::store;

  std::string newLabel() { return "entry " + std::to_string(++labelCount_); }

  KeyEntry keptKey() {
    const KeyEntry entry = newEntry(newLabel());
    EXPECT_EQ(store().insertKey(entry).code(), ZELKM_OK);
    return store().findKey(entry.label).value();
  }
  KeyEntry keptCertificate() {
    KeyEntry entry = signerEntryOf(newLabel(), newOwner());
    EXPECT_EQ(store().insertKey(entry).code(), ZELKM_OK);
    return entry;
  }
  /** A request that is in the store, unless that takes none. */
  RequestEntry keptRequest() {
    RequestEntry entry = newRequest(newLabel());
    EXPECT_EQ(store().insertRequest(entry).code(), kind().codeOf(Operation::insertRequest));
    return entry;
  }

 private:
  int labelCount_ = 0;
};

/** One way to have an operation succeed, on a store that does it. */
struct Attempt {
  Operation operation;
  const char* name;
  int (*codeOn)(Refusals& test);
};

constexpr std::array kAttempts = {
    Attempt{Operation::listKeys, "list keys",
            [](Refusals& test) { return test.store().keyLabels().code(); }},
    Attempt{Operation::findKey, "find a key",
            [](Refusals& test) { return test.store().findKey(test.keptKey().label).code(); }},
    Attempt{Operation::findKeysByPublicKey, "find keys by their public key",
            [](Refusals& test) {
              const sys::Bytes publicKey = publicKeyOf(test.keptKey().certificate);
              return test.store().findKeysByPublicKey(publicKey).code();
            }},
    Attempt{Operation::findKeysBySubject, "find keys by their subject",
            [](Refusals& test) {
              const sys::Bytes subject = cms::canonicalName(newOwner().name()).value();
              return test.store().findKeysBySubject(subject).code();
            }},
    Attempt{Operation::insertCertificate, "insert a certificate",
            [](Refusals& test) {
              return test.store().insertKey(signerEntryOf(test.newLabel(), newOwner())).code();
            }},
    Attempt{Operation::insertKey, "insert a key",
            [](Refusals& test) {
              return test.store().insertKey(entryOf(test.newLabel(), newOwner())).code();
            }},
    Attempt{Operation::insertEd25519Key, "insert an Ed25519 key",
            [](Refusals& test) {
              return test.store().insertKey(entryOf(test.newLabel(), newOwner(25519))).code();
            }},
    Attempt{Operation::insertCertificateAgain, "insert a certificate under a second label",
            [](Refusals& test) {
              KeyEntry entry = test.keptCertificate();
              entry.label = Label::ofName(test.newLabel());
              return test.store().insertKey(entry).code();
            }},
    Attempt{Operation::insertTrusted, "insert a trusted certificate",
            [](Refusals& test) {
              KeyEntry entry = signerEntryOf(test.newLabel(), newOwner());
              entry.trusted = true;
              return test.store().insertKey(entry).code();
            }},
    Attempt{Operation::insertDefault, "insert a default key",
            [](Refusals& test) {
              KeyEntry entry = test.newEntry(test.newLabel());
              entry.isDefault = true;
              return test.store().insertKey(entry).code();
            }},
    Attempt{Operation::replaceKey, "replace a key",
            [](Refusals& test) {
              KeyEntry entry = test.newEntry(test.newLabel());
              entry.label = test.keptKey().label;
              return test.store().replaceKey(entry).code();
            }},
    Attempt{Operation::replaceByAnotherSubject, "replace a key by one of another subject",
            [](Refusals& test) {
              KeyEntry entry = test.newEntry(test.newLabel(), "mail.example.com");
              entry.label = test.keptKey().label;
              return test.store().replaceKey(entry).code();
            }},
    Attempt{Operation::replaceByDefault, "replace a key by a default key",
            [](Refusals& test) {
              KeyEntry entry = test.newEntry(test.newLabel());
              entry.label = test.keptKey().label;
              entry.isDefault = true;
              return test.store().replaceKey(entry).code();
            }},
    Attempt{Operation::removeKey, "remove a key",
            [](Refusals& test) { return test.store().removeKey(test.keptKey().label).code(); }},

    Attempt{Operation::listRequests, "list requests",
            [](Refusals& test) { return test.store().requestLabels().code(); }},
    Attempt{
        Operation::findRequest, "find a request",
        [](Refusals& test) { return test.store().findRequest(test.keptRequest().label).code(); }},
    Attempt{Operation::findRequestsByPublicKey, "find requests by their public key",
            [](Refusals& test) {
              const sys::Bytes publicKey = publicKeyOfRequest(test.keptRequest());
              return test.store().findRequestsByPublicKey(publicKey).code();
            }},
    Attempt{Operation::insertRequest, "insert a request",
            [](Refusals& test) {
              return test.store().insertRequest(test.newRequest(test.newLabel())).code();
            }},
    Attempt{Operation::replaceRequest, "replace a request",
            [](Refusals& test) {
              RequestEntry entry = test.newRequest(test.newLabel());
              entry.label = test.keptRequest().label;
              return test.store().replaceRequest(entry).code();
            }},
    Attempt{
        Operation::removeRequest, "remove a request",
        [](Refusals& test) { return test.store().removeRequest(test.keptRequest().label).code(); }},

    Attempt{Operation::defaultKey, "tell the default key",
            [](Refusals& test) {
              (void)test.store().setDefault(test.keptKey().label);
              return test.store().defaultKey().code();
            }},
    Attempt{Operation::setDefault, "make a key the default",
            [](Refusals& test) { return test.store().setDefault(test.keptKey().label).code(); }},
    Attempt{Operation::trust, "trust a certificate",
            [](Refusals& test) {
              return test.store().setTrusted(test.keptCertificate().label, true).code();
            }},
    Attempt{Operation::distrust, "trust a certificate no more",
            [](Refusals& test) {
              return test.store().setTrusted(test.keptCertificate().label, false).code();
            }},

    Attempt{Operation::runTransaction, "run changes as one",
            [](Refusals& test) {
              return test.asOne([]() -> sys::Status { return sys::success(); }).code();
            }},
    Attempt{Operation::runSnapshot, "read at one moment",
            [](Refusals& test) {
              return test.atOneMoment([]() -> sys::Status { return sys::success(); }).code();
            }},
    Attempt{Operation::useSignerStore, "use the store of signers",
            [](Refusals& test) {
              return test.store()
                  .onSignerStore([](Store&) -> sys::Status { return sys::success(); })
                  .code();
            }},

    Attempt{Operation::generateRsaKey, "generate an RSA key",
            [](Refusals& test) { return test.store().generateKey(2048).code(); }},
    Attempt{Operation::generateEcKey, "generate an EC key",
            [](Refusals& test) { return test.store().generateKey(384).code(); }},
    Attempt{Operation::generateEd25519Key, "generate an Ed25519 key",
            [](Refusals& test) { return test.store().generateKey(25519).code(); }},
    Attempt{Operation::sign, "sign",
            [](Refusals& test) {
              const PrivateKey key = test.keptKey().privateKey;
              return test.store().sign(key, SigningDigest::sha256, cms::text("text")).code();
            }},
    Attempt{
        Operation::signWithKeyAtHand, "sign with a key at hand",
        [](Refusals& test) {
          return test.store().sign(keyAtHand(), SigningDigest::sha256, cms::text("text")).code();
        }},
    Attempt{Operation::encryptOwnKey, "encrypt a key of its own",
            [](Refusals& test) {
              return test.store().encryptedPrivateKey(test.keptKey().privateKey).code();
            }},
    Attempt{Operation::encryptKeyAtHand, "encrypt a key at hand",
            [](Refusals& test) { return test.store().encryptedPrivateKey(keyAtHand()).code(); }},
    Attempt{Operation::decryptKey, "decrypt a key",
            [](Refusals& test) {
              const sys::Bytes encrypted = encryptedKey(test.kind().password);
              return test.store().decryptedPrivateKey(encrypted).code();
            }},
    Attempt{Operation::decryptKeyUnderAnotherPassword, "decrypt a key under another password",
            [](Refusals& test) {
              return test.store().decryptedPrivateKey(encryptedKey("another")).code();
            }},

    Attempt{Operation::generateApprovedKey, "generate an approved key in the approved mode",
            [](Refusals& test) {
              const ApprovedMode mode;
              return test.store().generateKey(256).code();
            }},
    Attempt{Operation::generateUnapprovedKey, "generate an Ed25519 key in the approved mode",
            [](Refusals& test) {
              const ApprovedMode mode;
              return test.store().generateKey(25519).code();
            }},
    Attempt{Operation::insertApprovedCertificate, "insert an approved certificate in that mode",
            [](Refusals& test) {
              const ApprovedMode mode;
              return test.store().insertKey(signerEntryOf(test.newLabel(), newOwner())).code();
            }},
    Attempt{Operation::insertUnapprovedCertificate, "insert an Ed25519 certificate in that mode",
            [](Refusals& test) {
              const ApprovedMode mode;
              return test.store().insertKey(signerEntryOf(test.newLabel(), newOwner(25519))).code();
            }},
};

constexpr bool isWhole() {
  for (std::size_t at = 0; at < kAttempts.size(); ++at) {
    if (static_cast<std::size_t>(kAttempts[at].operation) != at) return false;
  }
  return kAttempts.size() == kOperationCount;
}
static_assert(isWhole(), "each operation is attempted once, in the order of Operation");

TEST_P(Refusals, AreThoseOfTheTableAndNoOthers) {
  for (const Attempt& attempt : kAttempts) {
    EXPECT_EQ(attempt.codeOn(*this), kind().codeOf(attempt.operation)) << attempt.name;
  }
}

TEST_P(Refusals, OfWhatIsNotApprovedAreAnnounced) {
  EXPECT_FALSE(store().approvedOnly());
  const ApprovedMode mode;
  EXPECT_TRUE(store().approvedOnly());
}

INSTANTIATE_TEST_SUITE_P(, Refusals, testing::ValuesIn(allStores()), storeName);

}  // namespace

}  // namespace zel::km
