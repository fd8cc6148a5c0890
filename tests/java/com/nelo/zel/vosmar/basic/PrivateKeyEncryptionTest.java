package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTO;
import static com.nelo.zel.vosmar.basic.ResultCode.PKCS12_PWD_CORRUPTION;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.security.KeyPairGenerator;
import javax.crypto.EncryptedPrivateKeyInfo;
import org.junit.jupiter.api.Test;

/** Private keys under a password, without any database. */
class PrivateKeyEncryptionTest {
  private static final char[] PASSWORD = "correct horse 1!".toCharArray();

  @Test
  void whatWasEncryptedIsDecryptedAgain() throws Exception {
    byte[] key = KeyPairGenerator.getInstance("EC").generateKeyPair().getPrivate().getEncoded();

    EncryptedPrivateKeyInfoItem encrypted = PrivateKeyEncryption.encrypt(key, PASSWORD);

    assertEquals("PBES2", new EncryptedPrivateKeyInfo(encrypted.der()).getAlgName());
    try (PrivateKeyInfoItem clear = PrivateKeyEncryption.decrypt(encrypted, PASSWORD)) {
      assertArrayEquals(key, clear.der());
    }
  }

  @Test
  void aWrongPasswordIsCode120() throws Exception {
    byte[] key = KeyPairGenerator.getInstance("EC").generateKeyPair().getPrivate().getEncoded();
    EncryptedPrivateKeyInfoItem encrypted = PrivateKeyEncryption.encrypt(key, PASSWORD);

    assertFails(
        PKCS12_PWD_CORRUPTION,
        () -> PrivateKeyEncryption.decrypt(encrypted, "wrong horse 1!".toCharArray()));
  }

  @Test
  void bytesThatAreNoKeyAreRefused() {
    assertFails(CRYPTO, () -> PrivateKeyEncryption.encrypt(new byte[] {1, 2, 3}, PASSWORD));
    assertFails(CRYPTO, () -> PrivateKeyEncryption.encrypt(new byte[0], PASSWORD));
  }
}
