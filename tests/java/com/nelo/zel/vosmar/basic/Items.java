package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.security.cert.CertificateException;
import java.security.cert.X509Certificate;

/** Items compared with what the Java platform reads from their bytes. */
final class Items {
  private Items() {}

  static void assertSaysWhatItsCertificateSays(KeyItem item) throws CertificateException {
    CertificateItem certificate = item.certificate();
    X509Certificate x509 = certificate.x509();
    assertEquals(item.label(), certificate.label());
    assertEquals(x509.getVersion(), certificate.version());
    assertEquals(item.keySize(), certificate.keySize());
    assertEquals(x509.getNotBefore().toInstant(), certificate.notBefore());
    assertEquals(x509.getNotAfter().toInstant(), certificate.notAfter());
    assertEquals(x509.getSigAlgOID(), certificate.signatureAlgorithmOid());
    assertArrayEquals(x509.getSubjectX500Principal().getEncoded(), certificate.subject().der());
    assertArrayEquals(x509.getIssuerX500Principal().getEncoded(), certificate.issuer().der());
    assertArrayEquals(x509.getSignature(), certificate.signature());
    assertArrayEquals(x509.getTBSCertificate(), certificate.tbsCertificate());
    assertArrayEquals(x509.getPublicKey().getEncoded(), certificate.subjectPublicKeyInfo().bytes());
    assertEquals(certificate.subjectPublicKeyInfo(), item.subjectPublicKeyInfo());
  }
}
