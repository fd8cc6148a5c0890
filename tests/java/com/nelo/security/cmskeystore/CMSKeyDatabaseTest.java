package com.nelo.security.cmskeystore;

import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTO;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_ALREADY_EXISTS;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_INVALID_PASSWORD;
import static com.nelo.zel.vosmar.basic.ResultCode.KEY_GET_BY_LABEL;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.KeyType;
import com.nelo.zel.vosmar.basic.NewCertificateRequest;
import com.nelo.zel.vosmar.basic.ResultCode;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.Duration;
import java.util.List;
import java.util.Optional;
import java.util.Set;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.api.io.TempDir;

/** The legacy classes on a key database that the newer ones have filled. */
class CMSKeyDatabaseTest {
  private static final char[] PASSWORD = "correct horse 1!".toCharArray();
  private static final com.nelo.zel.vosmar.basic.DNItem NAME =
      com.nelo.zel.vosmar.basic.DNItem.parse("CN=key,O=Example,C=DE");

  /** What a key with a certificate is made of. */
  private static final Set<String> LEGACY_ITEMS =
      Set.of(
          "com.nelo.security.cmskeystore.BERObject",
          "com.nelo.security.cmskeystore.CertificateItem",
          "com.nelo.security.cmskeystore.DNItem",
          "com.nelo.security.cmskeystore.EncryptedPrivateKeyInfoItem",
          "com.nelo.security.cmskeystore.KeyItem");

  @TempDir Path folder;
  private Path file;

  @BeforeEach
  void aDatabaseHasOneKey() throws Exception {
    file = folder.resolve("test.kdb");
    try (var db =
        com.nelo.zel.vosmar.basic.CMSKeyDatabase.create(file, PASSWORD, Duration.ZERO)) {
      db.certificates().createSelfSigned(new SelfSignedCertificate("key", NAME, KeyType.ec(256)));
    }
  }

  @Test
  void aKeyIsMadeOfLegacyItemsAlone() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertEquals(LEGACY_ITEMS, new ObjectTree(db.key("key")).classNames());
    }
  }

  @Test
  void aListOfKeysIsMadeOfLegacyItemsAlone() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertEquals(LEGACY_ITEMS, new ObjectTree(db.keysWithLabel("key")).classNames());
    }
  }

  @Test
  void theKeysOfAPublicKeyAreMadeOfLegacyItemsAlone() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      byte[] publicKey = db.key("key").certificate().x509().getPublicKey().getEncoded();

      List<KeyItem> items = db.keysWithPublicKey(publicKey);

      assertEquals(1, items.size());
      assertEquals(LEGACY_ITEMS, new ObjectTree(items).classNames());
      assertEquals(List.of(), db.keysWithPublicKey(new byte[] {0x30, 0}));
    }
  }

  @Test
  void aLegacyKeySaysWhatTheNewerOneSays() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD);
        var newer = com.nelo.zel.vosmar.basic.CMSKeyDatabase.open(file, PASSWORD)) {
      KeyItem item = db.key("key");
      var same = newer.key("key");

      assertEquals("key", item.label());
      assertEquals(same.keySize(), item.keySize());
      assertEquals(same.hasPrivateKey(), item.hasPrivateKey());
      assertEquals(same.isTrusted(), item.isTrusted());
      assertEquals("key", item.certificate().subject().commonName());
      assertEquals("Example", item.certificate().subject().organisation());
      assertNull(item.certificate().subject().locality());
      assertEquals(same.certificate().notAfter(), item.certificate().notAfter());
      assertArrayEquals(same.certificate().der(), item.certificate().der());
      assertArrayEquals(same.certificate().tbsCertificate(), item.certificate().tbsCertificate());
    }
  }

  @Test
  void labelsReachTheLegacyObject() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertEquals(List.of("key"), db.labels().keys());
      assertEquals(List.of(), db.labels().requests());
      assertTrue(db.isPrivateKeyPresent("key"));
    }
  }

  @Test
  void theFourthArgumentOfTheLookupIsNotLookedAt() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertEquals("key", ((KeyItem) lookUpAsRequest(db, "key")).label());
    }
  }

  @Test
  void aPendingRequestIsListedAndDeletedButNotRead() throws Exception {
    try (var newer = com.nelo.zel.vosmar.basic.CMSKeyDatabase.open(file, PASSWORD)) {
      newer.certificates().createRequest(
          new NewCertificateRequest(
              "request", NAME, KeyType.ec(256), folder.resolve("request.csr")));
    }
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertEquals(List.of("request"), db.labels().requests());
      assertNull(lookUpAsRequest(db, "request"));
      assertFails(KEY_GET_BY_LABEL, () -> db.key("request"));

      db.deleteRequest("request");

      assertEquals(List.of(), db.labels().requests());
    }
  }

  @Test
  void takesInACertificateAndDeletesIt() throws Exception {
    byte[] certificate;
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      certificate = db.key("key").certificate().der();
    }
    try (CMSKeyDatabase db =
        CMSKeyDatabase.create(folder.resolve("other.kdb"), PASSWORD, Duration.ZERO)) {
      db.insertKey("signer", certificate, null, true, false);

      KeyItem item = db.key("signer");
      assertTrue(item.isTrusted());
      assertFalse(item.hasPrivateKey());
      assertNull(item.privateKey());
      assertArrayEquals(certificate, item.certificate().der());

      db.deleteKey("signer");

      assertFails(KEY_GET_BY_LABEL, () -> db.deleteKey("signer"));
    }
  }

  @Test
  void aLabelThatNoKeyHasIsCode117() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertFails(KEY_GET_BY_LABEL, () -> db.key("other"));
      assertFails(KEY_GET_BY_LABEL, () -> db.keysWithLabel("other"));
      assertFails(KEY_GET_BY_LABEL, () -> db.isPrivateKeyPresent("other"));
    }
  }

  @Test
  void createsOpensAndChangesPasswords() throws Exception {
    Path other = folder.resolve("other.kdb");
    char[] newPassword = "better horse 2!".toCharArray();

    CMSKeyDatabase.create(other, PASSWORD, Duration.ZERO).close();
    assertFails(
        DATABASE_ALREADY_EXISTS, () -> CMSKeyDatabase.create(other, PASSWORD, Duration.ZERO));
    CMSKeyDatabase.changePassword(other, PASSWORD, newPassword, Duration.ZERO);
    assertFails(DATABASE_INVALID_PASSWORD, () -> CMSKeyDatabase.open(other, PASSWORD));

    try (CMSKeyDatabase db = CMSKeyDatabase.open(other, newPassword)) {
      db.stashPassword();
    }
    assertTrue(Files.exists(folder.resolve("other.sth")));
    assertDoesNotThrow(
        () -> CMSKeyDatabase.createFips(folder.resolve("fips.kdb"), PASSWORD, Duration.ZERO));
  }

  @Test
  void aPrivateKeyIsDecryptedAndEncryptedAgain() throws Exception {
    char[] itsPassword = "key horse 3!".toCharArray();
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD);
        PrivateKeyInfoItem clear =
            db.decryptPrivateKey(db.key("key").privateKey().der(), PASSWORD)) {
      EncryptedPrivateKeyInfoItem encrypted = db.encryptPrivateKey(clear.der(), itsPassword);

      try (PrivateKeyInfoItem again = db.decryptPrivateKey(encrypted.der(), itsPassword)) {
        assertArrayEquals(clear.der(), again.der());
      }
      assertFails(CRYPTO, () -> db.decryptPrivateKey(encrypted.der(), PASSWORD));
    }
  }

  @Test
  void bytesThatAreNoKeyAreNeitherEncryptedNorDecrypted() throws Exception {
    byte[] noKey = {0x30, 0};
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertFails(CRYPTO, () -> db.encryptPrivateKey(noKey, PASSWORD));
      assertFails(CRYPTO, () -> db.decryptPrivateKey(noKey, PASSWORD));
    }
  }

  @Test
  void theLibraryStartsOnceMore() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, PASSWORD)) {
      assertDoesNotThrow(() -> db.restartLibrary(false));
      assertEquals(List.of("key"), db.labels().keys());
    }
  }

  @Test
  void nativeMethodsArePrivateAndComplete() {
    var natives =
        Stream.of(CMSKeyDatabase.class.getDeclaredMethods())
            .filter(method -> Modifier.isNative(method.getModifiers()))
            .toList();

    assertEquals(15, natives.size());
    assertTrue(natives.stream().allMatch(method -> Modifier.isPrivate(method.getModifiers())));
    assertFalse(natives.stream().anyMatch(method -> Modifier.isStatic(method.getModifiers())));
  }

  private Object lookUpAsRequest(CMSKeyDatabase db, String label) throws Exception {
    Method lookup =
        CMSKeyDatabase.class.getDeclaredMethod(
            "c_GetKeyItemByLabel", String.class, String.class, String.class, boolean.class);
    lookup.setAccessible(true);
    return lookup.invoke(db, file.toString(), new String(PASSWORD), label, true);
  }

  private static void assertFails(ResultCode reason, Executable operation) {
    assertEquals(
        Optional.of(reason), assertThrows(CMSKeyDatabaseException.class, operation).reason());
  }
}
