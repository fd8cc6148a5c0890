#include <gmock/gmock.h>

#include "tests/interop/workshop.h"

namespace zel::km {
namespace {

using testing::HasSubstr;

/** Private keys under a password (EncryptedPrivateKeyInfo, RFC 5958), in DER. */
class PrivateKeys : public InteropTest {
 protected:
  /** Encrypts a key of OpenSSL's making, clear.p8, into ours.p8. */
  void encryptOurs() {
    run("openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 | "
        "openssl pkcs8 -topk8 -nocrypt -outform DER -out clear.p8");
    const sys::Bytes clear = folder().read("clear.p8");
    ZELKMEPKIItem* epki = nullptr;
    ASSERT_EQ(ZELKM_GetEPKIItemFromPrivateKey(
                  clear.data(), static_cast<std::uint32_t>(clear.size()), kFilePassword, &epki),
              ZELKM_OK);
    folder().write("ours.p8", viewOf(epki->berData, epki->berDataLength));
    ZELKM_FreeEPKIItem(epki);
  }

  /** Decrypts theirs.p8 and compares it with the key in theirs.key. */
  void expectTheirs() {
    const sys::Bytes encrypted = folder().read("theirs.p8");
    ZELKMEPKIItem epki{};
    epki.berData = const_cast<unsigned char*>(encrypted.data());
    epki.berDataLength = static_cast<std::uint32_t>(encrypted.size());
    ZELKMPrivKeyInfoItem* info = nullptr;
    ASSERT_EQ(ZELKM_GetPrivKeyInfoItemFromEPKIItem(&epki, kFilePassword, &info), ZELKM_OK);
    folder().write("decrypted.p8", viewOf(info->berData, info->berDataLength));
    ZELKM_FreePrivKeyInfoItem(info);
    EXPECT_EQ(shown("openssl pkey -inform DER -in decrypted.p8 -pubout"),
              shown("openssl pkey -in theirs.key -pubout"));
  }

  std::string java(const std::string& arguments) {
    return shown("java -Xshare:auto -XX:TieredStopAtLevel=1 " ENCRYPTED_KEY_JAVA " " + arguments);
  }
};

TEST_F(PrivateKeys, IsReadByOpenSsl) {
  encryptOurs();
  run("openssl pkcs8 -inform DER -in ours.p8 -passin 'pass:pfx secret' -outform DER "
      "-out decrypted.p8");
  EXPECT_EQ(shown("openssl pkey -inform DER -in decrypted.p8"),
            shown("openssl pkey -inform DER -in clear.p8"));
}

TEST_F(PrivateKeys, OfOpenSslIsRead) {
  certifyWithOpenSsl();
  run("openssl pkcs8 -topk8 -in theirs.key -passout 'pass:pfx secret' -outform DER "
      "-out theirs.p8");
  expectTheirs();
}

TEST_F(PrivateKeys, IsReadByTheJdk) {
  encryptOurs();
  java("decrypt ours.p8 decrypted.p8 'pfx secret'");
  EXPECT_EQ(folder().read("decrypted.p8"), folder().read("clear.p8"));
}

TEST_F(PrivateKeys, OfTheJdkIsRead) {
  certifyWithOpenSsl();
  run("openssl pkcs8 -topk8 -nocrypt -in theirs.key -outform DER -out clear.p8");
  java("encrypt clear.p8 theirs.p8 'pfx secret'");
  expectTheirs();
}

TEST_F(PrivateKeys, IsReadByGnuTls) {
  encryptOurs();
  EXPECT_THAT(shown("certtool --key-info --pkcs8 --inder --infile ours.p8 --password 'pfx secret'"),
              HasSubstr("curve:	SECP256R1"));
}

TEST_F(PrivateKeys, OfGnuTlsIsRead) {
  certifyWithGnuTls();
  run("certtool --to-p8 --load-privkey theirs.key --password 'pfx secret' --pkcs-cipher aes-256 "
      "--outder --outfile theirs.p8");
  expectTheirs();
}

}  // namespace
}  // namespace zel::km
