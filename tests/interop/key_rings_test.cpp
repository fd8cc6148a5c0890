#include <gmock/gmock.h>

#include "tests/interop/workshop.h"

namespace zel::km {
namespace {

using testing::HasSubstr;

/**
 * Whole databases: ours has "leaf", which is the default key, its trusted issuer "root", another
 * trusted certificate without a key, and a request.
 */
class KeyRings : public InteropTest {
 protected:
  void writeOurs() {
    certifyWithOpenSsl();
    const sys::Bytes alone = folder().read("theirs.der");
    ASSERT_EQ(ZELKM_StoreCACert(handle(), alone.data(), static_cast<std::uint32_t>(alone.size()),
                                "alone"),
              ZELKM_OK);
    ASSERT_EQ(ZELKM_SetDefaultKeyByLabel(handle(), "leaf"), ZELKM_OK);
    ASSERT_EQ(ZELKM_CreateNewCertReq(handle(), "pending", 256, name("pending").get(),
                                     path("pending.csr").c_str(), 0, 0),
              ZELKM_OK);
    ASSERT_EQ(
        ZELKM_Kdb2Kyr(databasePath().c_str(), kPassword, path("ours.kyr").c_str(), kFilePassword),
        ZELKM_OK);
  }

  /** Makes a database of theirs.p12 and looks for the key and its chain. */
  void expectTheirs() {
    const std::string database = path("theirs.kdb");
    ASSERT_EQ(ZELKM_Kyr2Kdb(path("theirs.p12").c_str(), kFilePassword, database.c_str(), kPassword),
              ZELKM_OK);
    int handle = 0;
    ASSERT_EQ(ZELKM_OpenKeyDb(database.c_str(), kPassword, &handle), ZELKM_OK);
    ZELKMKeyItem* item = nullptr;
    EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle, "theirs", &item), ZELKM_OK);
    const KeyItem theirs(item);
    EXPECT_EQ(ZELKM_CloseKeyDb(handle), ZELKM_OK);
    ASSERT_NE(theirs, nullptr);
    EXPECT_EQ(theirs->hasPrivateKey, 1);
    ASSERT_NE(theirs->certList->next, nullptr);
    EXPECT_STREQ(theirs->certList->next->item->subjectDN->cn, "authority");
  }
};

TEST_F(KeyRings, IsReadByOpenSsl) {
  writeOurs();
  const std::string text =
      shown("openssl pkcs12 -nodes -info -in ours.kyr -passin 'pass:pfx secret'");
  EXPECT_THAT(text, HasSubstr("friendlyName: leaf"));
  EXPECT_THAT(text, HasSubstr("friendlyName: root"));
  EXPECT_THAT(text, HasSubstr("friendlyName: pending"));
  EXPECT_THAT(text, HasSubstr("Secret bag"));
  EXPECT_THAT(text, HasSubstr(".1: default"));
  EXPECT_THAT(text, HasSubstr(".2: trusted"));
}

TEST_F(KeyRings, OfOpenSslIsRead) {
  exportWithOpenSsl();
  expectTheirs();
}

TEST_F(KeyRings, IsReadByTheJdk) {
  writeOurs();
  const std::string text = shown("keytool -list -v -keystore ours.kyr -storepass 'pfx secret'");
  EXPECT_THAT(text, HasSubstr("Your keystore contains 4 entries"));
  EXPECT_THAT(text, HasSubstr("trustedCertEntry"));
  EXPECT_THAT(text, HasSubstr("Certificate chain length: 2"));
}

TEST_F(KeyRings, OfTheJdkIsRead) {
  exportWithKeytool();
  expectTheirs();
}

TEST_F(KeyRings, IsReadByNss) {
  writeOurs();
  makeNssDatabase();
  run("pk12util -i ours.kyr -d sql:nss -W 'pfx secret'");
  EXPECT_THAT(shown("certutil -K -d sql:nss"), HasSubstr("leaf"));
}

TEST_F(KeyRings, OfNssIsRead) {
  exportWithNss();
  expectTheirs();
}

TEST_F(KeyRings, IsReadByGnuTls) {
  writeOurs();
  const std::string text =
      shown("certtool --p12-info --inder --infile ours.kyr --password 'pfx secret'");
  EXPECT_THAT(text, HasSubstr("Friendly name: leaf"));
  EXPECT_THAT(text, HasSubstr("Friendly name: pending"));
}

TEST_F(KeyRings, OfGnuTlsIsRead) {
  exportWithGnuTls();
  expectTheirs();
}

}  // namespace
}  // namespace zel::km
