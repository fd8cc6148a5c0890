package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.VALIDATION_KEY_PAIR;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Finding, adding, marking and deleting entries. */
class EntriesTest {
  @TempDir Path folder;
  private CMSKeyDatabase db;

  @BeforeEach
  void createDatabase() throws CMSKeyDatabaseException {
    db = TestDatabase.create(folder);
    db.certificates().createSelfSigned(TestDatabase.certificate("alpha"));
    db.certificates().createSelfSigned(TestDatabase.certificate("beta"));
  }

  @AfterEach
  void closeDatabase() {
    db.close();
  }

  @Test
  void entriesAreFoundByLabelAndByPublicKey() throws Exception {
    byte[] publicKey = db.key("beta").certificate().x509().getPublicKey().getEncoded();

    assertEquals(List.of("alpha"), labels(db.keysWithLabel("alpha")));
    assertEquals(List.of("beta"), labels(db.keysWithPublicKey(publicKey)));
    assertFails(KEY_GET_BY_LABEL, () -> db.keysWithLabel("gamma"));
  }

  @Test
  void anotherPublicKeyFindsNothing() throws Exception {
    byte[] publicKey = db.key("beta").subjectPublicKeyInfo().bytes();
    db.deleteKey("beta");

    assertEquals(List.of(), db.keysWithPublicKey(publicKey));
  }

  @Test
  void aDeletedKeyIsGone() throws Exception {
    db.deleteKey("alpha");

    assertEquals(List.of("beta"), db.labels().keys());
    assertFails(KEY_GET_BY_LABEL, () -> db.key("alpha"));
    assertFails(KEY_GET_BY_LABEL, () -> db.deleteKey("alpha"));
  }

  @Test
  void aRequestIsNotDeletedAsAKeyNorAKeyAsARequest() {
    assertFails(KEY_GET_BY_LABEL, () -> db.deleteRequest("alpha"));
  }

  @Test
  void oneKeyIsTheDefault() throws Exception {
    db.setDefaultKey("alpha");
    db.setDefaultKey("beta");

    assertEquals("beta", db.defaultKey().orElseThrow().label());
    assertFalse(db.key("alpha").isDefault());
    assertFails(KEY_GET_BY_LABEL, () -> db.setDefaultKey("gamma"));
  }

  @Test
  void trustIsGivenAndTakenBack() throws Exception {
    db.setTrusted("alpha", false);
    assertFalse(db.key("alpha").isTrusted());

    db.setTrusted("alpha", true);
    assertTrue(db.key("alpha").isTrusted());
  }

  @Test
  void aCertificateIsAddedWithoutItsKey() throws Exception {
    byte[] certificate = db.key("alpha").certificate().der();
    db.deleteKey("alpha");

    db.insertCertificate("alpha's", certificate, true);

    KeyItem item = db.key("alpha's");
    assertArrayEquals(certificate, item.certificate().der());
    assertFalse(item.hasPrivateKey());
    assertFalse(db.isPrivateKeyPresent("alpha's"));
    assertTrue(item.isTrusted());
  }

  @Test
  void aKeyIsAddedAsItWasReadFromThisDatabase() throws Exception {
    KeyItem item = db.key("alpha");
    db.deleteKey("alpha");

    db.insertKey("again", item.certificate().der(), item.privateKey().der(), false, true);

    assertTrue(db.key("again").hasPrivateKey());
    assertEquals("again", db.defaultKey().orElseThrow().label());
  }

  @Test
  void aKeyOfAnotherCertificateIsCode62() throws Exception {
    byte[] certificate = db.key("alpha").certificate().der();
    byte[] privateKey = db.key("beta").privateKey().der();
    db.deleteKey("alpha");

    assertFails(
        VALIDATION_KEY_PAIR, () -> db.insertKey("mixed", certificate, privateKey, false, false));
    assertEquals(List.of("beta"), db.labels().keys());
  }

  private static List<String> labels(List<KeyItem> items) {
    return items.stream().map(KeyItem::label).toList();
  }
}
