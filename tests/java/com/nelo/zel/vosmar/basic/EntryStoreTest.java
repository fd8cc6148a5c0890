package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_DUPLICATE_KEY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static com.nelo.zel.vosmar.basic.ResultCode.VALIDATION_KEY_PAIR;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** A key database, a token and a certificate store answer the same calls alike. */
class EntryStoreTest {
  @TempDir Path folder;
  private OtherParty others;
  private EntryStore store;

  @BeforeEach
  void createAnotherParty() throws Exception {
    others = new OtherParty(folder.resolve("others.kdb"));
  }

  @AfterEach
  void close() throws Exception {
    others.close();
    store.close();
    TestStores.clear();
  }

  @ParameterizedTest
  @EnumSource
  void anEmptyStoreSaysSo(StoreKind kind) throws Exception {
    store = kind.create(folder);

    assertEquals(new Labels(List.of(), List.of()), store.labels());
    assertEquals(List.of(), store.personalLabels());
    assertEquals(List.of(), store.signerLabels());
    assertEquals(Optional.empty(), store.defaultKey());
    assertEquals(List.of(), store.keysWithPublicKey(others.publicKey()));
  }

  @ParameterizedTest
  @EnumSource
  void aKeyThatIsMadeIsFoundByLabelAndByPublicKey(StoreKind kind) throws Exception {
    store = kind.create(folder);
    store.certificates().createSelfSigned(TestDatabase.certificate("other"));
    store.certificates().createSelfSigned(TestDatabase.certificate("web"));

    KeyItem item = store.key("web");
    Items.assertSaysWhatItsCertificateSays(item);
    assertTrue(item.hasPrivateKey());
    assertTrue(store.isPrivateKeyPresent("web"));
    assertEquals(List.of("web"), labels(store.keysWithLabel("web")));
    assertEquals(
        List.of("web"), labels(store.keysWithPublicKey(item.subjectPublicKeyInfo().bytes())));
    assertEquals(new Labels(List.of("other", "web"), List.of()), store.labels());
  }

  @ParameterizedTest
  @EnumSource
  void keysAreToldFromCertificatesAlone(StoreKind kind) throws Exception {
    store = kind.create(folder);
    store.certificates().createSelfSigned(TestDatabase.certificate("web"));
    store.insertCertificate("alone", others.certificate("alone"), false);
    store.certificates().add("ca", others.certificateFile("ca"), Encoding.BASE64);

    assertEquals(List.of("web"), store.personalLabels());
    assertEquals(List.of("alone", "ca"), store.signerLabels());
    assertFalse(store.isPrivateKeyPresent("alone"));
    assertFalse(store.key("ca").hasPrivateKey());
    assertArrayEquals(others.certificate("ca"), store.key("ca").certificate().der());
  }

  @ParameterizedTest
  @EnumSource
  void aKeyIsInsertedWithItsCertificate(StoreKind kind) throws Exception {
    store = kind.create(folder);
    byte[] certificate = others.certificate("web");

    assertFails(
        VALIDATION_KEY_PAIR,
        () -> store.insertKey("web", certificate, others.privateKey("mail"), false, false));
    store.insertKey("web", certificate, others.privateKey("web"), false, false);

    assertArrayEquals(certificate, store.key("web").certificate().der());
    assertTrue(store.isPrivateKeyPresent("web"));
  }

  @ParameterizedTest
  @EnumSource
  void aDeletedEntryIsGone(StoreKind kind) throws Exception {
    store = kind.create(folder);
    store.certificates().createSelfSigned(TestDatabase.certificate("web"));

    store.deleteKey("web");

    assertEquals(new Labels(List.of(), List.of()), store.labels());
  }

  @ParameterizedTest
  @EnumSource
  void aLabelThatNothingHasIsTold(StoreKind kind) throws Exception {
    store = kind.create(folder);

    assertFails(KEY_GET_BY_LABEL, () -> store.key("web"));
    assertFails(KEY_GET_BY_LABEL, () -> store.isPrivateKeyPresent("web"));
    assertFails(KEY_GET_BY_LABEL, () -> store.keysWithLabel("web"));
    assertFails(KEY_GET_BY_LABEL, () -> store.deleteKey("web"));
    assertFails(KEY_GET_BY_LABEL, () -> store.request("web"));
    assertFails(KEY_GET_BY_LABEL, () -> store.deleteRequest("web"));
  }

  @ParameterizedTest
  @EnumSource
  void aLabelThatIsTakenIsTold(StoreKind kind) throws Exception {
    store = kind.create(folder);
    store.certificates().createSelfSigned(TestDatabase.certificate("web"));

    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> store.certificates().createSelfSigned(TestDatabase.certificate("web")));
    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> store.insertCertificate("web", others.certificate("web"), false));
    assertFails(
        DATABASE_DUPLICATE_KEY_LABEL,
        () -> store.certificates().add("web", others.certificateFile("ca"), Encoding.BASE64));
  }

  @ParameterizedTest
  @EnumSource
  void aClosedStoreIsNotUsed(StoreKind kind) throws Exception {
    store = kind.create(folder);

    store.close();

    assertThrows(IllegalStateException.class, store::labels);
    assertThrows(
        IllegalStateException.class,
        () -> store.certificates().createSelfSigned(TestDatabase.certificate("web")));
  }

  private static List<String> labels(List<KeyItem> items) {
    return items.stream().map(KeyItem::label).toList();
  }
}
