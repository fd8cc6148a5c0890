package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/** Private keys under a password (RFC&nbsp;5958, section 3), without any key database. */
public final class PrivateKeyEncryption {
  private PrivateKeyEncryption() {}

  /**
   * Encrypts a private key under a password.
   *
   * @param privateKey a DER PrivateKeyInfo, which the caller wipes
   * @param password the password
   * @return the encrypted key
   * @throws CMSKeyDatabaseException with {@link ResultCode#CRYPTO} when the bytes are no private
   *     key
   */
  public static EncryptedPrivateKeyInfoItem encrypt(byte[] privateKey, char[] password)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase none = new CMSKeyDatabase(Path.of("private key"), password)) {
      return none.answers.given(
          none.c_EncryptPrivateKey(privateKey.length, privateKey, none.password()),
          ResultCode.CRYPTO.code());
    }
  }

  /**
   * Decrypts a private key.
   *
   * @param privateKey the encrypted key
   * @param password its password
   * @return the key in the clear, which the caller closes
   * @throws CMSKeyDatabaseException with {@link ResultCode#PKCS12_PWD_CORRUPTION} when the password
   *     is wrong or the key damaged
   */
  public static PrivateKeyInfoItem decrypt(
      EncryptedPrivateKeyInfoItem privateKey, char[] password) throws CMSKeyDatabaseException {
    KMSystem.start();
    byte[] der = privateKey.der();
    try (CMSKeyDatabase none = new CMSKeyDatabase(Path.of("private key"), password)) {
      return none.answers.given(
          none.c_DecryptPrivateKey(der.length, der, none.password()),
          ResultCode.PKCS12_PWD_CORRUPTION.code());
    }
  }
}
