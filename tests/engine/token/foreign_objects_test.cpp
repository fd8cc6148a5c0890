#include <gmock/gmock.h>

#include <cstdio>

#include "engine/cms/keys.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/requests.h"
#include "engine/km/token/public_keys.h"
#include "tests/engine/stores/labels.h"
#include "tests/engine/token/token_store_test.h"

// What other programs put on a token is seen and used here, and the other way round.

namespace zel::km::token {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/** U+1F600 as the C interface carries it, and as the rest of the world does. */
constexpr const char* kSmileyModified = "\xED\xA0\xBD\xED\xB8\x80";
constexpr const char* kSmiley = "\xF0\x9F\x98\x80";

class ForeignObjects : public TokenStoreTest {
 protected:
  std::vector<Label> keys() { return store().keyLabels().value(); }
  std::vector<Label> requests() { return store().requestLabels().value(); }
};

class ForeignSoftHsmObjects : public ForeignObjects {
 protected:
  /** Runs pkcs11-tool on the token, logged in, and answers what it printed. */
  std::string pkcs11Tool(const std::string& arguments) const {
    const cms::CommandResult result =
        cms::run(std::string("pkcs11-tool --module ") + kSoftHsmModule + " --token-label '" +
                 label() + "' --login --pin " + kPin + " " + arguments);
    EXPECT_EQ(result.exitCode, 0) << arguments << "\n" << result.output;
    return result.output;
  }

  std::string p11Tool(const std::string& arguments) const {
    const cms::CommandResult result =
        cms::run(std::string("GNUTLS_PIN=") + kPin + " p11tool --batch --provider " +
                 kSoftHsmModule + " " + arguments + " \"$(p11tool --batch --provider " +
                 kSoftHsmModule + " --list-token-urls | grep SoftHSM | head -1)\"");
    EXPECT_EQ(result.exitCode, 0) << arguments << "\n" << result.output;
    return result.output;
  }

  /** The CKA_ID that keys get here, as the tool takes it. */
  static std::string idOf(const sys::Bytes& publicKey) {
    const sys::Bytes id = keyIdentifier(publicKey).value();
    std::string hexadecimal;
    for (const std::uint8_t byte : id) {
      char digits[3];
      std::snprintf(&digits[0], sizeof digits, "%02x", byte);
      hexadecimal += &digits[0];
    }
    return hexadecimal;
  }

  /** Gives the pending key a certificate, and tells whether they work together. */
  bool becomesAnEntry(const std::string& pendingLabel, const std::string& entryLabel) {
    const sys::Result<RequestEntry> pending = store().findRequest(Label::ofName(pendingLabel));
    EXPECT_EQ(pending.code(), ZELKM_OK);
    if (!pending) return false;
    EXPECT_EQ(cms::verifyRequest(pending.value().request).code(), ZELKM_OK);
    const sys::Bytes publicKey = cms::readRequest(pending.value().request).value().publicKeyInfo;
    const KeyEntry entry{.label = Label::ofName(entryLabel),
                         .certificate = certificateFor(publicKey, entryLabel),
                         .privateKey = pending.value().privateKey};
    EXPECT_EQ(store().insertKey(entry).code(), ZELKM_OK);
    const sys::Result<KeyEntry> found = store().findKey(Label::ofName(entryLabel));
    return found && signs(found.value().privateKey, publicKey);
  }
};

TEST_P(ForeignSoftHsmObjects, toolsListAndUseWhatWasWrittenHere) {
  KeyEntry entry = newEntry(std::string("w\u00fcb ") + kSmileyModified);
  const sys::Bytes publicKey = publicKeyOf(entry.certificate);
  ASSERT_EQ(store().insertKey(entry).code(), ZELKM_OK);
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  GeneratedKey waiting = newKey();
  const RequestEntry request{.label = "waits"_label,
                             .request = requestFor(waiting, "www.example.com"),
                             .privateKey = std::move(waiting.privateKey)};
  ASSERT_EQ(store().insertRequest(request).code(), ZELKM_OK);

  const std::string name = std::string("w\u00fcb ") + kSmiley;
  EXPECT_THAT(pkcs11Tool("-O"),
              AllOf(HasSubstr(name), HasSubstr("label:      ca\n"), HasSubstr("'waits'"),
                    HasSubstr("PKCS #10 certification request"),
                    HasSubstr("sensitive, always sensitive, never extractable, local")));
  EXPECT_THAT(p11Tool("--login --list-all"),
              AllOf(HasSubstr("Label: " + name), HasSubstr("Label: ca"), HasSubstr("Label: waits"),
                    HasSubstr("Private key (EC/ECDSA-SECP256R1)")));

  pkcs11Tool("--read-object --type cert --label '" + name + "' -o " + path("cert.der"));
  EXPECT_EQ(folder_.read("cert.der"), entry.certificate);

  folder_.write("data", cms::text("to be signed, 32 bytes, no more!"));
  folder_.write("public.der", publicKey);
  pkcs11Tool("--sign -m ECDSA --signature-format openssl --id " + idOf(publicKey) + " -i " +
             path("data") + " -o " + path("signature"));
  const cms::CommandResult verified =
      cms::run("openssl pkeyutl -verify -pubin -inkey " + path("public.der") +
               " -keyform DER -in " + path("data") + " -sigfile " + path("signature"));
  EXPECT_EQ(verified.exitCode, 0) << verified.output;
}

TEST_P(ForeignSoftHsmObjects, keysOfOtherToolsWaitForTheirCertificates) {
  pkcs11Tool("--keypairgen --key-type rsa:2048 --label theirs --id 0102");
  pkcs11Tool("--keypairgen --key-type EC:secp384r1 --label curve --id 0103");
  EXPECT_THAT(requests(), ElementsAre("curve", "theirs"));
  EXPECT_THAT(keys(), IsEmpty());
  EXPECT_TRUE(becomesAnEntry("theirs", "theirs"));
  EXPECT_TRUE(becomesAnEntry("curve", "curve"));
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(pkcs11Tool("-O --type cert"), AllOf(HasSubstr("0102"), HasSubstr("0103")));
}

TEST_P(ForeignSoftHsmObjects, objectsWithoutLabelOrIdAreListedAndUsed) {
  pkcs11Tool("--keypairgen --key-type rsa:2048");
  pkcs11Tool("--keypairgen --key-type rsa:2048");
  folder_.write("ca.der", authority_.certificate());
  pkcs11Tool("--write-object " + path("ca.der") + " --type cert");
  EXPECT_THAT(requests(), ElementsAre("key", "key (2)"));
  EXPECT_THAT(keys(), ElementsAre("Test Authority"));
  EXPECT_TRUE(becomesAnEntry("key", "first"));
  EXPECT_TRUE(becomesAnEntry("key", "second"));
  EXPECT_THAT(keys(), ElementsAre("Test Authority", "first", "second"));
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(ForeignSoftHsmObjects, certificatesWithOneLabelAreNumberedAlikeEveryTime) {
  std::vector<sys::Bytes> certificates;
  for (const char* name : {"A", "B", "C"}) {
    const cms::TestAuthority other(name);
    folder_.write("twin.der", other.certificate());
    pkcs11Tool("--write-object " + path("twin.der") + " --type cert --label twin");
    certificates.push_back(other.certificate());
  }
  const std::vector<Label> names = {"twin"_label, "twin (2)"_label, "twin (3)"_label};
  std::vector<sys::Bytes> found;
  for (const Label& name : names) found.push_back(store().findKey(name).value().certificate);
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(certificates));
  for (int time = 0; time < 3; ++time) {
    reopen();
    EXPECT_EQ(keys(), names);
    for (std::size_t at = 0; at < names.size(); ++at) {
      EXPECT_EQ(store().findKey(names[at]).value().certificate, found[at]);
    }
  }
  ASSERT_EQ(store().removeKey("twin (2)"_label).code(), ZELKM_OK);
  EXPECT_THAT(keys(), ElementsAre("twin", "twin (2)"));
  EXPECT_EQ(store().findKey("twin"_label).value().certificate, found[0]);
  EXPECT_EQ(store().findKey("twin (2)"_label).value().certificate, found[2]);
}

TEST_P(ForeignSoftHsmObjects, keysWithOneIdAreNotTakenForEachOther) {
  pkcs11Tool("--keypairgen --key-type rsa:2048 --label one --id 01");
  pkcs11Tool("--keypairgen --key-type rsa:2048 --label two --id 01");
  EXPECT_TRUE(becomesAnEntry("one", "one"));
  EXPECT_TRUE(becomesAnEntry("two", "two"));
}

TEST_P(ForeignSoftHsmObjects, curveKeysWithOneIdAreLeftAlone) {
  // Their public keys lie beside them, but which is whose nobody can tell.
  pkcs11Tool("--keypairgen --key-type EC:prime256v1 --label one --id 01");
  pkcs11Tool("--keypairgen --key-type EC:prime256v1 --label two --id 01");
  pkcs11Tool("--read-object --type pubkey --label one -o " + path("one.der"));
  folder_.write("cert.der", certificateFor(folder_.read("one.der"), "One"));
  pkcs11Tool("--write-object " + path("cert.der") + " --type cert --label one --id 01");
  EXPECT_THAT(requests(), ElementsAre("one", "two"));
  EXPECT_THAT(keys(), ElementsAre("one"));
  EXPECT_FALSE(store().findKey("one"_label).value().privateKey.present());
}

TEST_P(ForeignSoftHsmObjects, aCertificateThatAnotherToolWritesFindsItsKey) {
  pkcs11Tool("--keypairgen --key-type EC:prime256v1 --label theirs --id 0105");
  const sys::Bytes request = store().findRequest("theirs"_label).value().request;
  const sys::Bytes publicKey = cms::readRequest(request).value().publicKeyInfo;
  folder_.write("cert.der", certificateFor(publicKey, "Theirs"));
  pkcs11Tool("--write-object " + path("cert.der") + " --type cert --label other --id 99");
  EXPECT_THAT(keys(), ElementsAre("other"));
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_TRUE(signs(store().findKey("other"_label).value().privateKey, publicKey));
}

TEST_P(ForeignSoftHsmObjects, keysThatAskForThePinAtEveryUseGetIt) {
  pkcs11Tool("--keypairgen --key-type rsa:2048 --label strict --id 0106 --always-auth");
  EXPECT_TRUE(becomesAnEntry("strict", "strict"));
}

TEST_P(ForeignSoftHsmObjects, labelsOfAllSortsAreTaken) {
  folder_.write("ca.der", authority_.certificate());
  pkcs11Tool("--write-object " + path("ca.der") + " --type cert --label '" + std::string(600, 'x') +
             "'");
  pkcs11Tool("--write-object " + path("ca.der") + " --type cert --label \"$(printf 'b\\377d')\"");
  pkcs11Tool("--write-object " + path("ca.der") + " --type cert --label '" + kSmiley + "'");
  EXPECT_THAT(keys(), UnorderedElementsAre("b?d", kSmileyModified, std::string(511, 'x')));
  for (const Label& name : keys()) {
    EXPECT_EQ(store().findKey(name).value().certificate, authority_.certificate());
    EXPECT_EQ(store().removeKey(name).code(), ZELKM_OK);
  }
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_P(ForeignSoftHsmObjects, otherDataIsNotTakenForARequest) {
  folder_.write("note", cms::text("a shopping list"));
  pkcs11Tool("--write-object " + path("note") + " --type data --label note");
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(keys(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ForeignSoftHsmObjects, testing::Values(Vendor::softHsm), vendorName);

class ForeignNssObjects : public ForeignObjects {
 protected:
  std::string certutil(const std::string& arguments) const {
    const cms::CommandResult result =
        cms::run("certutil -d sql:" + path("nss") + " -f " + path("pin.txt") + " " + arguments);
    EXPECT_EQ(result.exitCode, 0) << arguments << "\n" << result.output;
    return result.output;
  }
};

TEST_P(ForeignNssObjects, certutilListsWhatWasWrittenHere) {
  ASSERT_EQ(store().insertKey(newEntry("w\u00fcb")).code(), ZELKM_OK);
  ASSERT_EQ(store().insertKey(signerEntry("ca")).code(), ZELKM_OK);
  EXPECT_THAT(certutil("-L"), AllOf(HasSubstr("w\u00fcb"), HasSubstr("u,u,u"), HasSubstr("ca")));
  EXPECT_THAT(certutil("-K"), HasSubstr("w\u00fcb"));
}

TEST_P(ForeignNssObjects, whatCertutilMadeIsListedAndUsed) {
  folder_.write("noise", sys::Bytes(64, 7));
  for (const char* type : {"-k rsa -g 2048", "-k ec -q nistp256"}) {
    const std::string name = std::string("made ") + type;
    certutil("-S -x -n '" + name + "' -s 'CN=" + type + "' -t ,, -z " + path("noise") + " " + type);
    const sys::Result<KeyEntry> found = store().findKey(Label::ofName(name));
    ASSERT_EQ(found.code(), ZELKM_OK) << testing::PrintToString(keys());
    EXPECT_TRUE(signs(found.value().privateKey, publicKeyOf(found.value().certificate)));
  }
  EXPECT_THAT(requests(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ForeignNssObjects, testing::Values(Vendor::nss), vendorName);

}  // namespace

}  // namespace zel::km::token
