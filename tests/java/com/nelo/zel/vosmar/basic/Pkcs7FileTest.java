package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.ASN;
import static com.nelo.zel.vosmar.basic.ResultCode.FILE_OPEN_TO_READ;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.nio.file.Files;
import java.nio.file.Path;
import java.security.cert.CertificateException;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.util.ArrayList;
import java.util.Base64;
import java.util.List;
import java.util.Set;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Bundles of certificates as the Java platform writes them. */
class Pkcs7FileTest {
  @TempDir Path folder;
  private final List<X509Certificate> certificates = new ArrayList<>();
  private Path file;
  private byte[] bundle;

  @BeforeEach
  void theJavaPlatformMakesABundle() throws Exception {
    file = folder.resolve("bundle.p7b");
    try (CMSKeyDatabase db = TestDatabase.create(folder)) {
      for (String label : List.of("alpha", "beta")) {
        db.certificates().createSelfSigned(TestDatabase.certificate(label));
        certificates.add(db.key(label).certificate().x509());
      }
    }
    bundle =
        CertificateFactory.getInstance("X.509")
            .generateCertPath(certificates)
            .getEncoded("PKCS7");
  }

  @Test
  void aBinaryFileIsRead() throws Exception {
    Files.write(file, bundle);

    assertHasTheCertificates(Pkcs7File.read(file, Encoding.DER));
  }

  @Test
  void aBase64FileIsRead() throws Exception {
    String base64 = Base64.getMimeEncoder(64, new byte[] {'\n'}).encodeToString(bundle);
    Files.writeString(file, "-----BEGIN PKCS7-----\n" + base64 + "\n-----END PKCS7-----\n");

    assertHasTheCertificates(Pkcs7File.read(file, Encoding.BASE64));
  }

  @Test
  void aFileThatIsNoBundleIsCode2() throws Exception {
    Files.writeString(file, "Dear diary,\n");

    assertFails(ASN, () -> Pkcs7File.read(file, Encoding.DER));
  }

  @Test
  void aMissingFileIsCode87() {
    assertFails(FILE_OPEN_TO_READ, () -> Pkcs7File.read(folder.resolve("no.p7b"), Encoding.DER));
  }

  /** The Java platform sorts a bundle by its bytes, as DER demands of a set. */
  private void assertHasTheCertificates(List<CertificateItem> read)
      throws CertificateException {
    List<X509Certificate> found = new ArrayList<>();
    for (CertificateItem item : read) {
      found.add(item.x509());
    }
    assertEquals(2, found.size());
    assertEquals(Set.copyOf(certificates), Set.copyOf(found));
  }
}
