package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.security.GeneralSecurityException;
import java.security.KeyFactory;
import java.security.PrivateKey;
import java.security.PublicKey;
import java.security.Signature;
import java.security.spec.PKCS8EncodedKeySpec;
import javax.crypto.Cipher;
import javax.crypto.EncryptedPrivateKeyInfo;
import javax.crypto.SecretKeyFactory;
import javax.crypto.spec.PBEKeySpec;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** A private key read from a database is one that the Java platform can decrypt and use. */
class PrivateKeyTest {
  @TempDir Path folder;

  @ParameterizedTest
  @CsvSource({
    "rsa:2048, RSA, SHA256withRSA",
    "ec:256, EC, SHA256withECDSA",
    "ed25519, Ed25519, Ed25519"
  })
  void signsForTheCertificateOfItsEntry(String keyType, String keyAlgorithm, String algorithm)
      throws Exception {
    try (CMSKeyDatabase db = TestDatabase.create(folder)) {
      db.certificates().createSelfSigned(
          new SelfSignedCertificate("key", DNItem.parse("CN=key"), KeyType.parse(keyType)));
      KeyItem item = db.key("key");
      byte[] der = item.privateKey().der();

      PrivateKey privateKey = decrypt(der, TestDatabase.password(), keyAlgorithm);

      assertTrue(fits(privateKey, item.certificate().x509().getPublicKey(), algorithm));
      assertThrows(
          GeneralSecurityException.class,
          () -> decrypt(der, "wrong horse 1!".toCharArray(), keyAlgorithm));
    }
  }

  private static PrivateKey decrypt(byte[] der, char[] password, String keyAlgorithm)
      throws Exception {
    EncryptedPrivateKeyInfo info = new EncryptedPrivateKeyInfo(der);
    // The name that PBES2 has in the Java platform is that of its parameters.
    String algorithm = info.getAlgParameters().toString();
    Cipher cipher = Cipher.getInstance(algorithm);
    cipher.init(
        Cipher.DECRYPT_MODE,
        SecretKeyFactory.getInstance(algorithm).generateSecret(new PBEKeySpec(password)),
        info.getAlgParameters());
    PKCS8EncodedKeySpec clear = info.getKeySpec(cipher);
    return KeyFactory.getInstance(keyAlgorithm).generatePrivate(clear);
  }

  private static boolean fits(PrivateKey privateKey, PublicKey publicKey, String algorithm)
      throws GeneralSecurityException {
    byte[] message = "message".getBytes();
    Signature signature = Signature.getInstance(algorithm);
    signature.initSign(privateKey);
    signature.update(message);
    byte[] signed = signature.sign();
    signature.initVerify(publicKey);
    signature.update(message);
    return signature.verify(signed);
  }
}
