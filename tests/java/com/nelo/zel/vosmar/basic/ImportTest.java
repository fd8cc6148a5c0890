package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.INVALID_PKCS12_DATA;
import static com.nelo.zel.vosmar.basic.ResultCode.PKCS12_PWD_CORRUPTION;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.OutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.Key;
import java.security.KeyStore;
import java.security.cert.Certificate;
import java.time.Duration;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Taking in what other programs, and other databases, wrote. */
class ImportTest {
  private static final char[] PFX_PASSWORD = "pfx horse 3!".toCharArray();

  @TempDir Path folder;
  private CMSKeyDatabase source;
  private CMSKeyDatabase target;
  private Path pfx;

  @BeforeEach
  void createDatabases() throws CMSKeyDatabaseException {
    pfx = folder.resolve("keys.p12");
    source = TestDatabase.create(folder);
    source.certificates().createSelfSigned(TestDatabase.certificate("alpha"));
    source.certificates().createSelfSigned(TestDatabase.certificate("beta").asDefaultKey());
    target =
        CMSKeyDatabase.create(
            folder.resolve("target.kdb"), TestDatabase.password(), Duration.ZERO);
  }

  @AfterEach
  void closeDatabases() {
    source.close();
    target.close();
  }

  @Test
  void keysTravelInAPfxFile() throws Exception {
    PfxFile.write(source, pfx, PFX_PASSWORD, List.of("alpha", "beta"));

    PfxFile.importInto(target, pfx, PFX_PASSWORD);

    assertSameKeys(target);
  }

  @Test
  void aPfxFileOfTheJavaPlatformIsTakenIn() throws Exception {
    PfxFile.write(source, pfx, PFX_PASSWORD, List.of("alpha"));
    Path rewritten = rewriteWithTheJavaPlatform("alpha");

    PfxFile.importInto(target, rewritten, "java horse 4!".toCharArray());

    assertArrayEquals(
        source.key("alpha").certificate().der(), target.key("alpha").certificate().der());
    assertTrue(target.key("alpha").hasPrivateKey());
  }

  @Test
  void aWrongPfxPasswordIsCode120() throws Exception {
    PfxFile.write(source, pfx, PFX_PASSWORD, List.of("alpha"));

    assertFails(
        PKCS12_PWD_CORRUPTION,
        () -> PfxFile.importInto(target, pfx, "wrong horse 1!".toCharArray()));
    assertEquals(List.of(), target.labels().keys());
  }

  @Test
  void aFileThatIsNoPfxIsCode119() throws Exception {
    Files.writeString(pfx, "Dear diary,\n");

    assertFails(INVALID_PKCS12_DATA, () -> PfxFile.importInto(target, pfx, PFX_PASSWORD));
  }

  private void assertSameKeys(CMSKeyDatabase other) throws CMSKeyDatabaseException {
    assertEquals(
        source.labels().keys().stream().sorted().toList(),
        other.labels().keys().stream().sorted().toList());
    for (String label : source.labels().keys()) {
      assertArrayEquals(
          source.key(label).certificate().der(), other.key(label).certificate().der());
      assertTrue(other.key(label).hasPrivateKey());
    }
  }

  private Path rewriteWithTheJavaPlatform(String label) throws Exception {
    KeyStore read = KeyStore.getInstance(pfx.toFile(), PFX_PASSWORD);
    Key key = read.getKey(label, PFX_PASSWORD);
    Certificate[] chain = read.getCertificateChain(label);
    char[] password = "java horse 4!".toCharArray();
    KeyStore written = KeyStore.getInstance("PKCS12");
    written.load(null, password);
    written.setKeyEntry(label, key, password, chain);
    Path file = folder.resolve("java.p12");
    try (OutputStream stream = Files.newOutputStream(file)) {
      written.store(stream, password);
    }
    return file;
  }
}
