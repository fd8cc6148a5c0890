package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_DUPLICATE_KEY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.security.cert.X509Certificate;
import java.time.Duration;
import java.time.Instant;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** Making self-signed certificates, and reading back what was made. */
class SelfSignedCertificateTest {
  private static final DNItem SUBJECT =
      DNItem.parse("CN=host,OU=Lab,O=Example,postalCode=89073,L=Ulm,ST=BW,C=DE");

  @TempDir Path folder;
  private CMSKeyDatabase db;

  @BeforeEach
  void createDatabase() throws CMSKeyDatabaseException {
    db = TestDatabase.create(folder);
  }

  @AfterEach
  void closeDatabase() {
    db.close();
  }

  @ParameterizedTest
  @CsvSource({
    "rsa:2048, RSA, 2048, SHA256withRSA",
    "ec:256, EC, 256, SHA256withECDSA",
    "ec:384, EC, 384, SHA384withECDSA",
    "ed25519, ED25519, 255, Ed25519"
  })
  void isSignedByItsOwnKeyWhateverTheAlgorithm(
      String keyType, KeyAlgorithm algorithm, int bits, String signature) throws Exception {
    db.certificates().createSelfSigned(
        new SelfSignedCertificate("server", SUBJECT, KeyType.parse(keyType)).validFor(30));

    KeyItem item = db.key("server");
    X509Certificate certificate = item.certificate().x509();
    certificate.verify(certificate.getPublicKey());
    assertEquals(signature.toLowerCase(), certificate.getSigAlgName().toLowerCase());
    assertEquals(algorithm, item.algorithm());
    assertEquals(bits, item.keySize());
    assertTrue(item.hasPrivateKey());
    assertTrue(db.isPrivateKeyPresent("server"));
  }

  @Test
  void anItemSaysWhatTheCertificateSays() throws Exception {
    db.certificates().createSelfSigned(
        new SelfSignedCertificate("server", SUBJECT, KeyType.ec(256)));

    KeyItem item = db.key("server");
    assertEquals("server", item.label());
    assertEquals(3, item.certificate().version());
    assertEquals(256, item.keySize());
    Items.assertSaysWhatItsCertificateSays(item);
  }

  @Test
  void theSubjectComesBackWithAllSevenAttributes() throws Exception {
    db.certificates().createSelfSigned(
        new SelfSignedCertificate("server", SUBJECT, KeyType.ec(256)));

    DNItem subject = db.key("server").certificate().subject();
    assertEquals("host", subject.commonName());
    assertEquals("Lab", subject.organisationalUnit());
    assertEquals("Example", subject.organisation());
    assertEquals("Ulm", subject.locality());
    assertEquals("BW", subject.state());
    assertEquals("89073", subject.postalCode());
    assertEquals("DE", subject.country());
    assertEquals(SUBJECT.toString(), subject.toString());
    assertEquals(subject.toString(), db.key("server").certificate().issuer().toString());
    assertArrayEquals(
        db.key("server").certificate().x509().getSubjectX500Principal().getEncoded(),
        subject.der());
  }

  @Test
  void textBeyondAsciiSurvives() throws Exception {
    DNItem name = DNItem.parse("CN=M\u00fcnchen \u2192 \u6771\u4eac");
    db.certificates().createSelfSigned(
        new SelfSignedCertificate("Stra\u00dfe \u6771\u4eac", name, KeyType.ec(256)));

    assertEquals(List.of("Stra\u00dfe \u6771\u4eac"), db.labels().keys());
    KeyItem item = db.key("Stra\u00dfe \u6771\u4eac");
    assertEquals("M\u00fcnchen \u2192 \u6771\u4eac", item.certificate().subject().commonName());
  }

  @Test
  void isValidFromNowForTheDaysAsked() throws Exception {
    Instant before = Instant.now().minusSeconds(1);
    db.certificates().createSelfSigned(TestDatabase.certificate("server").validFor(90));

    CertificateItem certificate = db.key("server").certificate();
    assertFalse(certificate.notBefore().isAfter(Instant.now()));
    assertTrue(
        Duration.between(certificate.notBefore(), before).abs().compareTo(Duration.ofDays(1)) <= 0);
    assertTrue(
        Duration.between(before.plus(Duration.ofDays(90)), certificate.notAfter())
                .abs()
                .compareTo(Duration.ofMinutes(1))
            <= 0);
  }

  @Test
  void aDigestCanBeAskedFor() throws Exception {
    db.certificates().createSelfSigned(
        TestDatabase.certificate("server").signedWith(SignatureAlgorithm.SHA512));

    assertEquals("SHA512withECDSA", db.key("server").certificate().x509().getSigAlgName());
  }

  @Test
  void isFitToBeACaUnlessExtensionsAreGiven() throws Exception {
    byte[] keyUsageDigitalSignature = {
      0x30, 0x10, 0x30, 0x0e, 0x06, 0x03, 0x55, 0x1d, 0x0f, 0x01, 0x01, (byte) 0xff, 0x04, 0x04,
      0x03, 0x02, 0x07, (byte) 0x80
    };
    db.certificates().createSelfSigned(TestDatabase.certificate("ca"));
    db.certificates().createSelfSigned(
        TestDatabase.certificate("leaf").withExtensions(keyUsageDigitalSignature));

    X509Certificate leaf = db.key("leaf").certificate().x509();
    assertTrue(db.key("ca").certificate().x509().getBasicConstraints() >= 0);
    assertEquals(-1, leaf.getBasicConstraints());
    assertTrue(leaf.getKeyUsage()[0]);
  }

  @Test
  void becomesTheDefaultKeyWhenAsked() throws Exception {
    db.certificates().createSelfSigned(TestDatabase.certificate("first"));
    db.certificates().createSelfSigned(TestDatabase.certificate("second").asDefaultKey());

    assertEquals("second", db.defaultKey().orElseThrow().label());
    assertTrue(db.key("second").isDefault());
    assertFalse(db.key("first").isDefault());
  }

  @Test
  void isWrittenToAFileWhenAsked() throws Exception {
    Path target = folder.resolve("server.der");
    db.certificates()
        .createSelfSigned(TestDatabase.certificate("server").writtenTo(target, Encoding.DER));

    assertArrayEquals(db.key("server").certificate().der(), Files.readAllBytes(target));
  }

  @Test
  void aTakenLabelIsRefusedAndKeepsItsKey() throws Exception {
    db.certificates().createSelfSigned(TestDatabase.certificate("server"));
    byte[] certificate = db.key("server").certificate().der();

    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> db.certificates().createSelfSigned(TestDatabase.certificate("server")));
    assertArrayEquals(certificate, db.key("server").certificate().der());
  }

  @Test
  void anUnknownLabelIsCode117() throws Exception {
    db.certificates().createSelfSigned(TestDatabase.certificate("server"));

    assertFails(KEY_GET_BY_LABEL, () -> db.key("other"));
    assertFails(KEY_GET_BY_LABEL, () -> db.request("server"));
    assertFails(KEY_GET_BY_LABEL, () -> db.isPrivateKeyPresent("other"));
  }
}
