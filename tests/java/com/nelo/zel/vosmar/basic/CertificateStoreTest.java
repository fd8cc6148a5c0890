package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_DUPLICATE_KEY;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_DUPLICATE_KEY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.security.KeyFactory;
import java.security.Signature;
import java.security.cert.X509Certificate;
import java.security.spec.PKCS8EncodedKeySpec;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Certificate stores, and the files that make them up. */
class CertificateStoreTest {
  private static final String MY = "CurrentUser/My";

  @TempDir Path folder;
  private MSCertificateStore store;

  @BeforeEach
  void openEmptyStore() throws Exception {
    TestStores.clear();
    store = MSCertificateStore.open(MY, null);
  }

  @AfterEach
  void closeStore() throws Exception {
    store.close();
    TestStores.clear();
  }

  @Test
  void theStoresAreListed() throws Exception {
    assertEquals(
        List.of("CurrentUser/My", "CurrentUser/Root", "CurrentUser/CA"),
        MSCertificateStore.list());
  }

  @Test
  void anEmptyStoreHasNoLabels() throws Exception {
    assertEquals(List.of(), store.labels().keys());
  }

  @Test
  void aSelfSignedCertificateIsMadeWithItsKey() throws Exception {
    store.certificates().createSelfSigned(TestDatabase.certificate("server"));

    KeyItem item = store.key("server");
    X509Certificate certificate = item.certificate().x509();
    certificate.verify(certificate.getPublicKey());
    assertEquals("CN=server, O=Example, C=DE", certificate.getSubjectX500Principal().toString());
    assertTrue(item.hasPrivateKey());
    assertTrue(isPair(clearKeyOf(item), certificate));
  }

  @Test
  void labelsTellEntriesWithKeysFromThoseWithout() throws Exception {
    store.certificates().createSelfSigned(TestDatabase.certificate("server"));
    store.certificates().add("signer", signerFile(Encoding.DER), Encoding.DER);

    assertEquals(new Labels(List.of("server", "signer"), List.of()), store.labels());
    assertEquals(List.of("server"), store.personalLabels());
    assertEquals(List.of("signer"), store.signerLabels());
  }

  @Test
  void aSignerIsAddedFromAFileOfEitherForm() throws Exception {
    for (Encoding encoding : Encoding.values()) {
      String label = "signer " + encoding;
      Path file = signerFile(encoding);
      store.certificates().add(label, file, encoding);

      assertFalse(store.key(label).hasPrivateKey());
    }
    assertEquals(2, store.signerLabels().size());
  }

  @Test
  void aCertificateIsImportedWithItsKeyOrWithout() throws Exception {
    store.certificates().createSelfSigned(TestDatabase.certificate("server"));
    KeyItem item = store.key("server");
    byte[] certificate = item.certificate().der();
    byte[] key = clearKeyOf(item);
    store.deleteKey("server");

    store.insertKey("with", certificate, key, false, false);
    assertArrayEquals(key, clearKeyOf(store.key("with")));
    assertFails(
        DATABASE_DUPLICATE_KEY, () -> store.insertCertificate("again", certificate, false));
    store.deleteKey("with");

    store.insertCertificate("without", certificate, false);
    assertFalse(store.key("without").hasPrivateKey());
    assertArrayEquals(certificate, store.key("without").certificate().der());
  }

  @Test
  void entriesAreFoundByLabelAndByPublicKey() throws Exception {
    store.certificates().createSelfSigned(TestDatabase.certificate("alpha"));
    store.certificates().createSelfSigned(TestDatabase.certificate("beta"));
    byte[] publicKey = store.key("beta").subjectPublicKeyInfo().bytes();

    assertEquals(List.of("alpha"), labels(store.keysWithLabel("alpha")));
    assertEquals(List.of("beta"), labels(store.keysWithPublicKey(publicKey)));
    assertFails(KEY_GET_BY_LABEL, () -> store.keysWithLabel("gamma"));
    assertFails(KEY_GET_BY_LABEL, () -> store.key("gamma"));
  }

  @Test
  void aDeletedEntryIsGone() throws Exception {
    store.certificates().createSelfSigned(TestDatabase.certificate("server"));

    store.deleteKey("server");

    assertEquals(List.of(), store.labels().keys());
    assertFails(KEY_GET_BY_LABEL, () -> store.deleteKey("server"));
    assertEquals(List.of(), TestStores.filesIn("my"));
  }

  @Test
  void aLabelIsGivenOnce() throws Exception {
    store.certificates().createSelfSigned(TestDatabase.certificate("server"));

    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> store.certificates().createSelfSigned(TestDatabase.certificate("server")));
  }

  @Test
  void aPasswordIsCode139AndAnotherNameCode137() throws Exception {
    MSCertificateStore.open(MY, new char[0]).close();
    assertFails(
        CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED,
        () -> MSCertificateStore.open(MY, "secret".toCharArray()));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST,
        () -> MSCertificateStore.open("CurrentUser/None", null));
  }

  @Test
  void eachStoreHasItsFolderAndEachEntryItsFile() throws Exception {
    for (String name : MSCertificateStore.list()) {
      try (MSCertificateStore each = MSCertificateStore.open(name, null)) {
        each.certificates().createSelfSigned(TestDatabase.certificate("server"));
      }
    }
    for (String name : List.of("my", "root", "ca")) {
      assertEquals(1, TestStores.filesIn(name).size(), name);
      assertTrue(TestStores.filesIn(name).get(0).matches("[0-9A-F]{40}\\.pfx"), name);
    }
  }

  /** Whether the certificate verifies what the key signs. */
  private static boolean isPair(byte[] pkcs8, X509Certificate certificate) throws Exception {
    Signature signature = Signature.getInstance("SHA256withECDSA");
    signature.initSign(
        KeyFactory.getInstance("EC").generatePrivate(new PKCS8EncodedKeySpec(pkcs8)));
    byte[] signed = signature.sign();
    signature.initVerify(certificate);
    return signature.verify(signed);
  }

  private static byte[] clearKeyOf(KeyItem item) throws CMSKeyDatabaseException {
    try (PrivateKeyInfoItem clear =
        PrivateKeyEncryption.decrypt(item.privateKey(), new char[0])) {
      return clear.der().clone();
    }
  }

  /** A file with the certificate of a new key. */
  private Path signerFile(Encoding encoding) throws Exception {
    Path file = folder.resolve("signer." + encoding);
    try (CMSKeyDatabase db = TestDatabase.create(Files.createTempDirectory(folder, "db"))) {
      db.certificates()
          .createSelfSigned(TestDatabase.certificate("signer").writtenTo(file, encoding));
    }
    return file;
  }

  private static List<String> labels(List<KeyItem> items) {
    return items.stream().map(KeyItem::label).toList();
  }
}
