package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.cli.Programs;
import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.net.URL;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.GeneralSecurityException;
import java.security.KeyStore;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.time.Duration;
import java.util.List;
import javax.net.ssl.HttpsURLConnection;
import javax.net.ssl.SSLContext;
import javax.net.ssl.SSLHandshakeException;
import javax.net.ssl.TrustManagerFactory;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/**
 * A certificate authority's day, on files: it certifies a server, browsers trust the server, the
 * certificate is renewed, and the server's whole database moves to a key ring and back.
 */
class CertificateAuthorityDayTest {
  private static final String PFX_PASSWORD = "pfx horse 3!";
  private static final char[] RING_PASSWORD = "ring horse 4!".toCharArray();
  private static final char[] NEW_PASSWORD = "another horse 2!".toCharArray();

  @TempDir Path folder;

  @Test
  void aServerIsCertifiedTrustedRenewedAndMoved() throws Exception {
    try (CMSKeyDatabase ca = create("ca.kdb");
        CMSKeyDatabase server = create("server.kdb")) {
      certify(ca, server);
      serve(server);
      renew(ca, server);
      move(server);
    }
  }

  private void certify(CMSKeyDatabase ca, CMSKeyDatabase server) throws Exception {
    ca.certificates()
        .createSelfSigned(
            new SelfSignedCertificate("root", DNItem.parse("CN=Example CA,C=DE"), KeyType.ec(384))
                .writtenTo(file("ca.pem"), Encoding.BASE64));
    server
        .certificates()
        .createRequest(
            new NewCertificateRequest(
                    "www", DNItem.parse("CN=www,O=Example"), KeyType.ec(256), file("www.csr"))
                .alsoNamed(AlternativeNames.parse("DNS:localhost,IP:127.0.0.1")));
    issue(ca, 30);
    assertFalse(server.certificates().isValid(certificate()), "nobody knows its issuer yet");
    server.certificates().add("Example CA", file("ca.pem"), Encoding.BASE64);
    assertTrue(server.certificates().isValid(certificate()));
    server.certificates().receive(file("www.pem"), Encoding.BASE64, true);
    assertEquals(2, server.key("www").certificates().size());
  }

  private void serve(CMSKeyDatabase server) throws Exception {
    PfxFile.write(server, file("www.p12"), PFX_PASSWORD.toCharArray(), List.of("www"));
    PfxFile.write(server, file("trust.p12"), PFX_PASSWORD.toCharArray(), List.of("Example CA"));

    try (TlsServer tls = TlsServer.start(file("www.p12"), PFX_PASSWORD, 3)) {
      assertEquals(200, statusOf(tls.url(), trusting("trust.p12")));
      assertThrows(
          SSLHandshakeException.class, () -> statusOf(tls.url(), SSLContext.getDefault()));
      assertEquals(0, curl(tls.url()));
      assertTrue(tls.hasEnded());
    }
  }

  private void renew(CMSKeyDatabase ca, CMSKeyDatabase server) throws Exception {
    byte[] old = certificate();
    assertFalse(server.certificates().isRenewal(old), "it is the one that is there");
    issue(ca, 60);
    byte[] renewal = certificate();
    assertTrue(server.certificates().isRenewal(renewal));
    server.certificates().renew(renewal);
    assertEquals(certificateOf(renewal), server.key("www").certificate().x509());
    assertTrue(server.key("www").isDefault());
    assertFalse(server.certificates().isRenewal(renewal), "it is the one that is there");
  }

  private void move(CMSKeyDatabase server) throws Exception {
    server
        .certificates()
        .createRequest(
            new NewCertificateRequest(
                    "nächstes 🔑", DNItem.parse("CN=next"), KeyType.rsa(2048), file("next.csr"))
                .alsoNamed(AlternativeNames.parse("DNS:next.example")));
    KeyRingFile.write(server, file("server.kyr"), RING_PASSWORD);
    try (CMSKeyDatabase back =
        KeyRingFile.toKeyDatabase(
            file("server.kyr"), RING_PASSWORD, file("back.kdb"), NEW_PASSWORD)) {
      DatabaseContent content = DatabaseContent.of(back);
      assertEquals(DatabaseContent.of(server), content);
      assertEquals(2, content.keys().size());
      assertEquals(1, content.requests().size());
      assertNotEquals("", content.requests().get(0).privateKey());
    }
  }

  private CMSKeyDatabase create(String name) throws CMSKeyDatabaseException {
    return CMSKeyDatabase.create(file(name), TestDatabase.password(), Duration.ZERO);
  }

  private Path file(String name) {
    return folder.resolve(name);
  }

  private void issue(CMSKeyDatabase ca, int days) throws CMSKeyDatabaseException {
    ca.certificates()
        .issue(new CertificateIssue("root", file("www.csr"), file("www.pem")).validFor(days));
  }

  private byte[] certificate() throws IOException, GeneralSecurityException {
    return certificateOf(Files.readAllBytes(file("www.pem"))).getEncoded();
  }

  private static X509Certificate certificateOf(byte[] encoded)
      throws GeneralSecurityException {
    return (X509Certificate)
        CertificateFactory.getInstance("X.509")
            .generateCertificate(new ByteArrayInputStream(encoded));
  }

  /** A client that trusts what a PKCS#12 file says and nobody else. */
  private SSLContext trusting(String pfx) throws Exception {
    KeyStore trusted = KeyStore.getInstance("PKCS12");
    try (InputStream stream = Files.newInputStream(file(pfx))) {
      trusted.load(stream, PFX_PASSWORD.toCharArray());
    }
    TrustManagerFactory trust =
        TrustManagerFactory.getInstance(TrustManagerFactory.getDefaultAlgorithm());
    trust.init(trusted);
    SSLContext context = SSLContext.getInstance("TLS");
    context.init(null, trust.getTrustManagers(), null);
    return context;
  }

  /** The answer of a server whose certificate the client finds valid for the host's name. */
  private static int statusOf(String url, SSLContext client) throws IOException {
    HttpsURLConnection connection = (HttpsURLConnection) new URL(url).openConnection();
    connection.setSSLSocketFactory(client.getSocketFactory());
    connection.setConnectTimeout(10_000);
    connection.setReadTimeout(10_000);
    try (InputStream page = connection.getInputStream()) {
      page.readAllBytes();
    }
    return connection.getResponseCode();
  }

  private int curl(String url) throws IOException, InterruptedException {
    return Programs.foreign(
            "curl", "--silent", "--max-time", "10", "--cacert", file("ca.pem").toString(), "-o",
            file("page.html").toString(), url)
        .start()
        .waitFor();
  }
}
