#include <gmock/gmock.h>

#include "engine/cms/epki.h"
#include "engine/cms/keys.h"
#include "tests/engine/certstore/test_stores.h"

namespace zel::km::certstore {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StoreEntries : public StoreTest {
 protected:
  static bool hasKey(int handle, const char* label) {
    unsigned char present = 9;
    EXPECT_EQ(ZELKM_IsPrivateKeyPresent(handle, label, &present), ZELKM_OK);
    return present == 1;
  }
  static int storeSigner(int handle, const char* label, const sys::Bytes& certificate) {
    return ZELKM_StoreCACert(handle, certificate.data(),
                             static_cast<std::uint32_t>(certificate.size()), label);
  }
  /** A certificate of the entry's key for a request that openssl makes. */
  sys::Bytes issue(int handle, const char* issuer) {
    EXPECT_EQ(cms::run("openssl req -new -nodes -newkey ec -pkeyopt ec_paramgen_curve:P-256 "
                       "-subj /CN=Leaf -keyout /dev/null -outform DER -out " +
                       home_.path("leaf.csr"))
                  .exitCode,
              0);
    const sys::Bytes request = home_.read("leaf.csr");
    EXPECT_EQ(ZELKM_IssueCert(handle, request.data(), static_cast<std::uint32_t>(request.size()),
                              issuer, 3, "", 10, home_.path("leaf.der").c_str(), 0, 0, 0),
              ZELKM_OK);
    return home_.read("leaf.der");
  }
  static int validate(int handle, const sys::Bytes& certificate) {
    unsigned char isValid = 0;
    const int code = ZELKM_ValidateCertChain(
        handle, certificate.data(), static_cast<std::uint32_t>(certificate.size()), &isValid);
    EXPECT_EQ(isValid == 1, code == ZELKM_OK);
    return code;
  }

  cms::TestAuthority owner_{"Owner"};
  int my_ = open(kMy);
};

TEST_F(StoreEntries, WithTheirKeysAreGivenBackAsTheyWere) {
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  EXPECT_THAT(labels(my_), ElementsAre("web"));
  EXPECT_TRUE(hasKey(my_, "web"));
  const KeyItem item = this->item(my_, "web");
  EXPECT_STREQ(item->label, "web");
  EXPECT_EQ(item->shortValue1, 2);
  EXPECT_EQ(item->keySize, 256);
  EXPECT_EQ(item->hasPrivateKey, 1);
  EXPECT_EQ(certificateOf(*item), owner_.certificate());
  EXPECT_EQ(privateKeyOf(*item), privateKeyOf(owner_));
}

TEST_F(StoreEntries, WithoutKeysAreCertificatesAlone) {
  ASSERT_EQ(insert(my_, "ca", owner_, false), ZELKM_OK);
  EXPECT_FALSE(hasKey(my_, "ca"));
  const KeyItem item = this->item(my_, "ca");
  EXPECT_EQ(item->hasPrivateKey, 0);
  EXPECT_EQ(item->epki, nullptr);
}

TEST_F(StoreEntries, TakeKeysOfAllKinds) {
  for (const int size : {2048, 384, 25519}) {
    const cms::TestAuthority owner(std::to_string(size), size);
    const std::string label = "key " + std::to_string(size);
    ASSERT_EQ(insert(my_, label.c_str(), owner), ZELKM_OK);
    EXPECT_EQ(privateKeyOf(*item(my_, label.c_str())), privateKeyOf(owner)) << size;
  }
}

TEST_F(StoreEntries, TakeKeysUnderTheEmptyPasswordOnly) {
  const auto insertUnder = [&](std::string_view password) {
    const sys::Bytes key =
        cms::encryptPrivateKey(privateKeyOf(owner_), cms::text(password), 2000).value();
    const sys::Bytes& certificate = owner_.certificate();
    return ZELKM_InsertKey(my_, "web", static_cast<std::uint32_t>(certificate.size()),
                           certificate.data(), static_cast<std::uint32_t>(key.size()), key.data(),
                           0, 0);
  };
  EXPECT_EQ(insertUnder("secret"), ZELKM_ERR_PKCS12_PWD_CORRUPTION);
  ASSERT_EQ(insertUnder(""), ZELKM_OK);
  EXPECT_EQ(privateKeyOf(*item(my_, "web")), privateKeyOf(owner_));
}

TEST_F(StoreEntries, RefuseALabelInUse) {
  const cms::TestAuthority other("Other");
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  EXPECT_EQ(insert(my_, "web", other), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_THAT(labels(my_), ElementsAre("web"));
}

TEST_F(StoreEntries, RefuseACertificateThatIsThere) {
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  EXPECT_EQ(insert(my_, "again", owner_, false), ZELKM_ERR_DATABASE_DUPLICATE_KEY);
  EXPECT_THAT(labels(my_), ElementsAre("web"));
}

TEST_F(StoreEntries, RefuseAKeyOfAnotherCertificate) {
  const sys::Bytes& certificate = owner_.certificate();
  const sys::SecretBytes key = privateKeyOf(cms::TestAuthority("Other"));
  EXPECT_EQ(
      ZELKM_InsertKey(my_, "web", static_cast<std::uint32_t>(certificate.size()),
                      certificate.data(), static_cast<std::uint32_t>(key.size()), key.data(), 0, 0),
      ZELKM_ERR_VALIDATION_KEY_PAIR);
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(StoreEntries, GoByTheirLabelAlone) {
  const cms::TestAuthority other("Other");
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  ASSERT_EQ(insert(my_, "mail", other), ZELKM_OK);
  ASSERT_EQ(ZELKM_DeleteKey(my_, "web"), ZELKM_OK);
  EXPECT_THAT(labels(my_), ElementsAre("mail"));
  EXPECT_EQ(codeOfItem(my_, "web"), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_DeleteKey(my_, "web"), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(StoreEntries, AreFoundByTheirPublicKey) {
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  const sys::Bytes key = cms::publicKeyInfo(owner_.key()).value();
  ZELKMKeyItemList* list = nullptr;
  ASSERT_EQ(
      ZELKM_GetKeyItemsByPublicKey(my_, static_cast<std::uint32_t>(key.size()), key.data(), &list),
      ZELKM_OK);
  const KeyItemList owned(list);
  EXPECT_STREQ(list->item->label, "web");
  EXPECT_EQ(list->next, nullptr);
}

TEST_F(StoreEntries, CarryLabelsOfAllScripts) {
  const char* label =
      "Schl\xC3\xBCssel \xED\xA0\xBD\xED\xB4\x91";  // modified UTF-8, as Java has it
  ASSERT_EQ(insert(my_, label, owner_), ZELKM_OK);
  EXPECT_THAT(labels(open(kMy)), ElementsAre(label));
}

TEST_F(StoreEntries, RefuseALabelThatWouldBeReadAsAnother) {
  EXPECT_EQ(insert(my_,
                   "we\xC0\x80"
                   "b",
                   owner_),
            ZELKM_ERR_PARAMETER);
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(StoreEntries, AreMadeSelfSigned) {
  ASSERT_EQ(ZELKM_CreateSelfSignedCertSigExt(my_, "self", 0, 3, 2048, name("Self").get(), 30, 1,
                                             nullptr, 0, nullptr, 0),
            ZELKM_OK);
  const KeyItem item = this->item(my_, "self");
  EXPECT_EQ(item->keySize, 2048);
  EXPECT_FALSE(privateKeyOf(*item).empty());
  EXPECT_EQ(ZELKM_CreateSelfSignedCertSigExt(my_, "self", 0, 3, 256, name("Self").get(), 30, 1,
                                             nullptr, 0, nullptr, 0),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
}

TEST_F(StoreEntries, OfSignersStayInTheStoreThatWasNamed) {
  ASSERT_EQ(storeSigner(my_, "signer", owner_.certificate()), ZELKM_OK);
  EXPECT_THAT(labels(my_), ElementsAre("signer"));
  EXPECT_THAT(labels(open(kAuthorities)), IsEmpty());
}

TEST_F(StoreEntries, AreTrustedForLyingInRoot) {
  const int root = open(kRoot);
  ASSERT_EQ(storeSigner(root, "ca", owner_.certificate()), ZELKM_OK);
  ASSERT_EQ(storeSigner(my_, "ca", owner_.certificate()), ZELKM_OK);
  EXPECT_EQ(item(root, "ca")->booleanValue1, 1);
  EXPECT_EQ(item(my_, "ca")->booleanValue1, 0);
  EXPECT_EQ(ZELKM_SetTrustStatus(root, "ca", 1), ZELKM_OK);
  EXPECT_EQ(ZELKM_SetTrustStatus(my_, "ca", 0), ZELKM_OK);
  EXPECT_EQ(ZELKM_SetTrustStatus(root, "ca", 0), ZELKM_ERR_UNSUPPORTED_OPTION);
  EXPECT_EQ(ZELKM_SetTrustStatus(my_, "ca", 1), ZELKM_ERR_UNSUPPORTED_OPTION);
}

TEST_F(StoreEntries, FindTheirIssuersInTheStoresOfAuthorities) {
  const cms::TestAuthority between("Between");
  const sys::Bytes leaf = between.issueFor(cms::TestAuthority("Leaf"));
  ASSERT_EQ(storeSigner(my_, "leaf", leaf), ZELKM_OK);
  ASSERT_EQ(storeSigner(open(kAuthorities), "between", owner_.issueFor(between)), ZELKM_OK);
  ASSERT_EQ(storeSigner(open(kRoot), "root", owner_.certificate()), ZELKM_OK);

  const KeyItem item = this->item(my_, "leaf");
  const ZELKMCertItemList* second = item->certList->next;
  ASSERT_NE(second, nullptr);
  EXPECT_STREQ(second->item->label, "between");
  ASSERT_NE(second->next, nullptr);
  EXPECT_STREQ(second->next->item->label, "root");
  EXPECT_THAT(labels(my_), ElementsAre("leaf"));
}

TEST_F(StoreEntries, AreValidUnderAnAuthorityInRootOnly) {
  // The engine makes these, because strict validation wants every identifier in place.
  const int root = open(kRoot);
  ASSERT_EQ(ZELKM_CreateSelfSignedCertSigExt(root, "root", 0, 3, 256, name("Root").get(), 30, 1,
                                             nullptr, 0, home_.path("root.der").c_str(), 0),
            ZELKM_OK);
  const sys::Bytes leaf = issue(root, "root");
  EXPECT_EQ(validate(my_, leaf), ZELKM_OK);

  ASSERT_EQ(ZELKM_DeleteKey(root, "root"), ZELKM_OK);
  EXPECT_EQ(validate(my_, leaf), ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND);
  ASSERT_EQ(storeSigner(open(kAuthorities), "root", home_.read("root.der")), ZELKM_OK);
  EXPECT_EQ(validate(my_, leaf), ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED);
}

TEST_F(StoreEntries, AreExported) {
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  ASSERT_EQ(ZELKM_ExportCert(my_, "web", home_.path("web.der").c_str(), 0), ZELKM_OK);
  EXPECT_EQ(home_.read("web.der"), owner_.certificate());
  const Labels wanted{"web"};
  ASSERT_EQ(ZELKM_ExportKeys(my_, 1, home_.path("web.p12").c_str(), "secret", wanted.head()),
            ZELKM_OK);
  ASSERT_EQ(ZELKM_DeleteKey(my_, "web"), ZELKM_OK);
  ASSERT_EQ(ZELKM_ImportKeysFromPFXFile(my_, home_.path("web.p12").c_str(), "secret"), ZELKM_OK);
  EXPECT_EQ(privateKeyOf(*item(my_, "web")), privateKeyOf(owner_));
}

TEST_F(StoreEntries, AreRenewedInTheirPlace) {
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  ASSERT_EQ(insert(my_, "mail", cms::TestAuthority("Other")), ZELKM_OK);
  const sys::Bytes renewed = owner_.issueFor(owner_, 20);
  ASSERT_EQ(ZELKM_RenewCert(my_, renewed.data(), static_cast<std::uint32_t>(renewed.size())),
            ZELKM_OK);
  EXPECT_THAT(labels(my_), ElementsAre("web", "mail"));
  EXPECT_EQ(certificateOf(*item(my_, "web")), renewed);
  EXPECT_EQ(privateKeyOf(*item(my_, "web")), privateKeyOf(owner_));
  EXPECT_EQ(files().size(), 2U);
}

TEST_F(StoreEntries, AreNoneWhereAStoreHasNoPlaceForThem) {
  ASSERT_EQ(insert(my_, "web", owner_), ZELKM_OK);
  ZELKMKeyItem* item = nullptr;
  ZELKMReqKeyItem* request = nullptr;
  EXPECT_EQ(ZELKM_GetDefaultKeyItem(my_, &item), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
  EXPECT_EQ(ZELKM_SetDefaultKeyByLabel(my_, "web"), ZELKM_ERR_UNSUPPORTED_OPTION);
  EXPECT_THAT(labelsOf(my_, ZELKM_GetReqKeyDbLabelList), IsEmpty());
  EXPECT_EQ(ZELKM_GetReqKeyItemByLabel(my_, "web", &request), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_DeleteRequestKeyPair(my_, "web"), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(ZELKM_CreateNewCertReq(my_, "new", 256, name("New").get(),
                                   home_.path("new.csr").c_str(), 0, 0),
            ZELKM_ERR_UNSUPPORTED_OPTION);
  const sys::Bytes& certificate = owner_.certificate();
  EXPECT_EQ(
      ZELKM_ReceiveCert(my_, certificate.data(), static_cast<std::uint32_t>(certificate.size()), 0),
      ZELKM_ERR_REQKEY_FOR_CERT_NULL);
}

}  // namespace
}  // namespace zel::km::certstore
