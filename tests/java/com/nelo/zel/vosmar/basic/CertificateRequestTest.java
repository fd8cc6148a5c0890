package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_DUPLICATE_KEY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.FILE_OPEN_TO_READ;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.REQKEY_FOR_CERT_NULL;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.math.BigInteger;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.time.Duration;
import java.util.HexFormat;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** From a request in one database, by a CA in another, to a certificate with its chain. */
class CertificateRequestTest {
  private static final DNItem SUBJECT = DNItem.parse("CN=www.example.com,O=Example,C=DE");

  @TempDir Path folder;
  private CMSKeyDatabase ca;
  private CMSKeyDatabase db;
  private Path requestFile;
  private Path certificateFile;
  private Path caFile;

  @BeforeEach
  void createDatabases() throws CMSKeyDatabaseException {
    requestFile = folder.resolve("server.csr");
    certificateFile = folder.resolve("server.pem");
    caFile = folder.resolve("ca.pem");
    ca =
        CMSKeyDatabase.create(
            folder.resolve("ca.kdb"), TestDatabase.password(), Duration.ZERO);
    ca.certificates()
        .createSelfSigned(TestDatabase.certificate("ca").writtenTo(caFile, Encoding.BASE64));
    db = TestDatabase.create(folder);
  }

  @AfterEach
  void closeDatabases() {
    ca.close();
    db.close();
  }

  @Test
  void aRequestWaitsUnderItsLabel() throws Exception {
    request();

    KeyItem item = db.request("server");
    assertEquals(List.of("server"), db.labels().requests());
    assertEquals(List.of(), db.labels().keys());
    assertTrue(item.hasPrivateKey());
    assertNull(item.certificate());
    assertEquals(SUBJECT.toString(), item.request().subject().toString());
    assertEquals(256, item.request().keySize());
    assertEquals(KeyAlgorithm.EC, item.algorithm());
    assertTrue(Files.readString(requestFile).startsWith("-----BEGIN "));
  }

  @Test
  void aRequestIsWrittenOnceMore() throws Exception {
    Path again = folder.resolve("again.csr");
    Path signedAnew = folder.resolve("anew.csr");
    request();

    db.certificates().extractRequest("server", again);
    db.certificates().extractRequest("server", SignatureAlgorithm.SHA512, signedAnew);

    assertTrue(Files.readString(again).startsWith("-----BEGIN "));
    assertTrue(Files.size(signedAnew) > 0);
    assertFails(KEY_GET_BY_LABEL, () -> db.certificates().extractRequest("other", again));
  }

  @Test
  void aRequestMayChooseItsSignature() throws Exception {
    db.certificates().createRequest(
        new NewCertificateRequest("server", SUBJECT, KeyType.ec(256), requestFile)
            .signedWith(SignatureAlgorithm.SHA512));

    String ecdsaWithSha512 = "06082a8648ce3d040304";
    assertTrue(
        HexFormat.of().formatHex(db.request("server").request().der()).contains(ecdsaWithSha512));
  }

  @Test
  void aRequestIsTakenInWithItsKey() throws Exception {
    request();
    KeyItem item = db.request("server");
    byte[] request = item.request().der();

    ca.insertRequest("server's", request, item.privateKey().der());

    assertArrayEquals(request, ca.request("server's").request().der());
    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> ca.insertRequest("server's", request, item.privateKey().der()));
  }

  @Test
  void anIssuedCertificateBecomesAKeyWithItsChain() throws Exception {
    request();
    issue();
    db.certificates().add("ca", caFile, Encoding.BASE64);

    db.certificates().receive(certificateFile, Encoding.BASE64, true);

    KeyItem item = db.key("server");
    assertEquals(List.of(), db.labels().requests());
    assertTrue(item.hasPrivateKey());
    assertTrue(item.isDefault());
    assertEquals(2, item.certificates().size());
    X509Certificate certificate = item.certificate().x509();
    certificate.verify(item.certificates().get(1).x509().getPublicKey());
    assertEquals(SUBJECT.toString(), item.certificate().subject().toString());
    assertEquals(-1, certificate.getBasicConstraints());
  }

  @Test
  void aSerialNumberCanBeGiven() throws Exception {
    request();

    ca.certificates().issue(
        new CertificateIssue("ca", requestFile, certificateFile)
            .numbered("0x1234")
            .signedWith(SignatureAlgorithm.SHA512)
            .writtenAs(Encoding.DER));

    X509Certificate certificate =
        new CertificateItem(Files.readAllBytes(certificateFile)).x509();
    assertEquals(BigInteger.valueOf(0x1234), certificate.getSerialNumber());
    assertEquals("SHA512withECDSA", certificate.getSigAlgName());
  }

  @Test
  void aCertificateNobodyAskedForIsCode108() throws Exception {
    request();
    issue();
    db.deleteRequest("server");

    assertFails(
        REQKEY_FOR_CERT_NULL,
        () -> db.certificates().receive(certificateFile, Encoding.BASE64, false));
  }

  @Test
  void aMissingCertificateFileIsToldAsSuch() {
    assertFails(
        FILE_OPEN_TO_READ,
        () -> db.certificates().receive(folder.resolve("no"), Encoding.DER, false));
  }

  @Test
  void anUnknownIssuerIsCode117() throws Exception {
    request();

    assertFails(
        KEY_GET_BY_LABEL,
        () ->
            ca.certificates().issue(new CertificateIssue("other", requestFile, certificateFile)));
  }

  @Test
  void aCertificateIsValidOnlyWithATrustedIssuer() throws Exception {
    request();
    issue();
    byte[] certificate = der(certificateFile);
    assertFalse(db.certificates().isValid(certificate));

    db.certificates().add("ca", caFile, Encoding.BASE64);
    db.setTrusted("ca", true);
    assertTrue(db.certificates().isValid(certificate));

    db.setTrusted("ca", false);
    assertFalse(db.certificates().isValid(certificate));
  }

  @Test
  void aLaterCertificateOfTheSameKeyRenewsTheEarlier() throws Exception {
    request();
    issue();
    db.certificates().add("ca", caFile, Encoding.BASE64);
    db.certificates().receive(certificateFile, Encoding.BASE64, false);
    issue();
    byte[] later = der(certificateFile);

    assertTrue(db.certificates().isRenewal(later));
    db.certificates().renew(later);

    assertArrayEquals(later, db.key("server").certificate().der());
    assertTrue(db.key("server").hasPrivateKey());
    assertFalse(db.certificates().isRenewal(ca.key("ca").certificate().der()));
  }

  private void request() throws CMSKeyDatabaseException {
    db.certificates().createRequest(
        new NewCertificateRequest("server", SUBJECT, KeyType.ec(256), requestFile));
  }

  private void issue() throws CMSKeyDatabaseException {
    ca.certificates().issue(new CertificateIssue("ca", requestFile, certificateFile).validFor(90));
  }

  private static byte[] der(Path pem) throws Exception {
    try (var stream = Files.newInputStream(pem)) {
      return CertificateFactory.getInstance("X.509")
          .generateCertificate(stream)
          .getEncoded();
    }
  }
}
