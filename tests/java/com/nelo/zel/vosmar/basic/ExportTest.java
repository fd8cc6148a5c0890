package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.KeyStore;
import java.security.PrivateKey;
import java.security.cert.CertificateFactory;
import java.util.Collections;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Certificates and PFX files as other programs read them. */
class ExportTest {
  private static final char[] PFX_PASSWORD = "pfx horse 3!".toCharArray();

  @TempDir Path folder;
  private CMSKeyDatabase db;
  private Path pfx;

  @BeforeEach
  void createDatabase() throws CMSKeyDatabaseException {
    pfx = folder.resolve("out.p12");
    db = TestDatabase.create(folder);
    for (String label : List.of("alpha", "beta", "gamma")) {
      db.certificates().createSelfSigned(TestDatabase.certificate(label));
    }
  }

  @AfterEach
  void closeDatabase() {
    db.close();
  }

  @Test
  void aCertificateIsExtractedAsDerAndAsBase64() throws Exception {
    Path der = folder.resolve("alpha.der");
    Path base64 = folder.resolve("alpha.pem");

    db.certificates().extract("alpha", der, Encoding.DER);
    db.certificates().extract("alpha", base64, Encoding.BASE64);

    byte[] expected = db.key("alpha").certificate().der();
    assertArrayEquals(expected, Files.readAllBytes(der));
    assertTrue(Files.readString(base64).startsWith("-----BEGIN CERTIFICATE-----\n"));
    try (InputStream stream = Files.newInputStream(base64)) {
      assertArrayEquals(
          expected,
          CertificateFactory.getInstance("X.509").generateCertificate(stream).getEncoded());
    }
  }

  @Test
  void extractingAnUnknownLabelIsCode117AndWritesNothing() {
    Path target = folder.resolve("other.pem");

    assertFails(KEY_GET_BY_LABEL, () -> db.certificates().extract("other", target, Encoding.DER));
    assertTrue(Files.notExists(target));
  }

  @Test
  void aPfxFileOfOneKeyIsReadByTheJavaPlatform() throws Exception {
    PfxFile.write(db, pfx, PFX_PASSWORD, List.of("alpha"));

    KeyStore store = load();
    assertEquals(Set.of("alpha"), labels(store));
    assertTrue(store.getKey("alpha", PFX_PASSWORD) instanceof PrivateKey);
    assertArrayEquals(
        db.key("alpha").certificate().der(), store.getCertificate("alpha").getEncoded());
  }

  @Test
  void everyLabelGivenIsExportedTheFirstIncluded() throws Exception {
    PfxFile.write(db, pfx, PFX_PASSWORD, List.of("gamma", "alpha"));
    assertEquals(Set.of("alpha", "gamma"), labels(load()));

    Files.delete(pfx);
    PfxFile.write(db, pfx, PFX_PASSWORD, List.of("alpha", "beta", "gamma"));
    assertEquals(Set.of("alpha", "beta", "gamma"), labels(load()));
  }

  @Test
  void exportingAnUnknownLabelIsCode117() {
    assertFails(
        KEY_GET_BY_LABEL, () -> PfxFile.write(db, pfx, PFX_PASSWORD, List.of("alpha", "other")));
  }

  @Test
  void exportingNothingIsRefused() {
    assertThrows(
        IllegalArgumentException.class, () -> PfxFile.write(db, pfx, PFX_PASSWORD, List.of()));
  }

  private KeyStore load() throws Exception {
    KeyStore store = KeyStore.getInstance("PKCS12");
    try (InputStream stream = Files.newInputStream(pfx)) {
      store.load(stream, PFX_PASSWORD);
    }
    return store;
  }

  private static Set<String> labels(KeyStore store) throws Exception {
    return new TreeSet<>(Collections.list(store.aliases()));
  }
}
