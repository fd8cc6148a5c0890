package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_DUPLICATE_KEY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.FILE_OPEN_TO_READ;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.VALIDATION_KEY_PAIR;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Certificates that are made on a token, brought to it, and taken from it. */
class TokenCertificateTest {
  @TempDir Path folder;
  private CryptographicToken token;
  private CMSKeyDatabase db;

  @BeforeEach
  void createTokenAndDatabase() throws Exception {
    token = TestToken.create(folder);
    db = TestDatabase.create(folder);
    db.certificates().createSelfSigned(TestDatabase.certificate("alpha"));
  }

  @AfterEach
  void close() {
    token.close();
    db.close();
  }

  @Test
  void aSelfSignedCertificateIsMadeWithItsKey() throws Exception {
    token.certificates().createSelfSigned(
        new SelfSignedCertificate("self", DNItem.parse("CN=self"), KeyType.rsa(2048))
            .validFor(30)
            .signedWith(SignatureAlgorithm.SHA512));

    assertLabels(List.of("self"), List.of(), List.of());
    KeyItem item = token.key("self");
    Items.assertSaysWhatItsCertificateSays(item);
    assertEquals(KeyAlgorithm.RSA, item.algorithm());
    assertEquals(2048, item.keySize());
    assertEquals(3, item.certificate().version());
    assertEquals("sha512WithRSAEncryption", item.certificate().signatureAlgorithmName());
    assertTrue(item.hasPrivateKey());
    assertNull(item.privateKey());
    item.certificate().x509().verify(item.certificate().x509().getPublicKey());
    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> token.certificates().createSelfSigned(TestDatabase.certificate("self")));
  }

  @Test
  void aCertificateIsBroughtInWithItsKey() throws Exception {
    try (PrivateKeyInfoItem key = privateKey(db.key("alpha"))) {
      token.insertKey(
          "personal", db.key("alpha").certificate().der(), key.der(), false, false);
    }

    assertLabels(List.of("personal"), List.of(), List.of());
    KeyItem item = token.key("personal");
    assertArrayEquals(db.key("alpha").certificate().der(), item.certificate().der());
    Items.assertSaysWhatItsCertificateSays(item);
    assertTrue(item.hasPrivateKey());
    assertNull(item.privateKey());
  }

  @Test
  void aCertificateIsBroughtInWithoutItsKey() throws Exception {
    token.insertCertificate("alone", db.key("alpha").certificate().der(), false);

    assertLabels(List.of(), List.of("alone"), List.of());
    assertFalse(token.key("alone").hasPrivateKey());
  }

  @Test
  void aKeyOfAnotherCertificateIsCode62() throws Exception {
    db.certificates().createSelfSigned(TestDatabase.certificate("beta"));

    try (PrivateKeyInfoItem key = privateKey(db.key("beta"))) {
      byte[] certificate = db.key("alpha").certificate().der();
      assertFails(
          VALIDATION_KEY_PAIR,
          () -> token.insertKey("mixed", certificate, key.der(), false, false));
    }

    assertLabels(List.of(), List.of(), List.of());
  }

  @Test
  void aRequestIsBroughtInWithItsKey() throws Exception {
    Path file = folder.resolve("request.csr");
    db.certificates().createRequest(
        new NewCertificateRequest("theirs", DNItem.parse("CN=theirs"), KeyType.ec(256), file));
    KeyItem theirs = db.request("theirs");

    try (PrivateKeyInfoItem key = privateKey(theirs)) {
      token.insertRequest("ours", theirs.request().der(), key.der());
    }

    assertLabels(List.of(), List.of(), List.of("ours"));
    KeyItem item = token.request("ours");
    assertArrayEquals(theirs.request().der(), item.request().der());
    assertTrue(item.hasPrivateKey());
    assertNull(item.privateKey());
  }

  @Test
  void aSignersCertificateIsTakenFromAFileAndWrittenToOne() throws Exception {
    Path source = folder.resolve("ca.pem");
    Path base64 = folder.resolve("out.pem");
    Path der = folder.resolve("out.der");
    db.certificates().extract("alpha", source, Encoding.BASE64);

    token.certificates().add("ca", source, Encoding.BASE64);
    token.certificates().extract("ca", base64, Encoding.BASE64);
    token.certificates().extract("ca", der, Encoding.DER);

    assertLabels(List.of(), List.of("ca"), List.of());
    KeyItem item = token.key("ca");
    Items.assertSaysWhatItsCertificateSays(item);
    assertFalse(item.hasPrivateKey());
    assertTrue(item.isTrusted());
    assertEquals(Files.readString(source), Files.readString(base64));
    assertArrayEquals(db.key("alpha").certificate().der(), Files.readAllBytes(der));
    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> token.certificates().add("ca", source, Encoding.BASE64));
    assertFails(
        FILE_OPEN_TO_READ,
        () -> token.certificates().add("cb", folder.resolve("no"), Encoding.DER));
    assertFails(
        KEY_GET_BY_LABEL, () -> token.certificates().extract("cb", base64, Encoding.BASE64));
  }

  @Test
  void aDeletedEntryIsGone() throws Exception {
    token.insertCertificate("alone", db.key("alpha").certificate().der(), false);

    assertFails(KEY_GET_BY_LABEL, () -> token.deleteRequest("alone"));
    token.deleteKey("alone");

    assertLabels(List.of(), List.of(), List.of());
    assertFails(KEY_GET_BY_LABEL, () -> token.key("alone"));
    assertFails(KEY_GET_BY_LABEL, () -> token.deleteKey("alone"));
  }

  private void assertLabels(List<String> personal, List<String> signers, List<String> requests)
      throws CMSKeyDatabaseException {
    TestToken.assertLabels(token, personal, signers, requests);
  }

  private static PrivateKeyInfoItem privateKey(KeyItem item) throws CMSKeyDatabaseException {
    return PrivateKeyEncryption.decrypt(item.privateKey(), TestDatabase.password());
  }
}
