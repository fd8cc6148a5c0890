package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_INVALID_PASSWORD;
import static com.nelo.zel.vosmar.basic.ResultCode.KEYDB_NOT_EXIST;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.REQKEY_FOR_CERT_NULL;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.cli.Programs;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.Duration;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** From a request on a token, by a CA in a key database, to a certificate and its renewal. */
class TokenRequestTest {
  private static final String LABEL = "w\u00fcb \u2192";
  private static final DNItem SUBJECT = DNItem.parse("CN=www.example.com,O=Example,C=DE");

  @TempDir Path folder;
  private CryptographicToken token;
  private CMSKeyDatabase ca;
  private Path requestFile;
  private Path certificateFile;

  @BeforeEach
  void createTokenAndCa() throws Exception {
    requestFile = folder.resolve("web.csr");
    certificateFile = folder.resolve("web.der");
    token = TestToken.create(folder);
    ca = TestDatabase.create(folder);
    ca.certificates().createSelfSigned(TestDatabase.certificate("ca"));
    token.certificates().createRequest(
        new NewCertificateRequest(LABEL, SUBJECT, KeyType.ec(384), requestFile)
            .signedWith(SignatureAlgorithm.SHA512));
  }

  @AfterEach
  void close() {
    token.close();
    ca.close();
  }

  @Test
  void aRequestWaitsUnderItsLabel() throws Exception {
    TestToken.assertLabels(token, List.of(), List.of(), List.of(LABEL));
    KeyItem item = token.request(LABEL);
    assertEquals(LABEL, item.label());
    assertEquals(KeyAlgorithm.EC, item.algorithm());
    assertEquals(384, item.keySize());
    assertTrue(item.hasPrivateKey());
    assertNull(item.privateKey());
    assertNull(item.certificate());
    CertificateRequestItem request = item.request();
    assertEquals(SUBJECT.toString(), request.subject().toString());
    assertEquals(384, request.keySize());
    assertEquals("ecdsa-with-SHA512", request.signatureAlgorithmName());
    assertEquals(item.subjectPublicKeyInfo(), request.subjectPublicKeyInfo());
    assertArrayEquals(der(requestFile), request.der());
    assertFails(KEY_GET_BY_LABEL, () -> token.request("other"));
    assertFails(KEY_GET_BY_LABEL, () -> token.key(LABEL));
  }

  @Test
  void aRequestIsWrittenOnceMoreAndSignedAnew() throws Exception {
    Path again = folder.resolve("again.csr");
    Path anew = folder.resolve("anew.csr");

    token.certificates().extractRequest(LABEL, again);
    token.certificates().extractRequest(LABEL, SignatureAlgorithm.SHA256, anew);

    assertEquals(Files.readString(requestFile), Files.readString(again));
    String shown = Programs.run("openssl", "req", "-in", anew, "-noout", "-verify", "-text");
    assertTrue(shown.contains("ecdsa-with-SHA256"), shown);
    assertTrue(shown.contains("CN = www.example.com"), shown);
    assertFails(KEY_GET_BY_LABEL, () -> token.certificates().extractRequest("other", again));
  }

  @Test
  void aReceivedCertificateTakesThePlaceOfItsRequest() throws Exception {
    issue();

    token.certificates().receive(certificateFile, Encoding.DER);

    TestToken.assertLabels(token, List.of(LABEL), List.of(), List.of());
    KeyItem item = token.key(LABEL);
    Items.assertSaysWhatItsCertificateSays(item);
    assertEquals(LABEL, item.label());
    assertEquals(KeyAlgorithm.EC, item.algorithm());
    assertEquals(384, item.keySize());
    assertTrue(item.hasPrivateKey());
    assertNull(item.privateKey());
    assertFalse(item.isDefault());
    assertArrayEquals(Files.readAllBytes(certificateFile), item.certificate().der());
    assertEquals(SUBJECT.toString(), item.certificate().subject().toString());
    assertTrue(ca.certificates().isValid(item.certificate().der()));
  }

  @Test
  void anIssuerOnTheTokenIsPartOfTheChain() throws Exception {
    Path issuer = folder.resolve("ca.pem");
    ca.certificates().extract("ca", issuer, Encoding.BASE64);
    token.certificates().add("authority", issuer, Encoding.BASE64);
    issue();

    token.certificates().receive(certificateFile, Encoding.DER);

    TestToken.assertLabels(token, List.of(LABEL), List.of("authority"), List.of());
    List<CertificateItem> chain = token.key(LABEL).certificates();
    assertEquals(2, chain.size());
    assertArrayEquals(Files.readAllBytes(certificateFile), chain.get(0).der());
    assertArrayEquals(ca.key("ca").certificate().der(), chain.get(1).der());
    chain.get(0).x509().verify(chain.get(1).x509().getPublicKey());
  }

  @Test
  void theSignersOfABundleGoIntoTheSecondaryKeyDatabase() throws Exception {
    Path file = folder.resolve("secondary.kdb");
    try (CMSKeyDatabase secondary =
        CMSKeyDatabase.create(file, TestDatabase.password(), Duration.ZERO)) {
      issue();
      token.useSecondaryKeyDatabase(file, TestDatabase.password());

      token.certificates().receive(bundle(), Encoding.DER);

      TestToken.assertLabels(token, List.of(LABEL), List.of(), List.of());
      assertEquals(List.of("ca"), secondary.labels().keys());
      assertArrayEquals(
          ca.key("ca").certificate().der(), secondary.key("ca").certificate().der());
    }
  }

  @Test
  void aSecondaryKeyDatabaseThatDoesNotOpenLeavesTheTokenAsItWas() throws Exception {
    issue();

    token.useSecondaryKeyDatabase(TestDatabase.file(folder), "wrong horse 1!".toCharArray());
    assertFails(
        DATABASE_INVALID_PASSWORD,
        () -> token.certificates().receive(certificateFile, Encoding.DER));
    token.useSecondaryKeyDatabase(folder.resolve("no.kdb"), TestDatabase.password());
    assertFails(KEYDB_NOT_EXIST, () -> token.certificates().receive(certificateFile, Encoding.DER));

    TestToken.assertLabels(token, List.of(), List.of(), List.of(LABEL));
  }

  @Test
  void aCertificateNobodyAskedForIsCode108() throws Exception {
    Files.write(certificateFile, ca.key("ca").certificate().der());

    assertFails(
        REQKEY_FOR_CERT_NULL, () -> token.certificates().receive(certificateFile, Encoding.DER));
  }

  @Test
  void aLaterCertificateOfTheSameKeyRenewsTheEarlier() throws Exception {
    issue();
    token.certificates().receive(certificateFile, Encoding.DER);
    byte[] earlier = Files.readAllBytes(certificateFile);
    issue();
    byte[] later = Files.readAllBytes(certificateFile);

    assertFalse(token.certificates().isRenewal(earlier));
    assertTrue(token.certificates().isRenewal(later));
    token.certificates().renew(later);

    assertArrayEquals(later, token.key(LABEL).certificate().der());
    assertTrue(token.key(LABEL).hasPrivateKey());
    assertFalse(token.certificates().isRenewal(later));
    assertFalse(token.certificates().isRenewal(ca.key("ca").certificate().der()));
  }

  @Test
  void aDeletedRequestIsGone() throws Exception {
    assertFails(KEY_GET_BY_LABEL, () -> token.deleteKey(LABEL));
    token.deleteRequest(LABEL);

    TestToken.assertLabels(token, List.of(), List.of(), List.of());
    assertFails(KEY_GET_BY_LABEL, () -> token.deleteRequest(LABEL));
  }

  private void issue() throws CMSKeyDatabaseException {
    ca.certificates().issue(
        new CertificateIssue("ca", requestFile, certificateFile).writtenAs(Encoding.DER));
  }

  /** The issued certificate and its issuer's as PKCS #7. */
  private Path bundle() throws Exception {
    Path issued = folder.resolve("issued.pem");
    Path issuer = folder.resolve("issuer.pem");
    Path bundle = folder.resolve("bundle.p7b");
    Programs.run("openssl", "x509", "-inform", "DER", "-in", certificateFile, "-out", issued);
    ca.certificates().extract("ca", issuer, Encoding.BASE64);
    Programs.run(
        "openssl", "crl2pkcs7", "-nocrl", "-certfile", issued, "-certfile", issuer, "-outform",
        "DER", "-out", bundle);
    return bundle;
  }

  private byte[] der(Path pem) throws Exception {
    Path der = folder.resolve("request.der");
    Programs.run("openssl", "req", "-in", pem, "-outform", "DER", "-out", der);
    return Files.readAllBytes(der);
  }
}
